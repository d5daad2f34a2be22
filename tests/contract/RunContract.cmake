# The contract: `vesk openapi` writes a valid OpenAPI 3.1 document, and the
# default and fully filled body of every record conforms to it.
file(MAKE_DIRECTORY ${WORK_DIR})

function(run output)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_FILE ${output}
        ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed (${result}):\n${errors}")
    endif()
endfunction()

run(${WORK_DIR}/openapi.json ${VESK} openapi)
run(${WORK_DIR}/bodies.json ${BODIES})
# Node finds the modules that a script imports beside or above the script.
file(COPY ${CMAKE_CURRENT_LIST_DIR}/validate-contract.mjs DESTINATION ${WORK_DIR})
file(CREATE_LINK ${NODE_MODULES} ${WORK_DIR}/node_modules SYMBOLIC)
execute_process(COMMAND ${NODE} ${WORK_DIR}/validate-contract.mjs
        ${WORK_DIR}/openapi.json ${WORK_DIR}/bodies.json
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE errors)
message(STATUS "${out}")
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the contract does not hold:\n${errors}")
endif()
