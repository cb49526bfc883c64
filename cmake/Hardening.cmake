# What makes a fault harder to exploit, in every build that is optimised: such is what users run.
# A sanitizer finds the same faults by other means, and does not go with some of these.

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(hardened $<NOT:$<CONFIG:Debug>>)
target_compile_options(timetracker_options INTERFACE
  -Wformat -Werror=format-security
  $<${hardened}:-fstack-protector-strong>)
target_compile_definitions(timetracker_options INTERFACE $<${hardened}:_GLIBCXX_ASSERTIONS>)

# The same source gives the same program in every folder.
target_compile_options(timetracker_options INTERFACE
  $<${hardened}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>
  $<${hardened}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)

# Not every processor and compiler has these two.
foreach(flag -fstack-clash-protection -fcf-protection)
  string(MAKE_C_IDENTIFIER "TIMETRACKER_HAS${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(timetracker_options INTERFACE $<${hardened}:${flag}>)
  endif()
endforeach()

# The C library warns of a level that the compiler does not know.
set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
check_cxx_source_compiles("#include <string.h>\nint main() { return 0; }" TIMETRACKER_FORTIFY_3)
unset(CMAKE_REQUIRED_FLAGS)
set(level $<IF:$<BOOL:${TIMETRACKER_FORTIFY_3}>,3,2>)
target_compile_options(timetracker_options INTERFACE
  $<${hardened}:-U_FORTIFY_SOURCE> $<${hardened}:-D_FORTIFY_SOURCE=${level}>)

if(UNIX AND NOT APPLE)
  target_link_options(timetracker_options INTERFACE
    $<${hardened}:LINKER:-z,relro> $<${hardened}:LINKER:-z,now>)
endif()
