#include "tools/ExplanationReport.h"

#include <string_view>

#include "tools/Diagnostics.h"

namespace TkPPDUpdating {

namespace {

constexpr std::string_view kStep = "  ";

nlohmann::ordered_json JSONForReading(const PPDUpdateStep::Reading& reading) {
    auto sources = nlohmann::ordered_json::array();
    for (const OrbCSStatusSource& source : reading.sources) {
        sources.push_back({{"attribute", source.name}, {"value", source.value}});
    }
    return {{"status", reading.entry}, {"value", reading.value}, {"from", std::move(sources)}};
}

}  // namespace

std::string ExplanationReport::lines(const std::vector<PPDUpdateStep>& steps,
                                     const std::string& indentation) {
    std::string text;
    const auto add = [&](std::size_t depth, const std::string& line) {
        text += indentation;
        for (; depth > 0; --depth) {
            text += kStep;
        }
        text += Diagnostics::printable(line) + "\n";
    };
    for (const PPDUpdateStep& step : steps) {
        add(0, step.updater);
        for (const PPDUpdateStep::Reading& reading : step.readings) {
            add(1, reading.entry + ": " + reading.value);
            for (const OrbCSStatusSource& source : reading.sources) {
                add(2, source.name + ": " + source.value);
            }
        }
        for (const std::string& line : step.removedLines) {
            add(1, "-" + line);
        }
        for (const std::string& line : step.addedLines) {
            add(1, "+" + line);
        }
    }
    return text;
}

nlohmann::ordered_json ExplanationReport::JSON(const std::vector<PPDUpdateStep>& steps) {
    auto list = nlohmann::ordered_json::array();
    for (const PPDUpdateStep& step : steps) {
        auto readings = nlohmann::ordered_json::array();
        for (const PPDUpdateStep::Reading& reading : step.readings) {
            readings.push_back(JSONForReading(reading));
        }
        list.push_back({{"updater", step.updater},
                        {"reads", std::move(readings)},
                        {"removed", step.removedLines},
                        {"added", step.addedLines}});
    }
    return list;
}

}  // namespace TkPPDUpdating
