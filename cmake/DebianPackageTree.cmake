# Run by CPack (CPACK_PRE_BUILD_SCRIPTS) once the components are staged and
# before they are packed. Adds to each package's tree what Debian wants and
# CPack does not do:
#   usr/share/doc/<package>/copyright      the LICENSE, in Debian's machine-readable format
#   usr/share/doc/<package>/changelog.gz   this version's entry, in Debian's format
#   usr/share/lintian/overrides/<package>  from cmake/debian/<package>.lintian-overrides
# In the components named by CPACK_VESK_STRIPPED_COMPONENTS, every ELF file
# loses its RUNPATH (installed under /usr the programs and libraries find
# each other on the system's search path, and Debian wants no RUNPATH there;
# cmake --install keeps it for prefixes off that path), its debug symbols go
# to <component>_dbgsym as usr/lib/debug/.build-id/<xx>/<rest>.debug, and it
# is stripped as dh_strip strips.
cmake_minimum_required(VERSION 3.22)

if(NOT IS_DIRECTORY "${CPACK_TEMPORARY_DIRECTORY}")
    message(FATAL_ERROR "run by CPack only, with the staged components in CPACK_TEMPORARY_DIRECTORY")
endif()
foreach(tool IN ITEMS OBJCOPY STRIP READELF)
    if(NOT EXISTS "${CPACK_VESK_${tool}}")
        message(FATAL_ERROR "CPACK_VESK_${tool} names no program: \"${CPACK_VESK_${tool}}\"")
    endif()
endforeach()
find_program(GZIP gzip REQUIRED)
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

# The package version as the DEB generator writes it: without a Debian
# revision the packages are native, and their changelog is changelog.gz.
if(CPACK_DEBIAN_PACKAGE_VERSION)
    set(version ${CPACK_DEBIAN_PACKAGE_VERSION})
else()
    set(version ${CPACK_PACKAGE_VERSION})
endif()
if(CPACK_DEBIAN_PACKAGE_RELEASE)
    string(APPEND version "-${CPACK_DEBIAN_PACKAGE_RELEASE}")
    set(changelog changelog.Debian)
else()
    set(changelog changelog)
endif()
if(CPACK_DEBIAN_PACKAGE_MAINTAINER)
    set(maintainer "${CPACK_DEBIAN_PACKAGE_MAINTAINER}")
else()
    set(maintainer "${CPACK_PACKAGE_CONTACT}")
endif()

set(scratch ${CPACK_TEMPORARY_DIRECTORY}-debian)
file(REMOVE_RECURSE ${scratch})
file(MAKE_DIRECTORY ${scratch})

# copyright: the LICENSE's notice and text, the text indented by one space
# and its empty lines written as " .".
file(READ ${CPACK_RESOURCE_FILE_LICENSE} license)
if(NOT license MATCHES "Copyright \\(c\\) ([^\n]+)\n(.*)$")
    message(FATAL_ERROR "${CPACK_RESOURCE_FILE_LICENSE}: no \"Copyright (c)\" line")
endif()
set(holder "${CMAKE_MATCH_1}")
string(STRIP "${CMAKE_MATCH_2}" text)
string(REGEX REPLACE "\n\n" "\n.\n" text "${text}")
string(REGEX REPLACE "\n" "\n " text "${text}")
file(WRITE ${scratch}/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: ${CPACK_VESK_UPSTREAM_NAME}
Upstream-Contact: ${maintainer}

Files: *
Copyright: ${holder}
License: Expat
 ${text}
")

# changelog: one entry, dated when the packages are made (or at
# SOURCE_DATE_EPOCH); the project's own changelog is in libveskiface-dev.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${scratch}/${changelog}
"${CPACK_VESK_UPSTREAM_NAME} (${version}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}. What changed is listed in
    /usr/share/doc/${CPACK_VESK_UPSTREAM_NAME}/CHANGELOG.md of libveskiface-dev.

 -- ${maintainer}  ${date}
")
execute_process(COMMAND ${GZIP} -9n ${scratch}/${changelog} COMMAND_ERROR_IS_FATAL ANY)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status ERROR_VARIABLE error)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}: ${status}\n${error}")
    endif()
