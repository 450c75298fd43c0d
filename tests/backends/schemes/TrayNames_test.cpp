#include "backends/schemes/TrayNames.h"

#include <gtest/gtest.h>

namespace TkPPDUpdating::Testing {
namespace {

TEST(TrayNames, FeedersAndTheAutomaticChoiceAreNoTrays) {
    for (const char* name : {"manual", "Manual Feed", "MANUAL_FEED", "by-pass-tray", "Bypass",
                             "By Pass Tray", "ByPass", "MP Tray", "mp", "MPT", "Multi-Purpose Tray",
                             "Multipurpose", "multi purpose feeder", "envelope", "Envelope Feeder",
                             "Tray 1 (manual)", "auto", "Automatic", " Auto "}) {
        EXPECT_TRUE(isNameOfNoTray(name)) << name;
    }
}

TEST(TrayNames, OtherNamesMayBeTrays) {
    for (const char* name :
         {"", " ", "Tray 1", "main", "Rear Auto Sheet Feeder", "Cassette", "manuals", "lamp", "mp3",
          "envelopes2", "multi tray purpose", "Fach \xC3\xBC", "\xE3\x83\x88"}) {
        EXPECT_FALSE(isNameOfNoTray(name)) << name;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
