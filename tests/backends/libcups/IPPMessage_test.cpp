#include "backends/libcups/IPPMessage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace TkPPDUpdating {
namespace {

TEST(IPPMessageTest, ARequestAsksForEnglishWhateverTheLocale) {
    ASSERT_EQ(::setenv("LANG", "de_DE.UTF-8", 1), 0);
    ASSERT_EQ(::setenv("LC_ALL", "de_DE.UTF-8", 1), 0);
    const IPPMessage request = newIPPRequest(IPP_OP_GET_PRINTER_ATTRIBUTES);
    ipp_attribute_t* language =
        ippFindAttribute(request.get(), "attributes-natural-language", IPP_TAG_LANGUAGE);
    ASSERT_NE(language, nullptr);
    EXPECT_STREQ(ippGetString(language, 0, nullptr), "en");
}

TEST(IPPStatusName, IsThatOfTheStandardOrTheNumber) {
    EXPECT_EQ(nameOfIPPStatus(0x0000), "successful-ok");
    EXPECT_EQ(nameOfIPPStatus(0x0406), "client-error-not-found");
    EXPECT_EQ(nameOfIPPStatus(0x0FFF), "0x0fff");
    EXPECT_EQ(nameOfIPPStatus(0xBB99), "0xbb99");
    EXPECT_EQ(nameOfIPPStatus(0xFFFF), "0xffff");
}

}  // namespace
}  // namespace TkPPDUpdating
