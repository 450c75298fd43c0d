// Prints how libcups sees some choices of an option in the language of the environment: for each
// choice keyword in the arguments one line, with the keyword and the text (or "not found").
//
//   print_ppd_choices FILE OPTION CHOICE...

#include <cups/ppd.h>

#include <cstdio>

// The PPD functions are deprecated in libcups 2 and gone in 3; they are what is asked about here.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

int main(int argc, char* argv[]) {
    if (argc < 3) {
        return 2;
    }
    ppd_file_t* const file = ppdOpenFile(argv[1]);
    if (!file || ppdLocalize(file) != 0) {
        int line = 0;
        const ppd_status_t status = ppdLastError(&line);
        std::fprintf(stderr, "line %d: %s\n", line, ppdErrorString(status));
        return 1;
    }
    ppd_option_t* const option = ppdFindOption(file, argv[2]);
    for (int i = 3; i < argc; ++i) {
        const ppd_choice_t* const choice = option ? ppdFindChoice(option, argv[i]) : nullptr;
        std::printf("%s %s\n", argv[i], choice ? choice->text : "not found");
    }
    ppdClose(file);
    return 0;
}
