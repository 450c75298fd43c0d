# What makes a mistake in our code harder to use for an attacker. Checked on what was built and on
# what was installed by scripts/check-hardening.
#
#   tkppdupdating_harden(<target>)
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
include(CMakePushCheckState)
if(TKPPDUPDATING_HARDENING)
    check_pie_supported(LANGUAGES CXX)
endif()

set(TKPPDUPDATING_HARDENING_FLAGS "")
# clang++ takes a flag of another processor, with a warning for every file.
cmake_push_check_state()
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag IN ITEMS
        -fstack-protector-strong    # a buffer that is overrun on the stack ends the process
        -fstack-clash-protection    # a stack does not grow into something else unseen
        -fcf-protection=full        # jumps lead to where a function begins (x86)
        -mbranch-protection=standard)  # the same (ARM)
    string(MAKE_C_IDENTIFIER "TKPPDUPDATING_HAS${flag}" has)
    check_cxx_compiler_flag("${flag}" ${has})
    if(${has})
        list(APPEND TKPPDUPDATING_HARDENING_FLAGS "${flag}")
    endif()
endforeach()
cmake_pop_check_state()

function(tkppdupdating_harden target)
    target_compile_options(${target} PRIVATE ${TKPPDUPDATING_HARDENING_FLAGS})
    # Sizes are checked where the C library knows them. That takes an optimising compiler; level 3
    # takes the place of 2 in compilers that know it (g++ 12, clang++ 9).
    if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
        target_compile_options(${target} PRIVATE
            "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
    endif()
    # All symbols are bound at the start, and what holds them is read-only from then on; no memory
    # is both written and run. A program may be loaded anywhere (POSITION_INDEPENDENT_CODE).
    target_link_options(${target} PRIVATE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()
