# Toolchain file: Windows on x86-64 by Debian's mingw-w64. The libraries are looked for in CMAKE_FIND_ROOT_PATH
# alone, which the caller sets to the folder that scripts/windows-dependencies.sh filled.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Of the two kinds of threads the compiler comes with, the one that has std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_FIND_ROOT_PATH}/lib/pkgconfig")
# CMake's trial programs read this file too, with the variables named here, and share the environment.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_FIND_ROOT_PATH)

# The compiler's own libraries go into the files, which then need nothing that Windows does not bring; and no
# time stamp goes in, so that the same source gives the same bytes.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
