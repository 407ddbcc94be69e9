# SPDX-License-Identifier: MIT
# velmora_folder(NAME [WITHOUT SOURCE...] [LINKS TARGET...] [PRIVATE TARGET...]): the static library of one folder of
# src/ that belongs to a host or to the platform. velmora_room(NAME): a folder of the extension; all of them make one library that is in a
# process once (velmora_steps, see src/CMakeLists.txt), so that nobody can link one alone.
# tests/checks/includes.sh holds what a folder may include. Every header is also compiled alone;
# one build is enough for that, and it is not the slow one under the sanitizers.
function(velmora_folder NAME)
  cmake_parse_arguments(ARG "" "" "WITHOUT;LINKS;PRIVATE" ${ARGN})
  velmora_sources(SOURCES)
  foreach(SOURCE ${ARG_WITHOUT})
    list(REMOVE_ITEM SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/${SOURCE})
  endforeach()
  add_library(velmora_${NAME} STATIC ${SOURCES})
  target_include_directories(velmora_${NAME} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(velmora_${NAME} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE} velmora_options)
  velmora_headers_alone(${NAME} ${ARG_PRIVATE})
endfunction()

function(velmora_room NAME)
  velmora_sources(SOURCES)
  add_library(velmora_${NAME} OBJECT ${SOURCES})
  target_include_directories(velmora_${NAME} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(velmora_${NAME} PRIVATE velmora_options)
  target_sources(velmora_steps PRIVATE $<TARGET_OBJECTS:velmora_${NAME}>)
  velmora_headers_alone(${NAME})
endfunction()

# The sources of a folder, but for those of its programs and entry points.
function(velmora_sources RESULT)
  file(GLOB_RECURSE SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(FILTER SOURCES EXCLUDE REGEX "/(dll|main)\\.cpp$")
  set(${RESULT} ${SOURCES} PARENT_SCOPE)
endfunction()

# ... with the libraries that only the folder itself sees.
function(velmora_headers_alone NAME)
  file(GLOB_RECURSE HEADERS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  set(ALONE)
  foreach(HEADER ${HEADERS})
    file(RELATIVE_PATH REL ${PROJECT_SOURCE_DIR}/src ${HEADER})
    string(REPLACE "/" "_" FLAT ${REL})
    set(UNIT ${CMAKE_CURRENT_BINARY_DIR}/alone/${FLAT}.cpp)
    set(TEXT "#include \"${REL}\"\n#include \"${REL}\"\n")
    if(EXISTS ${UNIT})
      file(READ ${UNIT} OLD)
    else()
      set(OLD "")
    endif()
    if(NOT OLD STREQUAL TEXT)
      file(WRITE ${UNIT} ${TEXT})
    endif()
    list(APPEND ALONE ${UNIT})
  endforeach()
  if(ALONE AND BUILD_TESTING AND NOT VELMORA_CORE AND NOT VELMORA_SANITIZE)
    add_library(velmora_${NAME}_headers OBJECT ${ALONE})
    target_include_directories(velmora_${NAME}_headers PRIVATE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(velmora_${NAME}_headers PRIVATE velmora_${NAME} ${ARGN} velmora_options)
  endif()
endfunction()
