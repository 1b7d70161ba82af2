# Reads the dynamic symbol table of the shared library and compares its
# defined symbols with the fifteen functions of the C interface.
execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY}
    OUTPUT_VARIABLE table RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${table}")
set(found "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE "^.* " "" name "${line}")
    list(APPEND found ${name})
endforeach()
list(SORT found)
set(expected
    SentivoCreateHandle SentivoDestroyHandle SentivoDetectFake SentivoDetectFinger
    SentivoEvaluateLiveliness SentivoGetErrorDescriptionA SentivoGetErrorDescriptionW
    SentivoGetPropertyA SentivoGetPropertyW SentivoInitialize SentivoReset SentivoSetImage
    SentivoSetPropertyA SentivoSetPropertyW SentivoUninitialize)
list(SORT expected)
if(NOT found STREQUAL expected)
    message(FATAL_ERROR "exported: ${found}\nexpected: ${expected}")
endif()
message(STATUS "export table holds exactly the 15 functions")
