# Toolchain file: clang and lld in place of Microsoft's compiler and linker. CMake takes them for these and applies the
# same rules.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
find_program(CMAKE_C_COMPILER clang-cl REQUIRED) # on the caller's PATH, as a link to clang
find_program(CMAKE_LINKER lld-link REQUIRED)
find_program(CMAKE_RC_COMPILER llvm-rc REQUIRED)
find_program(CMAKE_MT llvm-mt REQUIRED)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
# A test program would need Microsoft's C runtime.
set(CMAKE_C_COMPILER_WORKS TRUE)
