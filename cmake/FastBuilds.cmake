# What shortens a build: ccache where it is installed, else one precompiled header for all targets,
# which takes about a third off. Not both: a precompiled header is never the same twice, so ccache
# would know nothing again in the next clone. What is in it has to be included where it is used all
# the same, as builds with ccache do without.

find_program(TIMETRACKER_CCACHE ccache)
mark_as_advanced(TIMETRACKER_CCACHE)
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
    <algorithm> <chrono> <functional> <memory> <optional> <random>
    <QCoreApplication> <QDateTime> <QDir> <QFile> <QHash> <QObject> <QPointer> <QProcess> <QString>
    <QStringList> <QTemporaryDir> <QTimer> <QUuid> <QVariantMap>)
endif()

# timetracker_precompile(<target>): gives the precompiled header, if there is one, to a target.
function(timetracker_precompile target)
  if(TARGET timetracker_precompiled)
    target_precompile_headers(${target} REUSE_FROM timetracker_precompiled)
  endif()
endfunction()
