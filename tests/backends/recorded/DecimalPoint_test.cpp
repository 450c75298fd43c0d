// Numbers of recordings in an application whose locale has a decimal point of two bytes, as that of
// Persian has (U+066B). No such locale needs to be installed: the program has a localeconv(3) of
// its own.
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "backends/recorded/BoundedJSON.h"

namespace {

char arabicDecimalSeparator[] = "\xD9\xAB";
char fullStop[] = ".";
char none[] = "";

}  // namespace

/// That of the application's locale, unless the thread has one of its own.
extern "C" lconv* localeconv() noexcept {
    static lconv conventions{};
    const bool isOfApplication = ::uselocale(nullptr) == LC_GLOBAL_LOCALE;
    conventions.decimal_point = isOfApplication ? arabicDecimalSeparator : fullStop;
    conventions.thousands_sep = none;
    return &conventions;
}

namespace TkPPDUpdating {
namespace {

TEST(DecimalPoint, OfAnApplicationIsNotThatOfARecording) {
    ASSERT_STREQ(::localeconv()->decimal_point, "\xD9\xAB");
    std::string error;
    const auto numbers = JSONWithText("[600.5, 0.25, -1.5e3]", error);
    ASSERT_TRUE(numbers) << error;
    EXPECT_EQ(*numbers, (nlohmann::json{600.5, 0.25, -1500.0}));
    EXPECT_STREQ(::localeconv()->decimal_point, "\xD9\xAB");
}

}  // namespace
}  // namespace TkPPDUpdating
