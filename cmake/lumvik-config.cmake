# Found by find_package(lumvik). The targets lumvik::lumvik, the engine, and lumvik::host, the host library, need no other
# package.
include(${CMAKE_CURRENT_LIST_DIR}/lumvik-targets.cmake)
