# The Debian packages, one per component: run `cpack -G DEB` in a build configured with the preset package, as
# scripts/package.sh does.

set(CPACK_PACKAGE_NAME lumvik)
set(CPACK_PACKAGE_VENDOR lumvik)
set(CPACK_PACKAGE_CONTACT "The lumvik developers <developers@lumvik.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime metadata development command)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Dependencies from the linked libraries; our own are found in the build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/host)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# Our packages depend on each other in the same version, since they are built from one tree.
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liblumvik${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS lumvik-metadata)
# Separate, since exiv2's license applies to what links it. Not a library for hosts: no shlibs file.
set(CPACK_DEBIAN_METADATA_PACKAGE_NAME lumvik-metadata)
set(CPACK_DEBIAN_METADATA_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liblumvik-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_COMMAND_PACKAGE_NAME lumvik)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION graphics)

# Debian expects the license under this name.
if(EXISTS ${PROJECT_SOURCE_DIR}/LICENSE)
  foreach(component RUNTIME METADATA DEVELOPMENT COMMAND)
    string(TOLOWER ${component} lower)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
      DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME} COMPONENT ${lower}
    )
  endforeach()
endif()

include(CPack)
cpack_add_component(runtime DESCRIPTION "${PROJECT_DESCRIPTION}: the shared libraries")
cpack_add_component(metadata DEPENDS runtime
  DESCRIPTION "${PROJECT_DESCRIPTION}: metadata of saved images and XMP files, with exiv2 (GPL)"
)
cpack_add_component(development DEPENDS runtime DESCRIPTION "${PROJECT_DESCRIPTION}: headers for C and C++")
cpack_add_component(command DEPENDS runtime metadata DESCRIPTION "${PROJECT_DESCRIPTION}: the command line")
