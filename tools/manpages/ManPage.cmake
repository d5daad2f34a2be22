# Writes a program's manual page from its own help, so that the two cannot
# drift: help2man reads `PROGRAM --help` and `PROGRAM --version`, adds the
# sections of INCLUDE and, with COMMANDS set, the usage of every command the
# help lists (`PROGRAM help COMMAND`). The page is written gzipped to OUTPUT.
#
#   cmake -DPROGRAM=... -DNAME="one line" -DINCLUDE=page.h2m [-DCOMMANDS=ON]
#         -DHELP2MAN=... -DGZIP=... -DOUTPUT=page.1.gz -P ManPage.cmake
cmake_minimum_required(VERSION 3.22)

foreach(variable IN ITEMS PROGRAM NAME INCLUDE HELP2MAN GZIP OUTPUT)
    if(NOT DEFINED ${variable})
        message(FATAL_ERROR "ManPage.cmake needs -D${variable}=...")
    endif()
endforeach()

# roff reads a line that starts with a dot or an apostrophe as a request,
# and a backslash as an escape.
function(escape_roff text out)
    string(REPLACE "\\" "\\e" text "${text}")
    string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" text "${text}")
    set(${out} "${text}" PARENT_SCOPE)
endfunction()

set(includes --include=${INCLUDE})
if(COMMANDS)
    execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${PROGRAM} --help failed (${status})")
    endif()
    # The command names: the first word of each entry of the "Commands:" list.
    if(NOT help MATCHES "\nCommands:\n(.*)")
        message(FATAL_ERROR "${PROGRAM} --help lists no \"Commands:\"")
    endif()
    string(REGEX REPLACE "\n\n.*" "" listing "${CMAKE_MATCH_1}")
    string(REGEX MATCHALL "(^|\n)  [a-z][a-z-]*" names "${listing}")
    set(section "[USAGE OF EACH COMMAND]\n")
    foreach(name IN LISTS names)
        string(STRIP "${name}" name)
        execute_process(COMMAND ${PROGRAM} help ${name} OUTPUT_VARIABLE usage
                        RESULT_VARIABLE status)
        if(NOT status EQUAL 0)
            message(FATAL_ERROR "${PROGRAM} help ${name} failed (${status})")
        endif()
        escape_roff("${usage}" usage)
        string(APPEND section ".SS ${name}\n.nf\n${usage}.fi\n")
    endforeach()
    get_filename_component(generated ${OUTPUT} NAME)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/${generated}.commands.h2m)
    file(WRITE ${generated} "${section}")
    list(APPEND includes --include=${generated})
endif()

string(REGEX REPLACE "\\.gz$" "" page ${OUTPUT})
execute_process(
    COMMAND ${HELP2MAN} --no-info --no-discard-stderr --section=1 "--name=${NAME}"
            ${includes} --output=${page} ${PROGRAM}
    RESULT_VARIABLE status ERROR_VARIABLE errors)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "help2man failed for ${PROGRAM} (${status}): ${errors}")
endif()
file(REMOVE ${OUTPUT})
execute_process(COMMAND ${GZIP} -9n ${page} RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "gzip failed for ${page} (${status})")
endif()
