# What is installed, and how other projects find it. What is not installed may change.
#
# The parts for `cmake --install BUILD --component PART`: Runtime (the shared libraries, their data and
# the modules), Development (headers, static libraries, packages for CMake and pkg-config) and Tool.
include(CMakePackageConfigHelpers)
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/TkPPDUpdating")
file(RELATIVE_PATH way_to_prefix
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")

# Gives `fact` of a component, as tkppdupdating_add_component was told it, in the variable of that name.
macro(tkppdupdating_fact component fact variable)
    get_property(${variable} GLOBAL PROPERTY TKPPDUPDATING_${component}_${fact})
endmacro()

# In the sources headers include each other from the root. Installed ones do it by the way from one to
# the other, so that they find each other whatever folders a compiler is told to look in.
function(tkppdupdating_install_header header)
    get_filename_component(folder "${header}" DIRECTORY)
    if(folder STREQUAL "c_interface")
        # The header of C programs, <TkPPDUpdating/TkPPDUpdating.h>.
        get_filename_component(header_there "${header}" NAME)
        set(folder .)
    else()
        set(header_there "${header}")
    endif()
    set(copy "${PROJECT_BINARY_DIR}/installed-headers/${header_there}")
    string(REGEX REPLACE "[^/.]+" ".." way_to_root "${folder}")
    install(CODE "
        file(READ \"${PROJECT_SOURCE_DIR}/${header}\" text)
        string(REPLACE \"#include \\\"\" \"#include \\\"${way_to_root}/\" text \"\${text}\")
        set(before)
        if(EXISTS \"${copy}\")
            file(READ \"${copy}\" before)
        endif()
        if(NOT before STREQUAL text)
            file(WRITE \"${copy}\" \"\${text}\")
        endif()" COMPONENT Development)
    install(FILES "${copy}" COMPONENT Development
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/TkPPDUpdating/${folder}")
endfunction()

# Installs a library and its CMake targets. Each component has a file for either linkage, since a
# project need not have what another component is linked with.
function(tkppdupdating_install_library component target linkage)
    set(export TkPPDUpdating-${component}-${linkage})
    install(TARGETS ${target} EXPORT ${export}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT Development)
    install(EXPORT ${export} NAMESPACE TkPPDUpdating:: FILE ${export}.cmake
        DESTINATION "${package_folder}" COMPONENT Development)
endfunction()

# For everything but CMake: pkg-config. The prefix follows the file, as the package may be moved.
function(tkppdupdating_install_pkg_config component target)
    tkppdupdating_fact(${component} REQUIRES requires)
    tkppdupdating_fact(${component} STATIC_LIBRARIES private_libraries)
    tkppdupdating_fact(${component} LANGUAGE_C is_for_C)
    set(package "${target}")
    set(description "${PROJECT_DESCRIPTION}")
    if(NOT component STREQUAL "Library")
        string(APPEND description ": ${component}")
    endif()
    set(flags "-I\${includedir} -I\${includedir}/TkPPDUpdating")
    set(required_packages)
    if(NOT is_for_C)
        string(APPEND flags " -std=c++20")
        foreach(other IN LISTS requires)
            tkppdupdating_fact(${other} TARGET other_target)
            list(APPEND required_packages "${other_target} = ${PROJECT_VERSION}")
        endforeach()
    endif()
    list(JOIN required_packages ", " required_packages)
    list(JOIN private_libraries " " private_libraries)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/TkPPDUpdating.pc.in"
        "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" COMPONENT Development
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endfunction()

get_property(components GLOBAL PROPERTY TKPPDUPDATING_COMPONENTS)
set(component_facts "")
set(TKPPDUPDATING_PUBLIC_HEADERS "")
foreach(component IN LISTS components)
    foreach(fact IN ITEMS TARGET HEADERS REQUIRES STATIC_REQUIRES STATIC_PACKAGES INTERNAL)
        tkppdupdating_fact(${component} ${fact} ${fact})
    endforeach()
    if(TKPPDUPDATING_SHARED AND NOT INTERNAL)
        tkppdupdating_install_library(${component} ${TARGET}Shared shared)
    endif()
    if(TKPPDUPDATING_STATIC)
        tkppdupdating_install_library(${component} ${TARGET} static)
    endif()
    if(NOT INTERNAL)
        tkppdupdating_install_pkg_config(${component} ${TARGET})
    endif()
    foreach(header IN LISTS HEADERS)
        tkppdupdating_install_header("${header}")
    endforeach()
    list(APPEND TKPPDUPDATING_PUBLIC_HEADERS ${HEADERS})
    string(APPEND component_facts
        "set(_tkppdupdating_${component}_shared_requires ${REQUIRES})\n"
        "set(_tkppdupdating_${component}_static_requires ${REQUIRES} ${STATIC_REQUIRES})\n"
        "set(_tkppdupdating_${component}_static_packages ${STATIC_PACKAGES})\n")
endforeach()
string(REPLACE ";" " " component_facts "${component_facts}")

set(data_folder "${CMAKE_INSTALL_DATADIR}/${TKPPDUPDATING_DATA_FOLDER}")
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
    DESTINATION "${package_folder}" COMPONENT Development)

if(TKPPDUPDATING_BUILD_TOOL)
    # There is no path in it to look for libraries in: the loader would look there for those of the
    # system, and in the build tree, whose path CMake pads with empty entries, in the working directory.
    install(TARGETS tkppdupdate RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Tool)
    install(FILES docs/tkppdupdate.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT Tool)
endif()

if(PROJECT_IS_TOP_LEVEL AND CMAKE_INSTALL_PREFIX STREQUAL "/usr"
        AND TKPPDUPDATING_SHARED AND TKPPDUPDATING_STATIC AND TKPPDUPDATING_BUILD_TOOL)
    include(TkPPDUpdatingPackages)
endif()
