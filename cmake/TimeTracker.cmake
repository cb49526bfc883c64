# What every target of the project has in common, and the one way to declare a folder's module.

add_library(timetracker_options INTERFACE)
target_include_directories(timetracker_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(timetracker_options INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${TIMETRACKER_WERROR}>:-Werror>)
target_compile_definitions(timetracker_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS)
if(TIMETRACKER_SANITIZE)
  target_compile_options(timetracker_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(timetracker_options INTERFACE -fsanitize=address,undefined)
endif()
if(TIMETRACKER_FUZZ)
  # Tells the fuzzer what an input has reached.
  target_compile_options(timetracker_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/FastBuilds.cmake)

# Where the tools find the modules' types.
set(QT_QML_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml)

# timetracker_module(<folder's name> URI <uri> [SOURCES ...] [QML_FILES ...] [DEPENDENCIES ...]
#                    [LINK ...])
# One folder is one static library timetracker_<name> and one QML module; a program that shows the
# module's QML links timetracker_<name>plugin too.
function(timetracker_module name)
  cmake_parse_arguments(arg "" "URI" "SOURCES;QML_FILES;DEPENDENCIES;LINK" ${ARGN})
  set(target timetracker_${name})
  qt_add_library(${target} STATIC)
  set_target_properties(${target} PROPERTIES AUTOMOC ON)
  qt_add_qml_module(${target}
    URI ${arg_URI}
    VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    SOURCES ${arg_SOURCES}
    QML_FILES ${arg_QML_FILES}
    DEPENDENCIES ${arg_DEPENDENCIES})
  # The C++ that Qt 6.4 makes of bindings is in another order each time.
  set_target_properties(${target} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
  # The generated registration includes the headers by their bare names.
  target_include_directories(${target} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC timetracker_options ${arg_LINK})
  # What Qt makes of a module is compiled as the rest is.
  foreach(generated ${target}_qmlcache ${target}plugin ${target}plugin_init)
    if(TARGET ${generated})
      target_link_libraries(${generated} PRIVATE timetracker_options)
    endif()
  endforeach()
endfunction()
