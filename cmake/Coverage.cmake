# Counts what the tests run of model and timer; tools/coverage shows it. All else is built as usual.

foreach(target timetracker_model timetracker_timer)
  target_compile_options(${target} PRIVATE --coverage)
  target_link_options(${target} INTERFACE --coverage)
endforeach()
# A fatal error ends the program without the exit at which the counts are written.
target_sources(timetracker_model PRIVATE ${CMAKE_CURRENT_LIST_DIR}/coverageexit.cpp)
target_link_options(timetracker_model INTERFACE LINKER:--wrap=_Exit)
