#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace TkPPDUpdating::Testing {

/// A text in a table of test cases, and the name by which the case is listed. A null text stands
/// for none.
struct NamedText {
    const char* name;
    const char* text;

    friend void PrintTo(const NamedText& value, std::ostream* stream) { *stream << value.name; }
};

inline std::string nameOfCase(const testing::TestParamInfo<NamedText>& info) {
    return info.param.name;
}

}  // namespace TkPPDUpdating::Testing
