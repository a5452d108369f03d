# What binaries for Windows have in addition: a version resource and, for libraries that hosts link, an import library.

# Describes the binary to Windows: what Explorer shows and installers compare. Call it once its output name is set.
function(lumvik_version_resource target description)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set(file_type VFT_APP)
    set(suffix ${CMAKE_EXECUTABLE_SUFFIX})
  else()
    set(file_type VFT_DLL)
    set(suffix ${CMAKE_SHARED_LIBRARY_SUFFIX})
  endif()
  get_target_property(name ${target} OUTPUT_NAME)
  if(NOT name)
    set(name ${target})
  endif()
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
  target_sources(${target} PRIVATE ${resource})
endfunction()

# Replaces the linker's import library by one in the short format, which Microsoft's linker, lld and MinGW all read, so
# that one file serves every compiler. Writes the module-definition file it is made from next to it.
function(lumvik_import_library target)
  find_program(LUMVIK_DLLTOOL llvm-dlltool REQUIRED)
  find_program(LUMVIK_READOBJ llvm-readobj REQUIRED)
  set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "" IMPORT_SUFFIX .lib)
  set(script ${PROJECT_SOURCE_DIR}/cmake/import_library.cmake)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -D DLL=$<TARGET_FILE:${target}> -D LIBRARY=$<TARGET_LINKER_FILE:${target}>
      -D DLLTOOL=${LUMVIK_DLLTOOL} -D READOBJ=${LUMVIK_READOBJ} -P ${script}
    VERBATIM
  )
  install(FILES $<PATH:REPLACE_EXTENSION,LAST_ONLY,$<TARGET_LINKER_FILE:${target}>,def>
    DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  )
endfunction()
