# Installs the build into a scratch prefix, then builds and runs the example
# host program, its own find_package project, against that prefix alone.
file(REMOVE_RECURSE ${WORK_DIR})

execute_process(COMMAND ${CMAKE_COMMAND} --install ${VESK_BUILD_DIR} --prefix ${WORK_DIR}/prefix
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "installing failed (${result}):\n${errors}")
endif()
# A sanitized library needs a program built with the same sanitizers.
set(flags "")
if(SANITIZE)
    list(JOIN SANITIZE "," sanitizers)
    set(flags "-fsanitize=${sanitizers}")
endif()
execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/run-example.sh ${WORK_DIR}/prefix
        ${EXAMPLE_SOURCE_DIR} ${WORK_DIR} "${flags}"
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the example against the installed tree failed (${result}):\n${out}")
endif()
message(STATUS "${out}")
