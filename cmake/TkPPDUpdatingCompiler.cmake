# One place for what every target of the project is compiled with.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # It keeps nothing of a file with a precompiled header, unless it is told these two.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE_PROGRAM}")
endif()

include(TkPPDUpdatingHardening)

# What the product exports has the mark of text/TkPPDUpdatingPublic.h.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

function(tkppdupdating_compiler_settings target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(TKPPDUPDATING_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(TKPPDUPDATING_HARDENING)
        tkppdupdating_harden(${target})
    endif()
    if(TKPPDUPDATING_SANITIZERS)
        target_compile_options(${target} PRIVATE
            -fsanitize=${TKPPDUPDATING_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        if(TKPPDUPDATING_SANITIZERS MATCHES "fuzzer")
            # Each check of a sanitizer is a comparison too, and telling libFuzzer of them all takes a
            # third of the time. It still sees what texts are compared with.
            target_compile_options(${target} PRIVATE -fno-sanitize-coverage=trace-cmp)
        endif()
        # What a sanitizer does not see: an empty optional or view that is read.
        target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
        target_link_options(${target} PUBLIC -fsanitize=${TKPPDUPDATING_SANITIZERS})
    endif()
    if(TKPPDUPDATING_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -fprofile-update=atomic)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()
