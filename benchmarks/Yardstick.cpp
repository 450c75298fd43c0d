#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "benchmarks/GeneratedPPD.h"
#include "benchmarks/Yardstick.h"
#include "text/UTF8.h"

namespace TkPPDUpdating::Benchmarks {

GeneratedPPDFile::GeneratedPPDFile(std::size_t leastBytes) {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "tkppdupdating-benchmark-XXXXXX").string();
    const int file = mkstemp(pattern.data());
    if (file < 0) {
        throw std::runtime_error("no temporary file for the benchmark");
    }
    close(file);
    path_ = pattern;
    std::ofstream(path_, std::ios::binary) << *generatedPPD(leastBytes);
}

GeneratedPPDFile::~GeneratedPPDFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

namespace {

/// What nobody can do without who takes a PPD from a file: read it, see that it is UTF-8, and find
/// its line feeds. Every other figure is to be read as a multiple of this one.
void Yardstick_ReadFileCheckUTF8FindLineFeeds(benchmark::State& state) {
    const GeneratedPPDFile file(kLargePPD);
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::FILE* const stream = std::fopen(file.path().c_str(), "rb");
        std::string text(std::filesystem::file_size(file.path()), '\0');
        bytes = std::fread(text.data(), 1, text.size(), stream);
        std::fclose(stream);
        benchmark::DoNotOptimize(firstInvalidUTF8Byte(text));
        benchmark::DoNotOptimize(std::count(text.begin(), text.end(), '\n'));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes * state.iterations()));
}
BENCHMARK(Yardstick_ReadFileCheckUTF8FindLineFeeds)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace TkPPDUpdating::Benchmarks
