# The emulator's seed schema against the shipped seed and broken ones.
file(MAKE_DIRECTORY ${WORK_DIR})
# Node finds the modules that a script imports beside or above the script.
file(COPY ${CMAKE_CURRENT_LIST_DIR}/validate-seed.mjs DESTINATION ${WORK_DIR})
file(CREATE_LINK ${NODE_MODULES} ${WORK_DIR}/node_modules SYMBOLIC)
execute_process(COMMAND ${NODE} ${WORK_DIR}/validate-seed.mjs ${SCHEMA} ${SEED}
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE errors)
message(STATUS "${out}")
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the seed schema does not hold:\n${errors}")
endif()
