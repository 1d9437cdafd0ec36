# Instrumented builds, each in a build folder of its own (the Makefile's test-asan, test-tsan and fuzz):
#   NB_SANITIZE=address,undefined  or  NB_SANITIZE=thread   every target, the tests included;
#   NB_FUZZ=ON (clang)             coverage for libFuzzer plus address and undefined, and the fuzz_* targets.
# Undefined behaviour stops the program, so a test that meets it fails instead of printing and passing.
set(NB_SANITIZE "" CACHE STRING "Sanitizers for every target (address,undefined or thread); empty: none")
option(NB_FUZZ "Build the libFuzzer targets (clang only)" OFF)

set(nb_sanitizers ${NB_SANITIZE})
if(NB_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "NB_FUZZ needs clang (CC=clang CXX=clang++)")
  endif()
  set(nb_sanitizers address,undefined)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(nb_sanitizers)
  add_compile_options(-fsanitize=${nb_sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${nb_sanitizers})
endif()
