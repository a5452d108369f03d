# Toolchain file: Windows on x86-64 with Debian's mingw-w64. Libraries are searched only in CMAKE_FIND_ROOT_PATH, which
# the caller sets to the prefix that scripts/static-dependencies.sh built.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler comes with two thread models; only this one has std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_FIND_ROOT_PATH}/lib/pkgconfig")
# CMake's try_compile reads this file too; it gets the variables listed here and shares the environment.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_FIND_ROOT_PATH)

# All code that handles files is protected, that of the libraries too.
set(CMAKE_C_FLAGS_INIT -fstack-protector-strong)
set(CMAKE_CXX_FLAGS_INIT -fstack-protector-strong)

# The compiler's runtime is linked statically, so that the binaries need only what Windows provides, and there is no
# timestamp, so that the same source gives the same bytes. The linker randomizes addresses and makes data not executable
# by default; that is stated because without it everything would run just as well.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp,--dynamicbase,--high-entropy-va,--nxcompat")
endforeach()
