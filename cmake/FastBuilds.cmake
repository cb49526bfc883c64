# What shortens a build, beside the presets' unity builds, which compile all files of a target as
# one: ccache where it is installed, else one precompiled header for all targets. Not both: a
# precompiled header is never the same twice, so ccache would know nothing again in the next clone.
# What is in it has to be included where it is used all the same, as builds with ccache do without.

find_program(TIMETRACKER_CCACHE ccache)
# Links the many test programs in a tenth of the usual linker's time.
find_program(TIMETRACKER_MOLD mold)
mark_as_advanced(TIMETRACKER_CCACHE TIMETRACKER_MOLD)

# timetracker_use_precompiled(<folder>): gives the header to the targets of a folder, and of those
# below it, that have the project's options. Any other options would not go with it.
function(timetracker_use_precompiled folder)
  get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  list(REMOVE_ITEM targets timetracker_precompiled)
  foreach(target IN LISTS targets)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if("timetracker_options" IN_LIST libraries)
      target_precompile_headers(${target} REUSE_FROM timetracker_precompiled)
    endif()
  endforeach()
  get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(below IN LISTS folders)
    timetracker_use_precompiled(${below})
  endforeach()
endfunction()

if(TIMETRACKER_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TIMETRACKER_CCACHE})
else()
  # Of libraries and programs alike, as one header serves both.
  set(CMAKE_CXX_COMPILE_OPTIONS_PIE ${CMAKE_CXX_COMPILE_OPTIONS_PIC})
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled.cpp CONTENT "")
  add_library(timetracker_precompiled OBJECT ${PROJECT_BINARY_DIR}/precompiled.cpp)
  # Qt6::Core alone: what the header defines, every target that uses it has to define, too.
  target_link_libraries(timetracker_precompiled PRIVATE timetracker_options Qt6::Core)
  target_precompile_headers(timetracker_precompiled PRIVATE
    <algorithm> <chrono> <filesystem> <functional> <memory> <optional> <random>
    <QAbstractItemModel> <QBitArray> <QCborMap> <QCoreApplication> <QDateTime> <QDebug> <QDir> <QEvent>
    <QFile> <QHash> <QObject> <QPointer> <QProcess> <QProperty> <QRectF> <QRegularExpression> <QSet>
    <QString> <QStringList> <QTemporaryDir> <QThread> <QTimer> <QUrl> <QUuid> <QVariantMap>
    <QVersionNumber>)
  cmake_language(DEFER CALL timetracker_use_precompiled ${PROJECT_SOURCE_DIR})
endif()
