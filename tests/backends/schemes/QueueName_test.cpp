#include "backends/schemes/QueueName.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating {
namespace {

TEST(QueueName, CanBeWhatCUPSTakes) {
    for (const std::string& name :
         {std::string("a"), std::string("Office-Printer_2"), std::string("a.b"), std::string("..."),
          std::string(".a"), std::string("a\"'\\|<>"), std::string("B\xC3\xBCro"),
          std::string("\xF0\x9F\x96\xA8"), std::string(127, 'a')}) {
        EXPECT_TRUE(couldBeQueueName(name)) << name;
    }
}

TEST(QueueName, CannotBeAPathOrWhatCUPSRefuses) {
    for (const std::string& name : {std::string(),
                                    std::string("."),
                                    std::string(".."),
                                    std::string(128, 'a'),
                                    std::string("a/b"),
                                    std::string("/"),
                                    std::string("a#b"),
                                    std::string("a b"),
                                    std::string("a\tb"),
                                    std::string("a\nb"),
                                    std::string("a\0b", 3),
                                    std::string("a\x1F"),
                                    std::string("a\x7F"),
                                    std::string("a\xC2\x80"),
                                    std::string("a\xC2\x85"),
                                    std::string("a\xC2\x9F"),
                                    std::string("a\xC2\xA0"),
                                    std::string("a\xE2\x80\xA8"),
                                    std::string("a\xE3\x80\x80"),
                                    std::string("a\xFF"),
                                    std::string("a\xC3")}) {
        EXPECT_FALSE(couldBeQueueName(name)) << name;
    }
}

}  // namespace
}  // namespace TkPPDUpdating
