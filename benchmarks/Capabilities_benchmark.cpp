// What it costs to take a PPD's duplex support away, beside the time that copying the text line by
// line takes. scripts/check-capability-bounds compares the two.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "ppd/PPDText.h"
#include "updaters/capabilities/OrbPPDDeviceCapabilitiesUpdater.h"
#include "updaters/capabilities/OrbPPDNonInstallableDuplexUpdater.h"

namespace TkPPDUpdating {
namespace {

/// A PPD with that many constraint lines that name Duplex.
PPDText textWithConstraints(std::int64_t count) {
    std::string text = "*PPD-Adobe: \"4.3\"\n*cupsVersion: 2.4\n";
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string choice = std::to_string(i);
        text += i % 2 == 0 ? "*UIConstraints: *Duplex DuplexTumble *MediaType Media" + choice + "\n"
                           : "*UIConstraints: *InputSlot Tray" + choice + " *Duplex\n";
    }
    return makePPDText(text + "*% End of the PPD\n");
}

/// The same with a comment before each constraint and as many lines in between that stay.
PPDText textWithCommentsAndOtherLines(std::int64_t count) {
    std::string text = "*PPD-Adobe: \"4.3\"\n*cupsVersion: 2.4\n";
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string choice = std::to_string(i);
        text += "*% Duplex <-> MediaType\n*UIConstraints: *Duplex DuplexTumble *MediaType Media" +
                choice + "\n*UIConstraints: *InputSlot Tray" + choice + " *MediaType Glossy\n";
    }
    return makePPDText(std::move(text));
}

/// Page sizes in two languages, every fourth one for two-sided use.
PPDText textWithPageSizes(std::int64_t lines) {
    std::string text;
    for (std::int64_t i = 0; i < lines; ++i) {
        const std::string name = "Size" + std::to_string(i / 2) + (i % 8 < 2 ? ".ZrDuplex" : "");
        text += i % 2 == 0
                    ? "*PageSize " + name + "/A size: \"<</PageSize[595 842]>>setpagedevice\""
                    : "*fr.PageSize " + name + "/Un format: \"\"";
        text += '\n';
    }
    return makePPDText(std::move(text));
}

void CopyLineByLine(benchmark::State& state) {
    const PPDText text = textWithConstraints(state.range(0));
    for (auto _ : state) {
        std::string copy;
        copy.reserve(text->size());
        std::size_t start = 0;
        for (std::size_t end = text->find('\n'); end != std::string::npos;
             end = text->find('\n', start)) {
            copy.append(*text, start, end + 1 - start);
            start = end + 1;
        }
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}
BENCHMARK(CopyLineByLine)->Arg(5000)->Arg(50000);

void RemoveConstraints(benchmark::State& state, PPDText (*make)(std::int64_t)) {
    const PPDText text = make(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            OrbPPDDeviceCapabilitiesUpdater::
                contentsForContents_byRemovingConstraintsForOptionWithName(text, "Duplex"));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}
BENCHMARK_CAPTURE(RemoveConstraints, All, textWithConstraints)->Arg(5000)->Arg(50000);
BENCHMARK_CAPTURE(RemoveConstraints, AmongOthers, textWithCommentsAndOtherLines)
    ->Arg(5000)
    ->Arg(50000);

void RemovePageSizes(benchmark::State& state) {
    const PPDText text = textWithPageSizes(state.range(0));
    const OrbPPDNonInstallableDuplexUpdater updater;
    for (auto _ : state) {
        benchmark::DoNotOptimize(updater.contentsByRemovingDuplexSafePageSizesForContents(text));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}
BENCHMARK(RemovePageSizes)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

void ReadPropertyList(benchmark::State& state) {
    const OrbPPDDeviceCapabilitiesUpdater updater;
    for (auto _ : state) {
        benchmark::DoNotOptimize(updater.insertingStringForCUPSVersion("2.4"));
    }
}
BENCHMARK(ReadPropertyList);

}  // namespace
}  // namespace TkPPDUpdating
