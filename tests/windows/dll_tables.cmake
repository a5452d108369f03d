#Fails unless the library exports exactly the listed names and imports only DLLs that are part of Windows.
cmake_minimum_required(VERSION 3.25)

    execute_process(COMMAND ${OBJDUMP} - p ${LIBRARY} OUTPUT_VARIABLE tables COMMAND_ERROR_IS_FATAL ANY)

        string(REGEX MATCHALL
               "\n\t\\[ *[0-9]+\\] [^+\n][^\n]*" lines
               "${tables}") foreach (line IN LISTS lines) string(REGEX REPLACE
                                                                 ".* "
                                                                 "" name "${line}") list(APPEND exported ${
            name}) endforeach() list(SORT exported) file(STRINGS ${
            EXPORTS} expected) list(SORT expected) if (NOT "${exported}" STREQUAL "${expected}")
            message(FATAL_ERROR "The library exports\n${exported}\nbut should export\n${expected}") endif()

                set(of_windows KERNEL32.dll msvcrt.dll WS2_32.dll)
                    string(REGEX MATCHALL "DLL Name: [^\n]+" lines "${tables}") if (NOT lines)
                        message(FATAL_ERROR "No imported library was found in the output of objdump") endif()
                            foreach (line IN LISTS lines)
                                string(REPLACE
                                       "DLL Name: "
                                       "" name "${line}") if (NOT name IN_LIST of_windows)
                                    message(FATAL_ERROR
                                            "The library imports ${name}, which is not one of ${of_windows}")
                                        endif() endforeach()
