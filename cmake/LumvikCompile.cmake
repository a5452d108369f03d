# How our own code is compiled; the only place where flags are set. Every target of ours calls `lumvik_compile_options`
# or, for tests, `lumvik_test_options`.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON) # the build can be moved, and its path is not in the command

find_program(LUMVIK_CCACHE ccache)
if(LUMVIK_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${LUMVIK_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${LUMVIK_CCACHE})
endif()

# The suffix of platform-specific files.
if(WIN32)
  set(LUMVIK_PLATFORM win32)
  set(LUMVIK_OTHER_PLATFORM posix)
else()
  set(LUMVIK_PLATFORM posix)
  set(LUMVIK_OTHER_PLATFORM win32)
endif()

function(lumvik_compile_options target)
  # With contraction the compiler would fuse multiply and add on some instruction sets and not on others; without it the
  # same photograph gives the same bytes everywhere. Floating-point exception flags and errno are never read, so loops
  # with conditionals may evaluate both branches and vectorize.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wconversion -Wshadow -Wno-psabi -ffp-contract=off -fno-math-errno -fno-trapping-math)
  # A release holds no path of the machine it was built on, so that a commit gives the same bytes in any folder. ccache
  # may make paths relative to the build folder. The last matching prefix wins.
  cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${CMAKE_BINARY_DIR} OUTPUT_VARIABLE source_from_build)
  foreach(folder ${source_from_build} ${PROJECT_SOURCE_DIR} ${CMAKE_BINARY_DIR} ${CMAKE_FIND_ROOT_PATH})
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-ffile-prefix-map=${folder}=.>)
  endforeach()
  if(LUMVIK_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(WIN32)
    # Function names and lines, for the debug symbols of the package.
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-g1>)
  endif()
  if(LUMVIK_SANITIZE)
    # With the sanitizers' instrumentation GCC warns of uninitialized values in std::function and std::regex.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> -fsanitize=${LUMVIK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${LUMVIK_SANITIZE})
    # LUMVIK_SANITIZE_ADDRESS and so on: compilers disagree on the macro that reports a sanitizer.
    string(TOUPPER "${LUMVIK_SANITIZE}" names)
    string(REGEX MATCHALL "[A-Z]+" names "${names}")
    list(TRANSFORM names PREPEND LUMVIK_SANITIZE_)
    target_compile_definitions(${target} PRIVATE ${names})
  endif()
  if(LUMVIK_COVERAGE)
    target_link_options(${target} PRIVATE -fprofile-instr-generate)
  endif()
endfunction()

# Adds `${stem}_avx2.cpp` and `${stem}_avx512.cpp`, compiled for these instruction sets. By default, GCC neither gathers
# from tables nor uses vectors of 512 bits, whatever the instruction set.
function(lumvik_instruction_set_sources target stem)
  target_sources(${target} PRIVATE ${stem}_avx2.cpp ${stem}_avx512.cpp)
  set(gather $<$<CXX_COMPILER_ID:GNU>:-mtune-ctrl=use_gather>)
  set(avx512 -mavx512f -mavx512bw -mavx512dq -mavx512vl -mprefer-vector-width=512)
  set_source_files_properties(${stem}_avx2.cpp PROPERTIES COMPILE_OPTIONS "-mavx2;${gather}" SKIP_UNITY_BUILD_INCLUSION ON)
  set_source_files_properties(${stem}_avx512.cpp PROPERTIES COMPILE_OPTIONS "-mavx2;${avx512};${gather}" SKIP_UNITY_BUILD_INCLUSION ON)
  set_source_files_properties(${stem}_baseline.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# For test cases, which take longer to compile than to run.
function(lumvik_test_options target)
  lumvik_compile_options(${target})
  target_compile_options(${target} PRIVATE -O0)
  lumvik_compile_together(${target})
endfunction()

# A unity build, for sources whose headers take far longer to compile than the sources themselves. Excludes platform-
# specific files, whose system headers define macros.
function(lumvik_compile_together target)
  if(NOT LUMVIK_COMPILE_TOGETHER)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 20)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "_(posix|win32)(_test)?\\.cpp$")
  set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# For the code whose coverage is measured and guides the fuzzer.
function(lumvik_instrument target)
  if(LUMVIK_BUILD_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(LUMVIK_COVERAGE)
    target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
  endif()
endfunction()

# Lets a program take its arguments and paths in UTF-8 on Windows too.
function(lumvik_utf8_program target)
  if(WIN32)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/utf8_manifest.rc)
  endif()
endfunction()
