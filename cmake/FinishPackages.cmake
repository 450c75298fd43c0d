# CPack runs this on the Debian packages that it made: what it cannot be told. Libraries of several
# architectures can be installed side by side; the loader's cache is renewed by a trigger, once for all
# packages of a run, and not by a script of each. It copies the files by their names: none may get
# another.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    get_filename_component(name "${package}" NAME)
    get_filename_component(folder "${package}" DIRECTORY)
    if(name MATCHES "^lib.*[.]deb$")
        set(root "${CPACK_TEMPORARY_DIRECTORY}/finish-${name}")
        file(REMOVE_RECURSE "${root}")
        execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${root}" COMMAND_ERROR_IS_FATAL ANY)
        file(REMOVE "${root}/DEBIAN/postinst" "${root}/DEBIAN/postrm")
        file(READ "${root}/DEBIAN/control" control)
        string(REGEX REPLACE "\nArchitecture: " "\nMulti-Arch: same\nArchitecture: " control "${control}")
        file(WRITE "${root}/DEBIAN/control" "${control}")
        execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build "${root}" "${package}"
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
        file(REMOVE_RECURSE "${root}")
    endif()
endforeach()
