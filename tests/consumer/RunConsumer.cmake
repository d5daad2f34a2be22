# Installs the build into a scratch prefix, then configures, builds and runs
# the consumer project against it.
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV} failed (${result}):\n${out}")
    endif()
    set(output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${VESK_BUILD_DIR} --prefix ${WORK_DIR}/prefix)
# A sanitized library needs a consumer built with the same sanitizers.
set(flags "")
if(SANITIZE)
    list(JOIN SANITIZE "," sanitizers)
    set(flags "-fsanitize=${sanitizers}")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/build
    -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix "-DCMAKE_CXX_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build -j2)
run(${WORK_DIR}/build/consumer)
string(STRIP "${output}" output)
set(expected "http://127.0.0.1:55555/api/axapta/ExchangeData_Disc/ {\"text\":\"7\"}")
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "consumer printed '${output}', expected '${expected}'")
endif()
message(STATUS "consumer: ${output}")
