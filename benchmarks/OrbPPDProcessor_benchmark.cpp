#include <benchmark/benchmark.h>

#include <optional>
#include <string>

#include "benchmarks/GeneratedPPD.h"
#include "ppd/OrbPPDProcessor.h"

namespace TkPPDUpdating::Benchmarks {
namespace {

void SplitIntoLines(benchmark::State& state) {
    const PPDText text = generatedPPD(kLargePPD);
    for (auto _ : state) {
        benchmark::DoNotOptimize(OrbPPDProcessor::processorWithPPDContent(text)->lines());
    }
}
BENCHMARK(SplitIntoLines)->Unit(benchmark::kMicrosecond);

/// So many look-ups of the translations of one option's choices, in a fresh processor.
void LookUps(benchmark::State& state) {
    const PPDText text = generatedPPD(kLargePPD);
    const std::string keyword = "ja." + keywordOfMiddleOption(kLargePPD);
    for (auto _ : state) {
        const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const std::string spec = "Choice" + std::to_string(i % 6);
            const auto range =
                processor->rangeOfAttributeWithKeyword_spec_value(keyword, spec, std::nullopt);
            if (range.length == 0) {
                state.SkipWithError("the generated PPD lacks the attribute");
            }
            benchmark::DoNotOptimize(range);
        }
    }
}
BENCHMARK(LookUps)->Arg(1)->Arg(8)->Arg(64)->Arg(1024)->Unit(benchmark::kMicrosecond);

/// What an attribute updater does: one attribute near the end is replaced and the text joined.
void ReplaceOneAttribute(benchmark::State& state) {
    const PPDText text = generatedPPD(kLargePPD);
    for (auto _ : state) {
        const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
        processor->setInsertLocation(processor->deleteAttributeWithKeyword_spec_value(
            "ZrMaxSupportedResolution", std::nullopt, std::nullopt));
        processor->insertAttributeWithKeyword_spec_text_value_wrap(
            "ZrMaxSupportedResolution", std::nullopt, std::nullopt, "1200", false);
        benchmark::DoNotOptimize(processor->content());
    }
}
BENCHMARK(ReplaceOneAttribute)->Unit(benchmark::kMicrosecond);

/// Choices with translations in four languages, appended and then deleted one by one.
void AppendAndDeleteChoices(benchmark::State& state) {
    const PPDText text = generatedPPD(kLargePPD);
    for (auto _ : state) {
        const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
        processor->setInsertLocation(kTkPPDProcessorPPDEndLocation);
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            processor->insertAttributeWithKeyword_spec_text_value_wrap(
                "MediaType", "custom" + std::to_string(i), "Glossy", "\"\"", false);
        }
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            processor->deleteAttributeWithKeyword_spec_value(
                "MediaType", "custom" + std::to_string(i), std::nullopt);
        }
        benchmark::DoNotOptimize(processor->content());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(AppendAndDeleteChoices)
    ->RangeMultiplier(4)
    ->Range(64, 4096)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity(benchmark::oN);

/// Every second line of a PPD of nothing but constraints, removed after the index was made.
void RemoveEverySecondConstraint(benchmark::State& state) {
    std::string constraints;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        constraints += "*UIConstraints: *Duplex Choice" + std::to_string(i) + " *MediaType Film\n";
    }
    const PPDText text = makePPDText(std::move(constraints));
    for (auto _ : state) {
        const auto processor = OrbPPDProcessor::processorWithPPDContent(text);
        for (int i = 0; i < 20; ++i) {
            benchmark::DoNotOptimize(processor->rangeOfAttributeWithKeyword_spec_value(
                "UIConstraints", std::nullopt, std::nullopt));
        }
        OrbPPDLines& lines = *processor->lines();
        for (std::size_t index = lines.size(); index >= 2; index -= 2) {
            lines.erase(index - 1, 1);
        }
        processor->clearContent();
        benchmark::DoNotOptimize(processor->content());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(RemoveEverySecondConstraint)
    ->RangeMultiplier(4)
    ->Range(1024, 65536)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity();

}  // namespace
}  // namespace TkPPDUpdating::Benchmarks
