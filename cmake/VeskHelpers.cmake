# Shared build settings of the project's own targets.

# Headers are included as <vesk/...> and <morva/...>, in the tree as after
# installation. The build tree gets an include folder of links that mirrors
# the installed layout, so both spell includes the same way.
set(VESK_STAGED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${VESK_STAGED_INCLUDE_DIR}/morva)

# vesk_stage_headers(<folder> <header>...): links each header into
# include/<folder>/ of the build tree and installs it to the same place.
function(vesk_stage_headers folder)
    foreach(header IN LISTS ARGN)
        get_filename_component(abs ${header} ABSOLUTE)
        get_filename_component(name ${header} NAME)
        file(CREATE_LINK ${abs} ${VESK_STAGED_INCLUDE_DIR}/${folder}/${name} SYMBOLIC)
    endforeach()
    install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
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

# vesk_add_library(<target> <output-name> SOURCES ... LINK ...): one of the
# shipped shared libraries, exported for find_package(VeskIface).
function(vesk_add_library target output)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_LINK;PRIVATE_LINK" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    add_library(VeskIface::${target} ALIAS ${target})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output}
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN") # the libraries find each other wherever they are installed
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${VESK_STAGED_INCLUDE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC_LINK} PRIVATE ${ARG_PRIVATE_LINK})
    vesk_configure_target(${target})
    install(TARGETS ${target} EXPORT VeskIfaceTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
