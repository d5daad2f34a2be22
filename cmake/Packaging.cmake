# Debian packages of the four install components, made by `make package`:
#   libveskiface<major.minor>  runtime: libVeskIface and its soname link, nothing else
#   libvesk-host-standins      stand-ins of the host's libMorva.so and libmorvanetwork.so
#   libveskiface-dev           development: headers, CMake package, pkg-config file, docs
#   vesk-tools                 tools: vesk, vesk-emulator, the seed and the contract
# On a till the host's own libMorva and libmorvanetwork are already there,
# so the runtime package holds the library alone and does not depend on the
# stand-ins; the tools and the development package, of no use without a
# libMorva, depend on them. The libraries' dependencies come from
# dpkg-shlibdeps; the packages of this project depend on each other at
# exactly this version.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vesk)
set(CPACK_PACKAGE_VENDOR "The Vesk developers")
set(CPACK_PACKAGE_CONTACT "The Vesk developers <vesk@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime standins development tools)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)

set(runtime_package libveskiface${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(standins_package libvesk-host-standins)
set(exact "${runtime_package} (= ${PROJECT_VERSION}), ${standins_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS ${standins_package})
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "Point-of-sale client of the discount, loyalty and sales back-office services")

set(CPACK_DEBIAN_STANDINS_PACKAGE_NAME ${standins_package})
set(CPACK_DEBIAN_STANDINS_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_STANDINS_DESCRIPTION
    "Stand-ins of the point-of-sale host's libraries, for use outside the host")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libveskiface-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${exact}, qt6-base-dev (>= 6.4)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers, CMake package and pkg-config file of the Vesk client library")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME vesk-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
# The emulator's database driver is a Qt plugin, which no linker sees.
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
    "${exact}, libqt6core6 (>= 6.4), libqt6sql6 (>= 6.4), libqt6sql6-sqlite (>= 6.4), libc6, libstdc++6, zlib1g")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "vesk command-line client and vesk-emulator back-office emulator")

include(CPack)
