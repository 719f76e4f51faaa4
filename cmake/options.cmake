# Everything of ours links kurbelbuch_options: the include root, the warnings and the sanitizers.
add_library(kurbelbuch_options INTERFACE)
target_include_directories(kurbelbuch_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(kurbelbuch_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Wold-style-cast -Wcast-qual -Wformat=2 -Wundef
  # GCC 12 takes joining a literal and a temporary string for an overlapping copy.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # Rounding and the rules for NaN and infinity are part of the charts: no contraction into
  # fused operations, so that every machine draws the same pixels.
  -ffp-contract=off)
if(KURBELBUCH_WARNINGS_ARE_ERRORS)
  target_compile_options(kurbelbuch_options INTERFACE -Werror)
endif()
if(KURBELBUCH_SANITIZE)
  # Division of floating-point numbers by zero is defined (IEEE 754) and used on purpose, so
  # float-divide-by-zero stays off; conversions that do not fit are errors.
  set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                 -fno-omit-frame-pointer)
  target_compile_options(kurbelbuch_options INTERFACE ${sanitizers} -O1 -D_GLIBCXX_ASSERTIONS)
  target_link_options(kurbelbuch_options INTERFACE ${sanitizers})
endif()
if(KURBELBUCH_COVERAGE)
  # Without optimisation every branch of the source is one of the program. Atomic, because the tests
  # of interrupted work fork.
  target_compile_options(kurbelbuch_options INTERFACE --coverage -fprofile-update=atomic -O0)
  target_link_options(kurbelbuch_options INTERFACE --coverage)
endif()

# What users get is hardened, and the same wherever it was built.
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  set(release $<CONFIG:Release>)
  target_compile_options(kurbelbuch_options INTERFACE
    $<${release}:-fstack-protector-strong>
    $<${release}:-fstack-clash-protection>
    $<$<AND:${release},$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>>:-fcf-protection>
    $<${release}:-U_FORTIFY_SOURCE> $<${release}:-D_FORTIFY_SOURCE=2>
    "$<${release}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
  target_link_options(kurbelbuch_options INTERFACE
    $<${release}:LINKER:-z,relro,-z,now> $<${release}:LINKER:--as-needed>)
endif()

if(KURBELBUCH_FUZZ)
  # Coverage for libFuzzer everywhere, its main only in the fuzzers.
  target_compile_options(kurbelbuch_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
