#include "backends/schemes/InkColours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace TkPPDUpdating::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(InkColours, APrimaryIsItsLetter) {
    for (const char* cyan : {"cyan", "Cyan", "CYAN", "#00FFFF", "#00ffff", "#00CFFF", "#39D2E7",
                             "#00AEEF", "#009FE3"}) {
        EXPECT_THAT(dyesOfInkColour(cyan), ElementsAre("C")) << cyan;
    }
    for (const char* magenta : {"magenta", "#FF00FF", "#D945DD", "#EC008C", "#FF00CF"}) {
        EXPECT_THAT(dyesOfInkColour(magenta), ElementsAre("M")) << magenta;
    }
    for (const char* yellow : {"yellow", "#FFFF00", "#DFD31D", "#FFF200", "#FFE000", "#FFED00"}) {
        EXPECT_THAT(dyesOfInkColour(yellow), ElementsAre("Y")) << yellow;
    }
    for (const char* black : {"black", "#000000", "#231F20", "#333333"}) {
        EXPECT_THAT(dyesOfInkColour(black), ElementsAre("K")) << black;
    }
}

TEST(InkColours, AColourFarFromEveryPrimaryIsNone) {
    for (const char* other :
         {"#FF0000", "#00FF00", "#0000FF", "#FFA500", "#808080", "#343434", "#FFFFFF", "#C0FFFF",
          "#FFC0FF", "#8000FF", "#800080", "#008B8B", "#80FF00", "#0080FF"}) {
        EXPECT_THAT(dyesOfInkColour(other), IsEmpty()) << other;
    }
}

TEST(InkColours, JoinedColoursAreASupplyOfSeveralDyes) {
    EXPECT_THAT(dyesOfInkColour("#39D2E7#D945DD#DFD31D"), ElementsAre("C", "M", "Y"));
    EXPECT_THAT(dyesOfInkColour("#000000#00FFFF"), ElementsAre("K", "C"));
    EXPECT_THAT(dyesOfInkColour("#000000#808080"), IsEmpty());
}

TEST(InkColours, WhatIsNoColourIsNone) {
    for (const char* text :
         {"", "none", "None", "unknown", "other", "#", "#00", "#00FFF", "#00FFFFF", "#00FFGG",
          "#-1FFFF", "#00FFFF00FFFF", "#00FFFF#", "##00FFFF", "Black, photo", ","}) {
        EXPECT_THAT(dyesOfInkColour(text), IsEmpty()) << text;
    }
}

TEST(InkColours, AnotherNameIsItself) {
    for (const char* name : {"Photo Black", "light cyan", "Spot Orange", "Cyan ink", "C"}) {
        EXPECT_THAT(dyesOfInkColour(name), ElementsAre(name));
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
