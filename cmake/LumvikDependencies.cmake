# The libraries the engine uses, as the target lumvik_dependencies: OpenCV (core, imgproc, imgcodecs), LibRaw (the
# thread-safe build), libexif and Little CMS 2.

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBRAW REQUIRED IMPORTED_TARGET libraw_r>=0.20)
pkg_check_modules(LIBEXIF REQUIRED IMPORTED_TARGET libexif>=0.6.22)
pkg_check_modules(LCMS REQUIRED IMPORTED_TARGET lcms2>=2.12)

add_library(lumvik_dependencies INTERFACE)
target_link_libraries(lumvik_dependencies INTERFACE PkgConfig::LIBRAW PkgConfig::LIBEXIF PkgConfig::LCMS Threads::Threads)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang AND UNIX AND NOT APPLE)
  # LibRaw adds -fopenmp, for which clang would link its own runtime instead of the one LibRaw was built with.
  target_link_libraries(lumvik_dependencies INTERFACE -fopenmp=libgomp)
endif()

# Unlike OpenCV built from source, the Debian packages libopencv-{core,imgproc,imgcodecs}-dev have no OpenCVConfig.cmake.
find_package(OpenCV 4 QUIET COMPONENTS core imgproc imgcodecs)
if(OpenCV_FOUND)
  target_link_libraries(lumvik_dependencies INTERFACE ${OpenCV_LIBS})
  target_include_directories(lumvik_dependencies SYSTEM INTERFACE ${OpenCV_INCLUDE_DIRS})
else()
  find_path(LUMVIK_OPENCV_INCLUDE opencv2/core.hpp PATH_SUFFIXES opencv4 REQUIRED)
  target_include_directories(lumvik_dependencies SYSTEM INTERFACE ${LUMVIK_OPENCV_INCLUDE})
  foreach(module imgcodecs imgproc core)
    find_library(LUMVIK_OPENCV_${module} opencv_${module} REQUIRED)
    target_link_libraries(lumvik_dependencies INTERFACE ${LUMVIK_OPENCV_${module}})
  endforeach()
endif()

if(WIN32)
  # Same results as glibc's, and fast, unlike those of mingw, which is linked later: scripts/windows-math.
  find_library(LUMVIK_MATH glibc_math REQUIRED)
  target_link_libraries(lumvik_dependencies INTERFACE ${LUMVIK_MATH})
endif()
