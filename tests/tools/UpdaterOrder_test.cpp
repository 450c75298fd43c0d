// The order in which updaters run is nobody's to rely on: whatever it is, the result is the same.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "manager/OrbPPDConcreteUpdatingManager.h"
#include "tests/samples/SamplePrinters.h"

namespace TkPPDUpdating::Testing {
namespace {

using Classes = std::vector<const OrbClass*>;

constexpr int kOrders = 200;

struct Sample {
    std::string printer;
    std::string state;
};

void PrintTo(const Sample& sample, std::ostream* stream) {
    *stream << sample.printer << " " << sample.state;
}

std::vector<Sample> samples() {
    std::vector<Sample> samples;
    for (const auto& [printer, states] : sampleStates()) {
        for (const std::string& state : states) {
            samples.push_back({printer, state});
        }
        samples.push_back({printer, "unreachable"});
    }
    return samples;
}

class UpdaterOrderTest : public ::testing::TestWithParam<Sample> {
  protected:
    const SampleWorld world_;
    const PPDText before_ = PPDTextWithContentsOfFile(PPDPathOf(GetParam().printer));
    const std::shared_ptr<const OrbPPDFile> file_ =
        OrbPPDFile::PPDFileWithContentsOfFile(PPDPathOf(GetParam().printer));
    const std::string deviceURI_ =
        "file://" + recordingPathOf(GetParam().printer, GetParam().state);

    Classes applicableClasses() const {
        const OrbPPDConcreteUpdatingManager manager;
        Classes applicable;
        for (const OrbClass* updaterClass : manager.registeredClasses()) {
            if (updaterClass->newInstance()->isApplicableForPPDFile(file_.get())) {
                applicable.push_back(updaterClass);
            }
        }
        return applicable;
    }

    std::string updatedInOrder(const Classes& order) const {
        PPDText text = before_;
        OrbDictionary context;
        for (const OrbClass* updaterClass : order) {
            if (PPDText next =
                    updaterClass->newInstance()->updatedPPDContentsForContents_deviceURI_context(
                        text, deviceURI_, &context)) {
                text = std::move(next);
            }
        }
        return *text;
    }
};

std::string namesOf(const Classes& order) {
    std::string names;
    for (const OrbClass* updaterClass : order) {
        names.append(updaterClass->name()).append(" ");
    }
    return names;
}

TEST_P(UpdaterOrderTest, GivesOneTextForEveryOrder) {
    Classes order = applicableClasses();
    ASSERT_GE(order.size(), 2U);
    const std::string expected = updatedInOrder(order);
    std::mt19937 random(20010101);
    for (int count = 0; count < kOrders; ++count) {
        std::shuffle(order.begin(), order.end(), random);
        ASSERT_EQ(updatedInOrder(order), expected) << "in the order " << namesOf(order);
    }
}

TEST_P(UpdaterOrderTest, GivesTheManagersTextForItsOwnOrder) {
    const PPDText text = OrbPPDConcreteUpdatingManager().updatedPPDContentsForFile_deviceURI(
        PPDPathOf(GetParam().printer), deviceURI_);
    ASSERT_TRUE(text);
    EXPECT_EQ(updatedInOrder(applicableClasses()), *text);
}

INSTANTIATE_TEST_SUITE_P(Samples, UpdaterOrderTest, ::testing::ValuesIn(samples()),
                         [](const auto& each) {
                             return each.param.printer.substr(3) + "_" + each.param.state;
                         });

}  // namespace
}  // namespace TkPPDUpdating::Testing
