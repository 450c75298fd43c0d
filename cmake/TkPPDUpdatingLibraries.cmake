# The libraries that are installed, each a component of the package that find_package finds.
#
#   tkppdupdating_add_component(<component> <target> [HEADERS <path from the root>...]
#       [REQUIRES <component>...] [STATIC_REQUIRES <component>...] [STATIC_PACKAGES <package>...]
#       [STATIC_LIBRARIES <linker flag>...] [INTERNAL | LANGUAGE_C])
#
# The target is a static library, which the tool, the modules and the tests link as well. A shared one
# is made of the same objects, which are all compiled for it: what it exports has the mark of
# text/TkPPDUpdatingPublic.h. What another library keeps hidden, and this one needs, it gets from the
# other's static one.
#
# REQUIRES are the components whose headers those of this one include, and whose shared libraries this
# one is linked with; STATIC_REQUIRES are those that its static library needs besides. An INTERNAL
# one has no headers and no shared library: other static ones need it. A component of LANGUAGE_C is for
# programs that know nothing of C++.
set(TKPPDUPDATING_SERIES "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
# What stands beside the libraries has the series in its path: packages of two series can be installed
# side by side.
set(TKPPDUPDATING_DATA_FOLDER "TkPPDUpdating/${TKPPDUPDATING_SERIES}")
set(TKPPDUPDATING_LIBRARY_FOLDER "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH TKPPDUPDATING_WAY_TO_LIBRARIES
    "${CMAKE_INSTALL_FULL_BINDIR}" "${TKPPDUPDATING_LIBRARY_FOLDER}")
# In the build tree the tool, the libraries and the modules stand to each other as where they are installed.
set(TKPPDUPDATING_BUILT_LIBRARIES "${PROJECT_BINARY_DIR}/tools/${TKPPDUPDATING_WAY_TO_LIBRARIES}")
configure_file("${PROJECT_SOURCE_DIR}/exports/versions.map.in"
    "${PROJECT_BINARY_DIR}/versions.map" @ONLY)

function(tkppdupdating_add_component component target)
    cmake_parse_arguments(PARSE_ARGV 2 arg "INTERNAL;LANGUAGE_C" ""
        "HEADERS;REQUIRES;STATIC_REQUIRES;STATIC_PACKAGES;STATIC_LIBRARIES")
    set_property(GLOBAL APPEND PROPERTY TKPPDUPDATING_COMPONENTS "${component}")
    foreach(fact IN ITEMS HEADERS REQUIRES STATIC_REQUIRES STATIC_PACKAGES STATIC_LIBRARIES
            INTERNAL LANGUAGE_C)
        set_property(GLOBAL PROPERTY TKPPDUPDATING_${component}_${fact} "${arg_${fact}}")
    endforeach()
    set_property(GLOBAL PROPERTY TKPPDUPDATING_${component}_TARGET "${target}")
    set(name "${component}")
    if(component STREQUAL "Library")
        set(name TkPPDUpdating)
    endif()
    set_target_properties(${target} PROPERTIES EXPORT_NAME "${name}")
    set(own_targets ${target})
    set(used_target ${target})
    if(TKPPDUPDATING_SHARED AND NOT arg_INTERNAL)
        tkppdupdating_add_shared_library(${component} ${target} ${name} "${arg_REQUIRES}")
        list(APPEND own_targets ${target}Shared)
        if(BUILD_SHARED_LIBS OR NOT DEFINED BUILD_SHARED_LIBS)
            set(used_target ${target}Shared)
        endif()
    endif()
    if(arg_LANGUAGE_C)
        foreach(each IN LISTS own_targets)
            target_include_directories(${each} INTERFACE
                "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/c_interface>")
        endforeach()
    elseif(TARGET ${target}Shared)
        target_compile_features(${target}Shared PUBLIC cxx_std_20)
    endif()
    # For projects that have the sources as a subproject.
    add_library(TkPPDUpdating::${name} ALIAS ${used_target})
endfunction()

function(tkppdupdating_add_shared_library component target name requires)
    set(shared ${target}Shared)
    add_library(${shared} SHARED "$<TARGET_OBJECTS:${target}>")
    set_target_properties(${shared} PROPERTIES
        LINKER_LANGUAGE CXX
        OUTPUT_NAME "${target}"
        EXPORT_NAME "${name}"
        VERSION "${PROJECT_VERSION}"
        # What the package's version file says: another minor version may be another interface.
        SOVERSION "${TKPPDUPDATING_SERIES}"
        LIBRARY_OUTPUT_DIRECTORY "${TKPPDUPDATING_BUILT_LIBRARIES}"
        LINK_DEPENDS "${PROJECT_BINARY_DIR}/versions.map")
    tkppdupdating_include_folders(${shared})
    target_link_options(${shared} PRIVATE
        "-Wl,--version-script=${PROJECT_BINARY_DIR}/versions.map"
        # What comes out of a static library is this one's own business.
        -Wl,--exclude-libs,ALL)
    if(TKPPDUPDATING_HARDENING)
        tkppdupdating_harden(${shared})
    endif()
    if(TKPPDUPDATING_SANITIZERS)
        target_link_options(${shared} PUBLIC "-fsanitize=${TKPPDUPDATING_SANITIZERS}")
    else()
        target_link_options(${shared} PRIVATE -Wl,-z,defs)
    endif()
    if(TKPPDUPDATING_COVERAGE)
        target_link_options(${shared} PUBLIC --coverage)
    endif()
    if(requires)
        # A library that was moved finds the others beside it. In a folder of the system the loader does.
        if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
            set_target_properties(${shared} PROPERTIES INSTALL_RPATH "$ORIGIN")
        endif()
    endif()
    foreach(other IN LISTS requires)
        get_property(other_target GLOBAL PROPERTY TKPPDUPDATING_${other}_TARGET)
        target_link_libraries(${shared} PUBLIC ${other_target}Shared)
    endforeach()
    get_target_property(libraries ${target} LINK_LIBRARIES)
    if(libraries)
        target_link_libraries(${shared} PRIVATE ${libraries})
    endif()
endfunction()

# Where a program that uses the library finds its headers, as <TkPPDUpdating/manager/...> and, from the
# root of the headers, as "manager/...".
function(tkppdupdating_include_folders target)
    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/TkPPDUpdating>")
endfunction()
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/include")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/include/TkPPDUpdating" SYMBOLIC)
