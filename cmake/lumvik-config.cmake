# Found by find_package(lumvik). The targets lumvik::lumvik, the engine, and lumvik::host, the host library, need no other
# package.
include(${CMAKE_CURRENT_LIST_DIR}/lumvik-targets.cmake)
if(WIN32)
  # A source for programs, which makes UTF-8 their code page.
  cmake_path(SET lumvik_UTF8_MANIFEST NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../../share/lumvik/utf8.manifest)
endif()
