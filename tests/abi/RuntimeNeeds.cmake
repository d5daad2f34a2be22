# Compares the shared libraries that a library needs at run time (its NEEDED
# entries) with what the README states for its build: the table row that
# begins with "| <ROW> |" names them, each in backquotes.
#
#   cmake -DREADELF=<readelf> -DLIBRARY=<file> -DREADME=<README.md> -DROW=<row label>
#         -P RuntimeNeeds.cmake

execute_process(COMMAND ${READELF} -d ${LIBRARY}
    RESULT_VARIABLE result OUTPUT_VARIABLE dynamic ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${READELF} failed on ${LIBRARY}: ${errors}")
endif()
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*\\[[^]\n]+\\]" entries "${dynamic}")
set(needed "")
foreach(entry IN LISTS entries)
    string(REGEX REPLACE ".*\\[(.+)\\]" "\\1" name "${entry}")
    list(APPEND needed ${name})
endforeach()
list(SORT needed)

file(STRINGS ${README} rows REGEX "^\\| ${ROW} \\|")
list(LENGTH rows count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "${README} has ${count} rows beginning \"| ${ROW} |\", not one")
endif()
string(REGEX MATCHALL "`[^`]+\\.so[.0-9]*`" quoted "${rows}")
set(stated "")
foreach(name IN LISTS quoted)
    string(REPLACE "`" "" name "${name}")
    list(APPEND stated ${name})
endforeach()
list(SORT stated)

if(NOT needed STREQUAL stated)
    list(JOIN needed ", " needed_text)
    list(JOIN stated ", " stated_text)
    message(FATAL_ERROR "${LIBRARY} needs at run time: ${needed_text}\n"
        "${README} states for \"${ROW}\": ${stated_text}")
endif()
list(JOIN needed ", " needed_text)
message(STATUS "${ROW}: needs ${needed_text}, as stated")
