// Peak memory of one run of the custom media updater, in bytes.
//
//   custom_media_memory TYPES LANGUAGES PROFILES RUNS
//
// PROFILES is 0 (none), 1 (one each) or 2 (one for all); a second run replaces the block of the
// first. Writes the size of the result, the peak of the process, and the peak before the runs.

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>

#include "benchmarks/CustomMediaInput.h"
#include "updaters/custom_media/OrbPPDCustomMediaUpdater.h"

namespace {

long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

}  // namespace

int main(int argc, char* argv[]) {
    using namespace TkPPDUpdating;
    if (argc != 5) {
        std::fprintf(stderr, "usage: custom_media_memory TYPES LANGUAGES PROFILES RUNS\n");
        return 2;
    }
    const auto argument = [argv](int index) { return std::strtoul(argv[index], nullptr, 10); };
    const auto types =
        Measuring::mediaTypes(argument(1), static_cast<Measuring::Profiles>(argument(3)));
    PPDText text = Measuring::PPDWithLanguages(argument(2), 1000);
    const long before = peakMemory();
    for (unsigned long run = 0; run < argument(4); ++run) {
        OrbPPDCustomMediaUpdater updater;
        text = updater.contentsForContents_updatedWithCustomMediaTypes(text, types);
    }
    std::printf("%zu %ld %ld\n", text->size(), peakMemory(), before);
    return 0;
}
