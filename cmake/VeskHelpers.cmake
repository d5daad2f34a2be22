# Shared build settings of the project's own targets.

# Headers are included as <vesk/...> and <morva/...>, in the tree as after
# installation. The build tree gets an include folder of links that mirrors
# the installed layout, so both spell includes the same way.
set(VESK_STAGED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${VESK_STAGED_INCLUDE_DIR}/morva)
# Headers made by the build (<vesk/version.h>) go to a folder of their own:
# include/vesk is a link to the sources, which the build must not write into.
set(VESK_GENERATED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/generated/include)

# vesk_stage_headers(<folder> <header>...): links each header into
# include/<folder>/ of the build tree and installs it to the same place.
function(vesk_stage_headers folder)
    foreach(header IN LISTS ARGN)
        get_filename_component(abs ${header} ABSOLUTE)
        get_filename_component(name ${header} NAME)
        file(CREATE_LINK ${abs} ${VESK_STAGED_INCLUDE_DIR}/${folder}/${name} SYMBOLIC)
    endforeach()
    install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder} COMPONENT development)
endfunction()

# vesk_configure_target(<target>): warnings and sanitizers of every target.
# Undefined behaviour aborts instead of printing and going on, so that a test
# or a fuzzer that meets it fails. With fuzzers on, every target is
# instrumented for the fuzzers' coverage.
function(vesk_configure_target target)
    target_compile_options(${target} PRIVATE -Wall -Wextra)
    if(VESK_SANITIZE)
        list(JOIN VESK_SANITIZE "," sanitizers)
        target_compile_options(${target} PRIVATE -fsanitize=${sanitizers} -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${sanitizers})
        if("undefined" IN_LIST VESK_SANITIZE)
            target_compile_options(${target} PRIVATE -fno-sanitize-recover=undefined)
        endif()
    endif()
    if(VESK_BUILD_FUZZERS)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()

# vesk_add_library(<target> <output-name> [HOST_NAME] SOURCES ... PUBLIC_LINK ...
#                  PRIVATE_LINK ... [EXPORTS <version-script>] [COMPONENT <component>]):
# one of the shipped shared libraries, exported for find_package(VeskIface),
# installed as part of <component> (runtime unless named).
#
# The library's own soname follows its version: for 0.x releases, where a new
# minor version may break the binary interface, the minor version is part of
# it (libVeskIface.so.0.1); from 1.0 on, only the major version. HOST_NAME
# marks a stand-in for one of the host's libraries: it carries the host's
# unversioned name (libMorva.so), so that the host's own library, already
# loaded or found first, takes its place. EXPORTS names a linker version
# script: only the symbols that it lists are visible to other modules.
#
# Every library stays loaded once loaded (-z nodelete): the meta-types and
# serialisation strategies that it registers with Qt point into it.
function(vesk_add_library target output)
    cmake_parse_arguments(ARG "HOST_NAME" "EXPORTS;COMPONENT" "SOURCES;PUBLIC_LINK;PRIVATE_LINK" ${ARGN})
    if(NOT ARG_COMPONENT)
        set(ARG_COMPONENT runtime)
    endif()
    add_library(${target} SHARED ${ARG_SOURCES})
    add_library(VeskIface::${target} ALIAS ${target})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output})
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
        # Outside the system's folders the libraries find each other beside themselves.
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
    if(NOT ARG_HOST_NAME)
        if(PROJECT_VERSION_MAJOR EQUAL 0)
            set(soversion ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
        else()
            set(soversion ${PROJECT_VERSION_MAJOR})
        endif()
        set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${soversion})
    endif()
    if(ARG_EXPORTS)
        get_filename_component(script ${ARG_EXPORTS} ABSOLUTE)
        target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
        # Inline functions are compiled into every module that uses them.
        set_target_properties(${target} PROPERTIES VISIBILITY_INLINES_HIDDEN ON)
    endif()
    target_link_options(${target} PRIVATE "LINKER:-z,nodelete")
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${VESK_STAGED_INCLUDE_DIR}>
        $<BUILD_INTERFACE:${VESK_GENERATED_INCLUDE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC_LINK} PRIVATE ${ARG_PRIVATE_LINK})
    vesk_configure_target(${target})
    install(TARGETS ${target} EXPORT VeskIfaceTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${ARG_COMPONENT}
            NAMELINK_COMPONENT development
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${ARG_COMPONENT})
endfunction()
