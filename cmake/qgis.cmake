# SPDX-License-Identifier: MIT
# Qt and QGIS for the desktop plugin: VELMORA_QGIS_FOUND and the target QGIS::gui. With VELMORA_QGIS=AUTO
# their absence only leaves the plugin out; with ON it is an error; with OFF they are not looked for.
set(VELMORA_QGIS_FOUND OFF)
if(VELMORA_QGIS STREQUAL "OFF")
  return()
endif()

find_package(Qt5 5.15 QUIET COMPONENTS Widgets Xml Network Test)
find_path(QGIS_INCLUDE_DIR qgisplugin.h PATH_SUFFIXES qgis)
find_library(QGIS_CORE_LIBRARY qgis_core)
find_library(QGIS_GUI_LIBRARY qgis_gui)
if(Qt5_FOUND AND QGIS_INCLUDE_DIR AND QGIS_CORE_LIBRARY AND QGIS_GUI_LIBRARY)
  set(VELMORA_QGIS_FOUND ON)
  add_library(QGIS::gui INTERFACE IMPORTED)
  set_target_properties(QGIS::gui PROPERTIES
    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${QGIS_INCLUDE_DIR}
    INTERFACE_INCLUDE_DIRECTORIES ${QGIS_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES "${QGIS_GUI_LIBRARY};${QGIS_CORE_LIBRARY};Qt5::Widgets;Qt5::Xml;Qt5::Network")
  message(STATUS "The QGIS plugin is built")
elseif(VELMORA_QGIS STREQUAL "ON")
  message(FATAL_ERROR "VELMORA_QGIS=ON, but Qt 5.15 or QGIS are not there (packages qtbase5-dev, libqgis-dev)")
else()
  message(STATUS "The QGIS plugin is not built: install qtbase5-dev and libqgis-dev to have it")
endif()
