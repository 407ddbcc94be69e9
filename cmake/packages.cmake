# SPDX-License-Identifier: MIT
# The Debian packages: `cpack --config build/release/CPackConfig.cmake` makes velmora (the command, the
# library, the documents and the sample) and qgis-plugin-velmora.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The Velmora developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL core)
if(VELMORA_QGIS_FOUND)
  list(APPEND CPACK_COMPONENTS_ALL qgis)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_CORE_PACKAGE_NAME velmora)
set(CPACK_COMPONENT_CORE_DESCRIPTION
  "The command velmora with its library, its documents and a sample basin.")
set(CPACK_DEBIAN_QGIS_PACKAGE_NAME qgis-plugin-velmora)
set(CPACK_DEBIAN_QGIS_PACKAGE_DEPENDS "velmora (= ${PROJECT_VERSION}), qgis")
set(CPACK_COMPONENT_QGIS_DESCRIPTION
  "The toolbar, menus and dialogs of Velmora as a plugin of QGIS.")
set(CPACK_STRIP_FILES ON)
include(CPack)
