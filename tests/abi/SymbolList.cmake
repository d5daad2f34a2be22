# Lists a library's dynamic symbols, one per line, demangled and sorted, and
# compares them with a committed list (MODE=check) or writes that list anew
# (MODE=update).
#
#   cmake -DNM=<nm> -DLIBRARY=<file> -DLIST=<committed list> -DMODE=check|update
#         [-DIMPORTS_FROM=<library>;...] -P SymbolList.cmake
#
# Without IMPORTS_FROM: the symbols that LIBRARY exports, each line the
# symbol's kind (T code, D/B data, V/u vague linkage, R read-only data) and
# its name with its version. With IMPORTS_FROM: the symbols that LIBRARY
# needs from those libraries, each line a name.
cmake_minimum_required(VERSION 3.22)

# The demangled names of `file`'s dynamic symbols, defined or undefined,
# as "<kind> <name>" lines in `out`.
function(dynamic_symbols file which out)
    execute_process(COMMAND ${NM} --dynamic --${which} --demangle ${file}
        RESULT_VARIABLE result OUTPUT_VARIABLE listing ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${NM} failed on ${file}: ${errors}")
    endif()
    string(REPLACE "\n" ";" lines "${listing}")
    set(symbols "")
    foreach(line IN LISTS lines)
        # "<address> <kind> <name>", or "<spaces> <kind> <name>" when undefined;
        # the version node itself has kind A.
        if(line MATCHES "^[0-9a-f ]+ ([A-Za-z]) (.+)$" AND NOT CMAKE_MATCH_1 STREQUAL "A")
            list(APPEND symbols "${CMAKE_MATCH_1} ${CMAKE_MATCH_2}")
        endif()
    endforeach()
    set(${out} "${symbols}" PARENT_SCOPE)
endfunction()

if(IMPORTS_FROM)
    set(what "the symbols that ${LIBRARY} imports from ${IMPORTS_FROM}")
    set(provided "")
    foreach(provider IN LISTS IMPORTS_FROM)
        dynamic_symbols(${provider} defined-only defined)
        foreach(symbol IN LISTS defined)
            string(REGEX REPLACE "^. " "" name "${symbol}")
            list(APPEND provided "${name}")
        endforeach()
    endforeach()
    dynamic_symbols(${LIBRARY} undefined-only needed)
    set(symbols "")
    foreach(symbol IN LISTS needed)
        string(REGEX REPLACE "^. " "" name "${symbol}")
        if(name IN_LIST provided)
            list(APPEND symbols "${name}")
        endif()
    endforeach()
else()
    set(what "the symbols that ${LIBRARY} exports")
    dynamic_symbols(${LIBRARY} defined-only symbols)
endif()
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)
list(JOIN symbols "\n" actual)
set(actual "${actual}\n")

if(MODE STREQUAL "update")
    file(WRITE ${LIST} "${actual}")
    list(LENGTH symbols count)
    message(STATUS "${LIST}: ${count} symbols")
    return()
endif()

file(READ ${LIST} expected)
if(NOT actual STREQUAL expected)
    string(REPLACE "\n" ";" expected_symbols "${expected}")
    set(added ${symbols})
    list(REMOVE_ITEM added ${expected_symbols})
    set(removed ${expected_symbols})
    list(REMOVE_ITEM removed ${symbols} "")
    list(JOIN added "\n  + " added_text)
    list(JOIN removed "\n  - " removed_text)
    message(FATAL_ERROR "${what} differ from ${LIST}.\n"
        "Now and not listed:\n  + ${added_text}\n"
        "Listed and no longer:\n  - ${removed_text}\n"
        "If the change is meant, run `cmake --build <build> --target update-symbols` "
        "and commit the list.")
endif()
list(LENGTH symbols count)
message(STATUS "${count} symbols, as listed")
