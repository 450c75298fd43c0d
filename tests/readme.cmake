# Compiles and runs what README.md shows, so that the first thing a user copies works.
set(readme "${PROJECT_SOURCE_DIR}/README.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${readme}")
file(READ "${readme}" readme_text)

# Writes the block of that language into a file of the build folder.
function(tkppdupdating_readme_block language file)
    string(FIND "${readme_text}" "```${language}\n" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "README.md has no block of ${language}")
    endif()
    string(LENGTH "```${language}\n" fence)
    math(EXPR start "${start} + ${fence}")
    string(SUBSTRING "${readme_text}" ${start} -1 block)
    string(FIND "${block}" "```" end)
    string(SUBSTRING "${block}" 0 ${end} block)
    file(CONFIGURE OUTPUT "${file}" CONTENT "${block}" @ONLY)
endfunction()

tkppdupdating_readme_block(cpp readme_example.cpp)
add_executable(readme_example "${CMAKE_CURRENT_BINARY_DIR}/readme_example.cpp")
tkppdupdating_compiler_settings(readme_example)
target_link_libraries(readme_example PRIVATE TkPPDUpdating)
add_test(NAME Readme.TheLibraryExampleUpdatesAPPD COMMAND readme_example
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
set_tests_properties(Readme.TheLibraryExampleUpdatesAPPD PROPERTIES
    PASS_REGULAR_EXPRESSION "[*]DefaultZrLowerTrayInstalled: True")

tkppdupdating_readme_block(text readme_picture.txt)
add_test(NAME Readme.ThePictureShowsWhatARunWrites
    COMMAND "${CMAKE_CURRENT_LIST_DIR}/readme-picture" "$<TARGET_FILE:tkppdupdate>"
        "${CMAKE_CURRENT_BINARY_DIR}/readme_picture.txt"
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")

tkppdupdating_readme_block(sh readme_example.sh)
add_test(NAME Readme.TheCommandLineExampleRuns
    COMMAND "${CMAKE_COMMAND}" -E env "PATH=$<TARGET_FILE_DIR:tkppdupdate>:$ENV{PATH}"
        bash -e "${CMAKE_CURRENT_BINARY_DIR}/readme_example.sh"
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
set_tests_properties(Readme.TheCommandLineExampleRuns PROPERTIES
    FAIL_REGULAR_EXPRESSION "tkppdupdate: ")
