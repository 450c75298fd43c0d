// The rows of scripts/bench: what an update costs, beside what libcups and a plain reader need for
// the same file. Usage: update_benchmark FOLDER [BENCHMARK OPTION]..., with the PPDs that
// scripts/benchmark-ppds writes.
#include <benchmark/benchmark.h>
#include <cups/ppd.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelFile.h"
#include "benchmarks/HeapWatch.h"
#include "benchmarks/UpdateRun.h"
#include "text/UTF8.h"

// The PPD functions are deprecated in libcups 2; they are what is compared with.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace TkPPDUpdating::Benchmarks {
namespace {

/// What nobody can do without who takes a PPD from a file: read it, see that it is UTF-8, and find
/// its line feeds. Gives the number of lines.
std::size_t readAndFindLines(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0) {
        throw std::runtime_error("cannot open " + path);
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    const std::unique_ptr<char[]> bytes(new char[size]);  // NOLINT: not to be filled with zeros
    const ssize_t length = ::read(file, bytes.get(), size);
    ::close(file);
    const std::string_view text(bytes.get(), length > 0 ? static_cast<std::size_t>(length) : 0);
    if (firstInvalidUTF8Byte(text)) {
        throw std::runtime_error(path + " is not UTF-8");
    }
    std::size_t lines = 0;
    for (std::size_t at = text.find('\n'); at != std::string_view::npos;
         at = text.find('\n', at + 1)) {
        ++lines;
    }
    return lines;
}

void openWithLibcups(const std::string& path) {
    ppd_file_t* const ppd = ppdOpenFile(path.c_str());
    if (!ppd) {
        throw std::runtime_error("libcups refuses " + path);
    }
    ppdClose(ppd);
}

using Row = std::function<void(const std::string& path)>;

/// Measures the time, then the heap of one more run.
void registerRow(const std::string& name, const std::string& path, const Row& row) {
    const std::string fullName = name + "|" + std::filesystem::path(path).stem().string();
    const auto run = [path, row](benchmark::State& state) {
        row(path);
        for (auto _ : state) {
            row(path);
        }
        const HeapWatch watch;
        row(path);
        state.counters["peak"] = static_cast<double>(watch.peakBytes());
        state.counters["allocations"] = static_cast<double>(watch.allocations());
        state.counters["text"] = static_cast<double>(std::filesystem::file_size(path));
    };
    benchmark::RegisterBenchmark(fullName.c_str(), run)->Unit(benchmark::kMillisecond);
}

void registerUpdates(const std::string& path) {
    for (const bool hasDuplexer : {true, false}) {
        const std::string state = hasDuplexer ? ", installed" : ", absent";
        const Printer printer{hasDuplexer};
        using Updaters = UpdateRun::Updaters;
        // The printer behind the interface is the process's: set anew for each row.
        const auto row = [printer](Updaters updaters) -> Row {
            auto run = std::make_shared<std::unique_ptr<UpdateRun>>();
            return [=](const std::string& each) {
                static const UpdateRun* current = nullptr;
                if (!*run || current != run->get()) {
                    *run = std::make_unique<UpdateRun>(updaters, printer);
                    current = run->get();
                }
                benchmark::DoNotOptimize((*run)->update(each));
            };
        };
        registerRow("typical" + state, path, row(Updaters::kTypical));
        registerRow("all fourteen" + state, path, row(Updaters::kAllFourteen));
    }
}

void registerRows(const std::string& path) {
    // libcups looks for each option among all: not to be waited for.
    constexpr std::uintmax_t kLargestForLibcups = 5'000'000;
    registerRow("floor", path,
                [](const std::string& each) { benchmark::DoNotOptimize(readAndFindLines(each)); });
    if (std::filesystem::file_size(path) < kLargestForLibcups) {
        registerRow("ppdOpenFile", path, openWithLibcups);
    }
    registerRow("model", path, [](const std::string& each) {
        benchmark::DoNotOptimize(PPDModelFile::fileWithContentsOfFile(each).get());
    });
    registerUpdates(path);
    const auto run = std::make_shared<std::unique_ptr<UpdateRun>>();
    const auto PPDFile = std::make_shared<std::shared_ptr<const PPDModelFile>>();
    registerRow("values", path, [run, PPDFile](const std::string& each) {
        if (!*run) {
            *run = std::make_unique<UpdateRun>(UpdateRun::Updaters::kAllFourteen, Printer());
            *PPDFile = PPDModelFile::fileWithContentsOfFile(each);
        }
        benchmark::DoNotOptimize((*run)->values(**PPDFile));
    });
}

}  // namespace
}  // namespace TkPPDUpdating::Benchmarks

int main(int argc, char** argv) {
    if (argc < 2) {
        return 2;
    }
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        if (entry.path().extension() == ".ppd") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::for_each(paths.begin(), paths.end(), TkPPDUpdating::Benchmarks::registerRows);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
