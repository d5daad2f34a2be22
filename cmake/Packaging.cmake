# Debian packages of the install components, made by `make package`:
#   libveskiface<major.minor>  runtime: libVeskIface and its soname link, nothing else
#   libvesk-host-standins      stand-ins of the host's libMorva.so and libmorvanetwork.so
#   libvesktesting<major.minor>  testing: libVeskTesting, the back-office double of hosts' tests
#   libveskiface-dev           development: headers, CMake package, pkg-config file, docs
#   vesk-tools                 tools: vesk, vesk-emulator, the seed and the contract
# and <package>-dbgsym for the three with programs or libraries: those are
# packed stripped, their debug symbols go under /usr/lib/debug/.build-id.
#
# On a till the host's own libMorva and libmorvanetwork are already there,
# so the runtime package holds the library alone and does not depend on the
# stand-ins; the tools and the development package, of no use without a
# libMorva, depend on them.
#
# Dependencies on other packages come from dpkg-shlibdeps; the packages of
# this project depend on each other at exactly this version.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vesk)
set(CPACK_PACKAGE_VENDOR "The Vesk developers")
# The Maintainer field and the changelog need an address with a real domain
# name; builds that are published name the one that answers.
set(VESK_PACKAGE_MAINTAINER "The Vesk developers <vesk@example.org>" CACHE STRING
    "Maintainer of the Debian packages, as \"Name <address>\"")
set(CPACK_PACKAGE_CONTACT "${VESK_PACKAGE_MAINTAINER}")
# CPack puts a summary other than its default in front of every package's
# description; each description below begins with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${PROJECT_NAME})
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tools need libVeskIface.so.0.1, which no installed package provides:
# dpkg-shlibdeps finds it in the build tree and leaves its dependency to the
# exact one below. The stand-ins carry unversioned names, which it only
# warns about.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/iface
    ${PROJECT_BINARY_DIR}/testing)

set(runtime_package libveskiface${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(standins_package libvesk-host-standins)
set(testing_package libvesktesting${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(exact_runtime "${runtime_package} (= ${PROJECT_VERSION})")
set(exact_testing "${testing_package} (= ${PROJECT_VERSION})")
set(exact_standins "${standins_package} (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
# A package built against the library needs this version or a later one of
# the same soname: a patch release keeps the binary interface. Written here
# rather than by CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS, which would also look
# for sonames in the stand-ins and the debug symbols, and warn about each.
get_target_property(soversion VeskIface SOVERSION)
get_target_property(library VeskIface OUTPUT_NAME)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/shlibs
    CONTENT "lib${library} ${soversion} ${runtime_package} (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/debian/shlibs ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS ${standins_package})
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Point-of-sale client of the discount, loyalty and sales back offices
libVeskIface lets a point-of-sale host call the retailer's discount,
loyalty and sales back-office services over HTTP with JSON bodies, through
typed request and response records.
.
The library loads the host's libMorva.so and libmorvanetwork.so. On a till
the host provides them; elsewhere install libvesk-host-standins.")

# The test double: on a developer's machine only, never on a till. Its
# headers, link and pkg-config file are in the development package.
set(CPACK_DEBIAN_TESTING_PACKAGE_NAME ${testing_package})
get_target_property(testing_library VeskTesting OUTPUT_NAME)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/debian/testing/shlibs
    CONTENT "lib${testing_library} ${soversion} ${testing_package} (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_TESTING_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/debian/testing/shlibs ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_DEBIAN_TESTING_PACKAGE_DEPENDS "${exact_runtime}")
set(CPACK_COMPONENT_TESTING_DESCRIPTION
    "Back-office test double for the tests of Vesk point-of-sale hosts
libVeskTesting answers a host's calls of the discount, loyalty and sales
services inside the test process, as the test scripts them (records,
service errors, network failures), and records the requests, so that a
host's own code is tested without a server.
.
For development machines: a till's program never links it.")

set(CPACK_DEBIAN_STANDINS_PACKAGE_NAME ${standins_package})
set(CPACK_DEBIAN_STANDINS_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_COMPONENT_STANDINS_DESCRIPTION
    "Stand-ins of the point-of-sale host's libraries, for use outside the host
libMorva.so (configuration, logging, messages, exceptions, the record
serialiser) and libmorvanetwork.so (a blocking HTTP client on libcurl),
written by the Vesk developers with the names and interface of the host's
own libraries, so that libVeskIface, its tools and the programs built
against it run outside the host.
.
Do not install this package on a till: there the host's own libraries of
the same names are the ones to use.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libveskiface-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${exact_runtime}, ${exact_standins}, ${exact_testing}, qt6-base-dev (>= 6.4)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Development files of the Vesk point-of-sale client library
Headers of libVeskIface (include/vesk) and of the host's libraries that it
uses (include/morva) and of the back-office test double
(include/vesk/testing), the VeskIface CMake package, the pkg-config files,
and the project's documents with example host programs in /usr/share/doc/vesk.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME vesk-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
# The emulator's database driver is a Qt plugin, which no linker sees.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
    "${exact_runtime}, ${exact_standins}, libqt6sql6-sqlite (>= 6.4)")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "Back-office emulator and command-line client for Vesk integrators
vesk-emulator serves all sixteen operations of the discount, loyalty and
sales services from a seeded database, with faults on request; vesk calls
them, describes the records, writes the services' contract and runs a whole
sale or a load test against them.")

# The debug symbols. CPack's own -dbgsym packages (CPACK_DEBIAN_DEBUGINFO_PACKAGE,
# CMake 3.25) name their files in md5sums by their paths in CPack's staging
# folder and have no copyright file, so these are components of their own,
# filled by DebianPackageTree.cmake. CPACK_STRIP_FILES stays off: it would
# strip the files before that script copies their debug symbols out; the
# script strips them itself.
set(stripped_components runtime standins testing tools)
set(CPACK_COMPONENTS_ALL runtime standins testing development tools)
foreach(component IN LISTS stripped_components)
    string(TOUPPER ${component} upper)
    set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    list(APPEND CPACK_COMPONENTS_ALL ${component}_dbgsym)
    set(CPACK_DEBIAN_${upper}_DBGSYM_PACKAGE_NAME ${package}-dbgsym)
    set(CPACK_DEBIAN_${upper}_DBGSYM_PACKAGE_SECTION debug)
    set(CPACK_DEBIAN_${upper}_DBGSYM_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_${upper}_DBGSYM_PACKAGE_DEPENDS "${package} (= ${PROJECT_VERSION})")
    set(CPACK_COMPONENT_${upper}_DBGSYM_DESCRIPTION "debug symbols for ${package}")
endforeach()

# What Debian wants of each package that CPack does not do: copyright and
# changelog, stripped binaries, no RUNPATH, the debug symbols. Done on the
# staged trees, so that cmake --install is not affected.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianPackageTree.cmake)
set(CPACK_VESK_UPSTREAM_NAME ${PROJECT_NAME})
set(CPACK_VESK_STRIPPED_COMPONENTS ${stripped_components})
set(CPACK_VESK_LINTIAN_OVERRIDES_DIR ${CMAKE_CURRENT_LIST_DIR}/debian)
set(CPACK_VESK_OBJCOPY ${CMAKE_OBJCOPY})
set(CPACK_VESK_STRIP ${CMAKE_STRIP})
set(CPACK_VESK_READELF ${CMAKE_READELF})

include(CPack)
