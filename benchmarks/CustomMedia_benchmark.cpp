// How the custom media updater grows with the media types, the languages and the size of the PPD.
// "lines" is how many lines were written, "per_line" the time that each took.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "benchmarks/CustomMediaInput.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace TkPPDUpdating {
namespace {

using namespace Measuring;

constexpr std::size_t kConstraints = 1000;

PPDText updated(const PPDText& text, const OrbCustomMediaTypes& types) {
    OrbPPDCustomMediaUpdater updater;
    return updater.contentsForContents_updatedWithCustomMediaTypes(text, types);
}

std::ptrdiff_t lineCount(const PPDText& text) {
    return std::count(text->begin(), text->end(), '\n');
}

/// Arguments: media types, languages, profiles.
struct Input {
    explicit Input(const benchmark::State& state)
        : text(PPDWithLanguages(static_cast<std::size_t>(state.range(1)), kConstraints)),
          types(mediaTypes(static_cast<std::size_t>(state.range(0)),
                           static_cast<Profiles>(state.range(2)))) {}

    PPDText text;
    OrbCustomMediaTypes types;
};

void measure(benchmark::State& state, const PPDText& text, const OrbCustomMediaTypes& types,
             std::ptrdiff_t lines) {
    for (auto unused : state) {
        benchmark::DoNotOptimize(updated(text, types));
    }
    state.counters["lines"] = static_cast<double>(lines);
    state.counters["per_line"] =
        benchmark::Counter(static_cast<double>(lines) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void insertion(benchmark::State& state) {
    const Input input(state);
    const PPDText result = updated(input.text, input.types);
    measure(state, input.text, input.types, lineCount(result) - lineCount(input.text));
}

/// A run over its own result: the block is removed and inserted again.
void replacement(benchmark::State& state) {
    const Input input(state);
    const PPDText result = updated(input.text, input.types);
    measure(state, result, input.types, lineCount(result) - lineCount(input.text));
}

void removal(benchmark::State& state) {
    const Input input(state);
    const PPDText result = updated(input.text, input.types);
    measure(state, result, {}, lineCount(result) - lineCount(input.text));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"types", "languages", "profiles"});
    benchmark->Unit(benchmark::kMillisecond);
    for (const std::int64_t profiles : {0, 1, 2}) {
        for (const std::int64_t languages : {0, 1, 5, 40}) {
            for (const std::int64_t types : {100, 1000}) {
                benchmark->Args({types, languages, profiles});
            }
        }
    }
}

BENCHMARK(insertion)->Apply(sizes);
BENCHMARK(replacement)->Apply(sizes);
BENCHMARK(removal)->Apply(sizes);

}  // namespace
}  // namespace TkPPDUpdating
