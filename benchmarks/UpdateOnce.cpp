// One update, for a tool that counts what it runs: update_once PPD typical|all installed|absent
// [MEDIA_TYPES [ESTIMATION_RECORDS]]. The run to be counted is the function
// `measuredUpdate`, after one that is not. Prints the size of the text before and after.
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

#include "benchmarks/UpdateRun.h"

extern "C" [[gnu::noinline]] std::size_t measuredUpdate(TkPPDUpdating::Benchmarks::UpdateRun& run,
                                                        const std::string& path) {
    return run.update(path);
}

int main(int argc, char** argv) {
    using TkPPDUpdating::Benchmarks::Printer;
    using TkPPDUpdating::Benchmarks::UpdateRun;
    if (argc < 4 || argc > 6) {
        return 2;
    }
    Printer printer{std::string_view(argv[3]) == "installed"};
    if (argc > 4) {
        printer.mediaTypes = std::stoul(argv[4]);
    }
    if (argc > 5) {
        printer.estimationRecords = std::stoul(argv[5]);
    }
    UpdateRun run(std::string_view(argv[2]) == "typical" ? UpdateRun::Updaters::kTypical
                                                         : UpdateRun::Updaters::kAllFourteen,
                  printer);
    const std::string path = argv[1];
    run.update(path);
    std::cout << std::filesystem::file_size(path) << ' ' << measuredUpdate(run, path) << '\n';
    return 0;
}
