# Lists the dynamic symbols that a library exports, one per line, demangled
# and sorted, and compares them with the committed list (MODE=check) or
# writes that list anew (MODE=update).
#
#   cmake -DNM=<nm> -DLIBRARY=<file> -DLIST=<committed list> -DMODE=check|update -P ExportedSymbols.cmake
#
# A line is the symbol's kind (T code, D/B data, V/u vague linkage, R
# read-only data) and its name with its version.

execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${LIBRARY}
    RESULT_VARIABLE result OUTPUT_VARIABLE listing ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${NM} failed on ${LIBRARY}: ${errors}")
endif()

string(REPLACE "\n" ";" lines "${listing}")
set(symbols "")
foreach(line IN LISTS lines)
    # "<address> <kind> <name>"; the version node itself has kind A.
    if(line MATCHES "^[0-9a-f]+ ([A-Za-z]) (.+)$" AND NOT CMAKE_MATCH_1 STREQUAL "A")
        list(APPEND symbols "${CMAKE_MATCH_1} ${CMAKE_MATCH_2}")
    endif()
endforeach()
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
    message(FATAL_ERROR "The exported symbols of ${LIBRARY} differ from ${LIST}.\n"
        "Exported now and not listed:\n  + ${added_text}\n"
        "Listed and no longer exported:\n  - ${removed_text}\n"
        "If the change to the interface is meant, run `cmake --build <build> --target update-symbols` "
        "and commit the list.")
endif()
list(LENGTH symbols count)
message(STATUS "${count} exported symbols, as listed")
