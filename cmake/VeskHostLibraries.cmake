# The host's own libMorva.so and libmorvanetwork.so, with their headers, as
# the imported targets VeskHost::Morva and VeskHost::morvanetwork, in place of
# the stand-ins. VESK_HOST_LIBRARIES names the prefix that holds them:
# include/morva/*.h and lib/ (or lib/<multiarch>/). Used by the build when
# VESK_HOST_LIBRARIES is set, and installed beside the CMake package of such
# a build, so that a host's project finds the same libraries.
if(TARGET VeskHost::Morva)
    return()
endif()

set(vesk_host_libdirs ${VESK_HOST_LIBRARIES}/lib)
if(CMAKE_LIBRARY_ARCHITECTURE)
    list(APPEND vesk_host_libdirs ${VESK_HOST_LIBRARIES}/lib/${CMAKE_LIBRARY_ARCHITECTURE})
endif()
find_path(VESK_HOST_INCLUDE_DIR morva/RestClient.h
    PATHS ${VESK_HOST_LIBRARIES}/include NO_DEFAULT_PATH)
find_library(VESK_HOST_MORVA_LIBRARY Morva PATHS ${vesk_host_libdirs} NO_DEFAULT_PATH)
find_library(VESK_HOST_MORVANETWORK_LIBRARY morvanetwork PATHS ${vesk_host_libdirs} NO_DEFAULT_PATH)
foreach(found IN ITEMS VESK_HOST_INCLUDE_DIR VESK_HOST_MORVA_LIBRARY VESK_HOST_MORVANETWORK_LIBRARY)
    if(NOT ${found})
        message(FATAL_ERROR "VESK_HOST_LIBRARIES=${VESK_HOST_LIBRARIES} does not hold the host's "
            "libraries: expected include/morva/RestClient.h, lib/libMorva.so and "
            "lib/libmorvanetwork.so (${found} not found)")
    endif()
endforeach()

add_library(VeskHost::Morva SHARED IMPORTED)
set_target_properties(VeskHost::Morva PROPERTIES
    IMPORTED_LOCATION ${VESK_HOST_MORVA_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${VESK_HOST_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES Qt6::Core)
add_library(VeskHost::morvanetwork SHARED IMPORTED)
set_target_properties(VeskHost::morvanetwork PROPERTIES
    IMPORTED_LOCATION ${VESK_HOST_MORVANETWORK_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${VESK_HOST_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES "VeskHost::Morva;Qt6::Core")
