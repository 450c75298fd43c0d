# Debian packages, of a build for the prefix /usr (the preset "packages"):
#
#   cmake --preset packages && cmake --build --preset packages
#   cpack --config build/packages/CPackConfig.cmake
#
# libtkppdupdatingMAJOR.MINOR has the shared libraries with their data and modules, so that two series
# can be installed side by side; libtkppdupdating-dev what one compiles with; tkppdupdate the command
# line, which brings its own code along and takes data and modules from the first. What is compiled has
# its debug symbols in packages NAME-dbgsym (.ddeb).
set(runtime_package "libtkppdupdating${TKPPDUPDATING_SERIES}")
set(TKPPDUPDATING_MAINTAINER "The TkPPDUpdating developers <tkppdupdating@tkppdupdating.invalid>"
    CACHE STRING "Who is named as the maintainer of the Debian packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}")
set(CPACK_PACKAGE_NAME tkppdupdating)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${TKPPDUPDATING_MAINTAINER}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL Runtime Development Tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "${runtime_package}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/triggers")
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${TKPPDUPDATING_BUILT_LIBRARIES}")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Given the PPD of a CUPS print queue and the device URI of its printer, the
library gives the PPD back with default choices, driver attributes, duplex
support and custom media types as the printer reports them.

This package has the shared libraries, and the modules that talk to
schedulers and printers.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtkppdupdating-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "libcups2-dev, libsnmp-dev, pkg-config")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Given the PPD of a CUPS print queue and the device URI of its printer, the
library gives the PPD back with default choices, driver attributes, duplex
support and custom media types as the printer reports them.

This package has what programs in C++ and C are compiled with: headers,
static libraries, and files for CMake and pkg-config.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tkppdupdate)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS cups-daemon)
set(CPACK_DEBIAN_TOOL_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "Shows or writes what the PPD of a CUPS print queue is with default choices,
driver attributes, duplex support and custom media types as the printer
reports them, and brings all queues of a print server in step.")

# What stands in the packages and is not installed otherwise, and what CPack does not know of Debian.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/StagePackages.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/FinishPackages.cmake")
set(CPACK_TKPPDUPDATING_SOURCES "${PROJECT_SOURCE_DIR}")
set(CPACK_TKPPDUPDATING_STRIP "${CMAKE_STRIP}")
include(CPack)
