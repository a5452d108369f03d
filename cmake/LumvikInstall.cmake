# Installation, for hosts that find lumvik with find_package or pkg-config. The components are the packages: runtime,
# metadata, development and command. No installed file names a library that ours use or the install prefix: hosts need
# only lumvik, and the tree can be moved.

include(CMakePackageConfigHelpers)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/lumvik)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(libraries lumvik)
if(TARGET lumvik_host)
  list(APPEND libraries lumvik_host)
endif()
install(TARGETS ${libraries}
  EXPORT lumvik_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
)
if(TARGET lumvik_metadata)
  # Where the host library searches for it: next to itself, in the subfolder "lumvik".
  if(WIN32)
    set(library_folder ${CMAKE_INSTALL_BINDIR})
  else()
    set(library_folder ${CMAKE_INSTALL_LIBDIR})
  endif()
  install(TARGETS lumvik_metadata LIBRARY DESTINATION ${library_folder}/lumvik COMPONENT metadata)
endif()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

write_basic_package_version_file(${PROJECT_BINARY_DIR}/lumvik-config-version.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT lumvik_targets
  NAMESPACE lumvik:: FILE lumvik-targets.cmake
  DESTINATION ${cmake_folder} COMPONENT development
)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/lumvik-config.cmake ${PROJECT_BINARY_DIR}/lumvik-config-version.cmake
  DESTINATION ${cmake_folder} COMPONENT development
)

if(WIN32)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/windows_readme.txt.in ${PROJECT_BINARY_DIR}/README.txt
    @ONLY NEWLINE_STYLE CRLF
  )
  install(FILES ${PROJECT_BINARY_DIR}/README.txt DESTINATION . COMPONENT development)
  # For the programs of hosts.
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/utf8.manifest DESTINATION ${CMAKE_INSTALL_DATADIR}/lumvik
    COMPONENT development
  )
endif()

cmake_path(SET pkgconfig_path ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${pkgconfig_path} OUTPUT_VARIABLE pc_prefix)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE pc_libdir)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_INCLUDEDIR BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}
  OUTPUT_VARIABLE pc_includedir
)
foreach(library ${libraries})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${library}.pc.in ${PROJECT_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${library}.pc DESTINATION ${pkgconfig_folder} COMPONENT development)
endforeach()
