# The one function that registers tests. A test program is one folder's worth of *_test.cpp files;
# CTest lists every test case by its own name.
#
#   tkppdupdating_add_tests(<program> SOURCES <file>... [LIBRARIES <target>...] [TIMEOUT <seconds>]
#                           [PROPERTIES <name> <value>...])
include(GoogleTest)
find_package(GTest REQUIRED)

# More than half of the time that a test file takes goes into the headers of GoogleTest: the first
# test program compiles them, all others take what it made. Nothing else is compiled ahead, so that
# a file that forgets an include is not helped; the preset "clang" does without (CMake:
# CMAKE_DISABLE_PRECOMPILE_HEADERS).
function(tkppdupdating_precompile_test_headers program)
    get_property(first GLOBAL PROPERTY TKPPDUPDATING_FIRST_TEST_PROGRAM)
    if(first)
        target_precompile_headers(${program} REUSE_FROM ${first})
    else()
        target_precompile_headers(${program} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
        set_property(GLOBAL PROPERTY TKPPDUPDATING_FIRST_TEST_PROGRAM ${program})
    endif()
    # Without it ccache does not see what a precompiled header is made of.
    target_compile_options(${program} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endfunction()

function(tkppdupdating_add_tests program)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES;PROPERTIES")
    add_executable(${program} ${arg_SOURCES})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
        # A test that loops for ever says so before CTest ends it.
        target_link_libraries(${program} PRIVATE tkppdupdating_test_time_limit)
    endif()
    tkppdupdating_compiler_settings(${program})
    target_link_libraries(${program} PRIVATE
        TkPPDUpdating ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
    tkppdupdating_precompile_test_headers(${program})
    target_compile_definitions(${program} PRIVATE
        TKPPDUPDATING_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        TKPPDUPDATING_BINARY_DIR="${PROJECT_BINARY_DIR}")
    # Printed values would make names that change from run to run (addresses).
    gtest_discover_tests(${program} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
        PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
    foreach(source IN LISTS arg_SOURCES)
        get_filename_component(path "${source}" ABSOLUTE)
        set_property(GLOBAL APPEND PROPERTY TKPPDUPDATING_TEST_SOURCES "${path}")
    endforeach()
endfunction()

# The tests in these folders of tests/, and these files there, need a part that is not built.
function(tkppdupdating_leave_tests_out)
    foreach(place IN LISTS ARGN)
        file(GLOB_RECURSE left_out CONFIGURE_DEPENDS
            "${PROJECT_SOURCE_DIR}/tests/${place}/*_test.cpp" "${PROJECT_SOURCE_DIR}/tests/${place}")
        set_property(GLOBAL APPEND PROPERTY TKPPDUPDATING_TEST_SOURCES ${left_out})
    endforeach()
endfunction()

# A test file that no program lists would never run: refuse to configure.
function(tkppdupdating_check_every_test_is_registered)
    get_property(registered GLOBAL PROPERTY TKPPDUPDATING_TEST_SOURCES)
    file(GLOB_RECURSE present CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tests/*_test.cpp")
    list(REMOVE_ITEM present ${registered})
    list(FILTER present EXCLUDE REGEX "/tests/consumer/")
    if(present)
        message(FATAL_ERROR "test files that no tkppdupdating_add_tests() call lists: ${present}")
    endif()
endfunction()
