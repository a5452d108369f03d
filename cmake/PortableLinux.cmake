# Toolchain file: any Linux on x86-64 with glibc 2.31 or newer, with Debian 12's compiler and the C and C++ libraries of
# Debian 11. Everything is searched only in CMAKE_FIND_ROOT_PATH, which the caller sets to the prefix that
# scripts/static-dependencies.sh built. What is built runs here too, so this is not a cross build.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)

set(CMAKE_SYSROOT ${CMAKE_FIND_ROOT_PATH}/sysroot)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_FIND_ROOT_PATH}/lib/pkgconfig")
# CMake's try_compile reads this file too; it gets the variables listed here and shares the environment.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_FIND_ROOT_PATH)

# The hardening of Debian's packages; sections that the linker can drop. The C++ library is that of the system where it
# runs: an exception that leaves the engine when memory is exhausted is freed by the library of its catcher, which must
# be the same.
set(flags "-fPIC -fvisibility=hidden -fno-semantic-interposition -ffunction-sections -fdata-sections")
string(APPEND flags " -fstack-protector-strong -D_FORTIFY_SOURCE=2")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags} -fvisibility-inlines-hidden -nostdinc++")
foreach(folder c++/12 x86_64-linux-gnu/c++/12)
  string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem /usr/include/${folder}")
endforeach()

# The host's own folders, which the compiler would search first, come after these. What the static libraries export would
# otherwise be exported again.
set(flags "-B${CMAKE_SYSROOT}/usr/lib/x86_64-linux-gnu -L${CMAKE_SYSROOT}/lib/x86_64-linux-gnu")
string(APPEND flags " -Wl,-z,relro,-z,now -Wl,--as-needed -Wl,--gc-sections")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${flags}")
# OpenCV's worker threads never end: its code stays loaded after dlclose().
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${flags} -Wl,--exclude-libs,ALL -Wl,-z,nodelete")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${flags} -Wl,--exclude-libs,ALL")
