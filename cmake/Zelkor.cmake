# One function per kind of target; each sets the language standard, the warnings and the include root.
include_guard(GLOBAL)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# What every target of this project shares. Recorded source locations are shortened: sources below
# Foundation/Core lose that prefix, all others the project folder (the rule given last wins). A
# compiler cache may hand the compiler paths that are relative to the build folder.
file(RELATIVE_PATH ZELKOR_RELATIVE_SOURCE "${CMAKE_BINARY_DIR}" "${PROJECT_SOURCE_DIR}/Foundation")
function(zelkor_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${ZELKOR_WERROR}>:-Werror>
    -fmacro-prefix-map=${ZELKOR_RELATIVE_SOURCE}/=Foundation/
    -fmacro-prefix-map=${ZELKOR_RELATIVE_SOURCE}/Core/=
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/Foundation/Core/=)
  if(ZELKOR_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${ZELKOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(${target} PRIVATE -fsanitize=${ZELKOR_SANITIZE})
  endif()
endfunction()

# zelkor_sources(FILE...): this folder's part of the one library.
function(zelkor_sources)
  target_sources(zelkor-foundation PRIVATE ${ARGN})
endfunction()

# zelkor_test(NAME FILE...): one GoogleTest executable, run once by ctest. Sanitizers answer requests
# for more memory than there is as the heap does. Tests for another processor are emulated, slowly.
function(zelkor_test name)
  add_executable(${name} ${ARGN})
  zelkor_defaults(${name})
  target_link_libraries(${name} PRIVATE Zelkor::Foundation ZelkorTestSupport)
  add_test(NAME ${name} COMMAND ${name})
  set(timeout 300)
  if(CMAKE_CROSSCOMPILING)
    set(timeout 1500)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout} ENVIRONMENT
    "ASAN_OPTIONS=allocator_may_return_null=1;TSAN_OPTIONS=allocator_may_return_null=1")
endfunction()

# zelkor_benchmark(NAME FILE... [PEERS target...]): one Google Benchmark executable.
function(zelkor_benchmark name)
  cmake_parse_arguments(arg "" "" "PEERS" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  zelkor_defaults(${name})
  target_link_libraries(${name} PRIVATE Zelkor::Foundation benchmark::benchmark_main ${arg_PEERS})
endfunction()

# zelkor_fuzzer(NAME FILE...): one libFuzzer executable; the library itself is instrumented too.
function(zelkor_fuzzer name)
  add_executable(${name} ${ARGN})
  zelkor_defaults(${name})
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE Zelkor::Foundation)
endfunction()

# zelkor_table(NAME SCRIPT INPUT [FOLDER]): a committed table that the target `gen_tables` makes anew and
# a test compares, where FOLDER, or else ZELKOR_DATA_DIR, has the generator's inputs, which are not part
# of the project.
function(zelkor_table name script input)
  set(folder "${ZELKOR_DATA_DIR}")
  if(ARGC GREATER 3)
    set(folder "${ARGV3}")
  endif()
  if(NOT folder)
    return()
  endif()
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  set(command ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/generate/${script}
    ${folder}/${input})
  if(NOT TARGET gen_tables)
    add_custom_target(gen_tables)
  endif()
  add_custom_target(gen_${name} COMMAND ${command} VERBATIM)
  add_dependencies(gen_tables gen_${name})
  add_test(NAME TableIsCurrent_${name} COMMAND ${command} --check)
endfunction()