endfunction()

# split_debug_symbols(<file> <dbgsym tree>): as dh_strip does it.
function(split_debug_symbols file dbgsym)
    execute_process(COMMAND ${CPACK_VESK_READELF} -n ${file}
        OUTPUT_VARIABLE notes COMMAND_ERROR_IS_FATAL ANY)
    if(NOT notes MATCHES "Build ID: ([0-9a-f][0-9a-f])([0-9a-f]+)")
        message(FATAL_ERROR "${file} has no build ID, which its debug symbols are found by")
    endif()
    set(debug ${dbgsym}/usr/lib/debug/.build-id/${CMAKE_MATCH_1}/${CMAKE_MATCH_2}.debug)
    get_filename_component(folder ${debug} DIRECTORY)
    file(MAKE_DIRECTORY ${folder})
    run(${CPACK_VESK_OBJCOPY} --only-keep-debug --compress-debug-sections ${file} ${debug})
    file(CHMOD ${debug} PERMISSIONS ${readable})
    set(strip ${CPACK_VESK_STRIP} --remove-section=.comment --remove-section=.note)
    if(file MATCHES "\\.so(\\.[0-9.]+)?$")
        list(APPEND strip --strip-unneeded)
    endif()
    run(${strip} ${file})
    run(${CPACK_VESK_OBJCOPY} --add-gnu-debuglink=${debug} ${file})
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    set(tree ${CPACK_TEMPORARY_DIRECTORY}/${component})
    if(NOT package)
        message(FATAL_ERROR "the component ${component} has no package name")
    endif()
    if(component MATCHES "_dbgsym$")
        # Filled below, from the component that it has the symbols of.
        continue()
    endif()

    # file(COPY), not file(INSTALL): CPack leaves DESTDIR set to the last
    # component's tree.
    file(COPY ${scratch}/copyright ${scratch}/${changelog}.gz
        DESTINATION ${tree}/usr/share/doc/${package} FILE_PERMISSIONS ${readable})
    set(overrides ${CPACK_VESK_LINTIAN_OVERRIDES_DIR}/${package}.lintian-overrides)
    if(EXISTS ${overrides})
        set(to ${tree}/usr/share/lintian/overrides)
        file(MAKE_DIRECTORY ${to})
        file(COPY_FILE ${overrides} ${to}/${package})
        file(CHMOD ${to}/${package} PERMISSIONS ${readable})
    endif()

    if(NOT component IN_LIST CPACK_VESK_STRIPPED_COMPONENTS)
        continue()
    endif()
    set(dbgsym ${CPACK_TEMPORARY_DIRECTORY}/${component}_dbgsym)
    file(REMOVE_RECURSE ${dbgsym})
    file(GLOB_RECURSE files LIST_DIRECTORIES false ${tree}/*)
    foreach(file IN LISTS files)
        if(IS_SYMLINK ${file})
            continue()
        endif()
        file(READ ${file} magic LIMIT 4 HEX)
        if(magic STREQUAL "7f454c46")
            file(RPATH_REMOVE FILE ${file})
            split_debug_symbols(${file} ${dbgsym})
        endif()
    endforeach()
    if(NOT IS_DIRECTORY ${dbgsym})
        message(FATAL_ERROR "the component ${component} has no ELF file to take debug symbols from")
    endif()
    # As Debian's own debug packages: the documents are the package's.
    file(MAKE_DIRECTORY ${dbgsym}/usr/share/doc)
    file(CREATE_LINK ${package} ${dbgsym}/usr/share/doc/${package}-dbgsym SYMBOLIC)
endforeach()
