# Found by find_package(lumvik). The target lumvik::lumvik needs no other package.
include(${CMAKE_CURRENT_LIST_DIR}/lumvik-targets.cmake)
