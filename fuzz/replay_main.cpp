// Runs a fuzz target over files and folders of inputs, with any compiler: so that the targets stay
// sound and an input that once broke something is tried in every test run.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"

namespace {

namespace fs = std::filesystem;

void replay(const fs::path& path) {
    std::cout << path.string() << std::endl;  // before a crash, so that it tells which input it was
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // A copy of the exact size: reading past the input's end is then seen by a sanitizer.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::size_t inputs = 0;
    for (int index = 1; index < argumentCount; ++index) {
        const fs::path path = arguments[index];
        if (!fs::is_directory(path)) {
            replay(path);
            ++inputs;
            continue;
        }
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            if (entry.is_regular_file()) {
                replay(entry.path());
                ++inputs;
            }
        }
    }
    LLVMFuzzerTestOneInput(nullptr, 0);
    if (inputs == 0) {
        std::cerr << "no inputs\n";
        return 1;
    }
    return 0;
}
