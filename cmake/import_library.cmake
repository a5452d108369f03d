# Writes the module-definition file of DLL, and from it the import library LIBRARY. Functions are imported by name:
# ordinals would change with each new function.
execute_process(COMMAND ${READOBJ} --coff-exports ${DLL} OUTPUT_VARIABLE table COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "Name: [^\n]+" names "${table}")
if(NOT names)
  message(FATAL_ERROR "${DLL} exports nothing")
endif()
list(TRANSFORM names REPLACE "Name: " "    ")
list(SORT names)
list(JOIN names "\n" names)

cmake_path(GET DLL FILENAME dll_name)
cmake_path(REPLACE_EXTENSION LIBRARY LAST_ONLY def OUTPUT_VARIABLE definitions)
file(WRITE ${definitions} "LIBRARY ${dll_name}\nEXPORTS\n${names}\n")

execute_process(
  COMMAND ${DLLTOOL} --machine i386:x86-64 --input-def ${definitions} --dllname ${dll_name} --output-lib ${LIBRARY}
  COMMAND_ERROR_IS_FATAL ANY
)
