# Installs the build into a scratch prefix, then builds and runs a host
# program, its own find_package project, against that prefix alone:
#   RUN PREFIX [SOURCE] WORK_DIR FLAGS
# with SOURCE given as -DSOURCE_DIR where the script takes one.
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
execute_process(COMMAND ${RUN} ${WORK_DIR}/prefix ${SOURCE_DIR} ${WORK_DIR} "${flags}"
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
if(NOT result EQUAL 0)
    get_filename_component(name ${RUN} NAME)
    message(FATAL_ERROR "${name} against the installed tree failed (${result}):\n${out}")
endif()
message(STATUS "${out}")
