# What is installed, and how other projects find it. The headers below are the public interface:
# what is not installed may change.
include(CMakePackageConfigHelpers)

set(TKPPDUPDATING_PUBLIC_HEADERS
    backends/ppdmodel/PPDModelCore.h
    backends/schemes/PlainCustomMediaType.h
    backends/schemes/PlainICCProfile.h
    backends/schemes/DeviceStatusSchemes.h
    backends/schemes/ReportedDeviceStatus.h
    core_interface/OrbCSDeviceStatus.h
    core_interface/OrbCSError.h
    core_interface/OrbCSIdentifiedStatus.h
    core_interface/OrbCSNumberOrString.h
    core_interface/OrbCSPartialStatus.h
    core_interface/OrbCSStatusSources.h
    core_interface/OrbCSStatusValue.h
    core_interface/OrbCUPSICCProfileSpecifier.h
    core_interface/OrbCoreInterface.h
    core_interface/OrbCustomMediaType.h
    core_interface/OrbDictionary.h
    core_interface/OrbICCProfile.h
    core_interface/OrbInvalidOperationError.h
    core_interface/OrbPPDAttribute.h
    core_interface/OrbPPDChoice.h
    core_interface/OrbPPDFile.h
    core_interface/OrbPPDOption.h
    core_interface/OrbPPDPageSize.h
    core_interface/OrbProcess.h
    core_interface/TkCSKeys.h
    core_interface/TkCommunicationServices.h
    core_interface/TkCore.h
    manager/ITkPPDLineOwnership.h
    manager/ITkPPDStatusReading.h
    manager/ITkPPDUpdater.h
    manager/MissingResourceWatch.h
    manager/OrbClass.h
    manager/OrbClassTable.h
    manager/OrbPPDConcreteUpdatingManager.h
    manager/OrbPPDToldRule.h
    manager/OrbPPDUpdatingContext.h
    manager/OrbPPDUpdatingManager.h
    ppd/PPDConstants.h
    ppd/PPDStatements.h
    ppd/PPDText.h
    ppd/PPDTextSafety.h
    resources/ResourceFolder.h)

set_target_properties(TkPPDUpdating PROPERTIES
    VERSION "${PROJECT_VERSION}"
    SOVERSION "${PROJECT_VERSION_MAJOR}")
install(TARGETS TkPPDUpdating EXPORT TkPPDUpdatingTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
foreach(header IN LISTS TKPPDUPDATING_PUBLIC_HEADERS)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/TkPPDUpdating/${folder}")
endforeach()

# For CMake: find_package(TkPPDUpdating) gives TkPPDUpdating::TkPPDUpdating.
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/TkPPDUpdating")
set(data_folder "${CMAKE_INSTALL_DATADIR}/TkPPDUpdating")
configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/TkPPDUpdatingConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/TkPPDUpdatingConfig.cmake"
    INSTALL_DESTINATION "${package_folder}"
    PATH_VARS data_folder)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TkPPDUpdatingConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/TkPPDUpdatingConfig.cmake"
    "${PROJECT_BINARY_DIR}/TkPPDUpdatingConfigVersion.cmake"
    DESTINATION "${package_folder}")
install(EXPORT TkPPDUpdatingTargets NAMESPACE TkPPDUpdating:: DESTINATION "${package_folder}")

# For everything else: pkg-config. Its prefix follows the file, as the package may be moved.
file(RELATIVE_PATH way_to_prefix
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/TkPPDUpdating.pc.in"
    "${PROJECT_BINARY_DIR}/TkPPDUpdating.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/TkPPDUpdating.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TKPPDUPDATING_BUILD_TOOL)
    # A moved tool finds the shared library beside it. Without one there is no path: the loader would
    # look there for the system's libraries, and in the build tree, whose path CMake pads with empty
    # entries, in the working directory.
    file(RELATIVE_PATH way_to_library "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    if(TKPPDUPDATING_IS_SHARED)
        set_target_properties(tkppdupdate PROPERTIES INSTALL_RPATH "$ORIGIN/${way_to_library}")
    endif()
    install(TARGETS tkppdupdate RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
    install(FILES docs/tkppdupdate.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endif()

# A Debian package: cpack --config build/release/CPackConfig.cmake
if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}")
    # The tool without its debugging symbols, which are most of its size.
    set(CPACK_STRIP_FILES ON)
    set(CPACK_PACKAGE_NAME tkppdupdating)
    set(CPACK_PACKAGE_CONTACT "The TkPPDUpdating developers <tkppdupdating@localhost>")
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SECTION utils)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    include(CPack)
endif()
