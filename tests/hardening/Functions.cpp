// A shared object small enough to be built both ways in every build, with what hardening changes:
// functions, a buffer on the stack, and a call whose size the C library can check.
#include <cstdio>
#include <cstring>

template <int Place>
__attribute__((noinline)) int lengthOfCopy(const char* text) {
    char buffer[16 + Place];    // NOLINT(*-avoid-c-arrays): what a stack protector looks for
    std::strcpy(buffer, text);  // NOLINT(clang-analyzer-security*)
    return static_cast<int>(std::strlen(buffer)) + std::printf("%s\n", buffer);
}

using LengthOfCopy = int(const char*);

extern "C" __attribute__((visibility("default"))) LengthOfCopy* functionAt(unsigned place) {
    static LengthOfCopy* const kFunctions[] = {// NOLINT(*-avoid-c-arrays)
                                               lengthOfCopy<0>, lengthOfCopy<1>,  lengthOfCopy<2>,
                                               lengthOfCopy<3>, lengthOfCopy<4>,  lengthOfCopy<5>,
                                               lengthOfCopy<6>, lengthOfCopy<7>,  lengthOfCopy<8>,
                                               lengthOfCopy<9>, lengthOfCopy<10>, lengthOfCopy<11>};
    return kFunctions[place % 12];
}
