# Modules of backends (backends/modules/TkPPDUpdatingModule.h): shared objects in a folder of their own beside the
# library, which the tool loads when a run needs one.
#
#   tkppdupdating_add_backend_module(<name> SOURCES <file>... LIBRARIES <target>...)
#
# The way from the tool to that folder is the same in the build tree as where it is installed, so
# that a relocated tool finds its own modules, and no others.
set(TKPPDUPDATING_WAY_FROM_LIBRARY_TO_MODULES "TkPPDUpdating/${TKPPDUPDATING_SERIES}")
set(TKPPDUPDATING_MODULE_FOLDER
    "${TKPPDUPDATING_LIBRARY_FOLDER}/${TKPPDUPDATING_WAY_FROM_LIBRARY_TO_MODULES}")
file(RELATIVE_PATH TKPPDUPDATING_WAY_TO_MODULES
    "${CMAKE_INSTALL_FULL_BINDIR}" "${TKPPDUPDATING_MODULE_FOLDER}")

function(tkppdupdating_add_backend_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    set(target TkPPDUpdatingModule_${name})
    add_library(${target} MODULE ${arg_SOURCES})
    tkppdupdating_compiler_settings(${target})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
    # What is linked in statically is the module's own business.
    target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME "${name}"
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tools/${TKPPDUPDATING_WAY_TO_MODULES}")
    install(TARGETS ${target} COMPONENT Runtime
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/${TKPPDUPDATING_WAY_FROM_LIBRARY_TO_MODULES}")
    set_property(GLOBAL APPEND PROPERTY TKPPDUPDATING_BACKEND_MODULES ${target})
endfunction()
