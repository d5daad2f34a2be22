# Compiles every `#include <...>` line that the generated reference shows
# (class pages, file pages, the main page's code blocks; not the source
# listings, which show the headers' own includes as written in the tree)
# against an installation of this build, the way a host compiles:
# pkg-config --cflags VeskIface of the installed tree, nothing else.
#
#   cmake -DHTML_DIR=... -DBUILD_DIR=... -DWORK_DIR=... -DCXX=... -DPKG_CONFIG=...
#         -P CompileShownIncludes.cmake
#
# One translation unit per distinct include, so that a header that does not
# bring the project's headers it needs fails as well. The Qt and standard
# headers that the installed headers include are precompiled once and put in
# front of every unit, which makes a unit cost a fraction of a second instead
# of seconds. The units are compiled in two compiler runs side by side, and
# only when one fails is each compiled alone, to name the lines that do not
# compile.
cmake_minimum_required(VERSION 3.22)
foreach(input IN ITEMS HTML_DIR BUILD_DIR WORK_DIR CXX PKG_CONFIG)
    if(NOT ${input})
        message(FATAL_ERROR "${input} is not set")
    endif()
endforeach()

file(GLOB pages ${HTML_DIR}/*.html)
list(FILTER pages EXCLUDE REGEX "_source\\.html$")
if(NOT pages)
    message(FATAL_ERROR "no pages in ${HTML_DIR}: build the reference first (make docs)")
endif()
set(includes "")
foreach(page IN LISTS pages)
    file(READ ${page} html)
    if(NOT html MATCHES "#include")
        continue()
    endif()
    # The text as a reader sees it: tags gone, entities decoded.
    string(REGEX REPLACE "<[^>]*>" "" text "${html}")
    string(REPLACE "&lt;" "<" text "${text}")
    string(REPLACE "&gt;" ">" text "${text}")
    string(REPLACE "&#160;" " " text "${text}")
    string(REPLACE "&amp;" "&" text "${text}")
    string(REGEX MATCHALL "#include[ \t]*<[^<>\n]+>" found "${text}")
    foreach(line IN LISTS found)
        string(REGEX REPLACE "#include[ \t]*" "#include " line "${line}")
        list(APPEND includes "${line}")
    endforeach()
endforeach()
list(REMOVE_DUPLICATES includes)
list(SORT includes)
list(LENGTH includes count)
# The pages that a host reads first must be among them, or the extraction broke.
foreach(expected IN ITEMS "#include <vesk/vesk.h>" "#include <vesk/disc/DiscCalcRequest.h>"
                          "#include <morva/RestClient.h>")
    if(NOT expected IN_LIST includes)
        message(FATAL_ERROR "the reference shows no \"${expected}\"; it shows:\n${includes}")
    endif()
endforeach()

# The installed tree: headers, CMake package and pkg-config file.
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(
    COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix
        --component development
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "installing the development files failed (${result}); "
        "build the libraries first:\n${errors}")
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${WORK_DIR}/prefix/lib/pkgconfig
        ${PKG_CONFIG} --cflags VeskIface
    RESULT_VARIABLE result OUTPUT_VARIABLE cflags ERROR_VARIABLE errors
    OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config --cflags VeskIface failed (${result}): ${errors}")
endif()
separate_arguments(cflags UNIX_COMMAND "${cflags}")
set(flags -std=c++17 ${cflags})

# The headers from outside the project that the installed ones include.
file(GLOB_RECURSE installed ${WORK_DIR}/prefix/include/*.h)
set(outside "")
foreach(header IN LISTS installed)
    file(STRINGS ${header} lines REGEX "^#include <[^>/]+>")
    list(APPEND outside ${lines})
endforeach()
list(REMOVE_DUPLICATES outside)
list(JOIN outside "\n" outside)
set(common ${WORK_DIR}/common/outside.h)
file(WRITE ${common} "${outside}\n")
execute_process(COMMAND ${CXX} ${flags} -x c++-header ${common} -o ${common}.gch
    RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the headers that the installed ones include do not compile:\n${errors}")
endif()
set(compile ${CXX} ${flags} -fsyntax-only -include ${common})

set(units "")
set(index 0)
foreach(line IN LISTS includes)
    set(unit ${WORK_DIR}/units/include_${index}.cpp)
    file(WRITE ${unit} "${line}\n")
    list(APPEND units ${unit})
    math(EXPR index "${index} + 1")
endforeach()
math(EXPR half "(${count} + 1) / 2")
list(SUBLIST units 0 ${half} first)
list(SUBLIST units ${half} -1 second)
if(second)
    execute_process(COMMAND ${compile} ${first} COMMAND ${compile} ${second}
        RESULTS_VARIABLE results OUTPUT_QUIET ERROR_VARIABLE errors)
else()
    execute_process(COMMAND ${compile} ${first} RESULTS_VARIABLE results OUTPUT_QUIET
        ERROR_VARIABLE errors)
endif()
list(REMOVE_DUPLICATES results)
if(results STREQUAL "0")
    message(STATUS "all ${count} includes that the reference shows compile against the "
        "installed tree")
    return()
endif()

# The units that the compiler spoke of, each compiled alone to name its line.
string(REGEX MATCHALL "include_[0-9]+\\.cpp" suspects "${errors}")
list(REMOVE_DUPLICATES suspects)
if(NOT suspects)
    message(FATAL_ERROR "the compiler failed (${results}) without naming a unit:\n${errors}")
endif()
set(failed "")
foreach(suspect IN LISTS suspects)
    string(REGEX REPLACE "include_([0-9]+)\\.cpp" "\\1" index ${suspect})
    list(GET includes ${index} line)
    execute_process(COMMAND ${compile} ${WORK_DIR}/units/${suspect}
        RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE unit_errors)
    if(NOT result EQUAL 0)
        string(REGEX MATCH "[^\n]*error:[^\n]*" first_error "${unit_errors}")
        string(APPEND failed "  ${line}\n      ${first_error}\n")
    endif()
endforeach()
message(FATAL_ERROR "of the ${count} includes that the reference shows, these do not compile "
    "against the installed tree:\n${failed}")
