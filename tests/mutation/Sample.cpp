// What tests/mutation/run changes: one of each kind of place, and some that cannot change.
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kName = "name";
constexpr std::size_t kSize = 2;
static_assert(sizeof(int) >= 2);

constexpr int twice(int value) {
    return value * 2;
}

std::array<int, kSize> pair(int first) {
    return {first, twice(first)};
}

bool isBetween(int value, int low, int high = 9) {
    return value > low && value < high;
}

const char* sign(char letter) {
    switch (letter) {
        case '+':
            return "plus";
        default:
            return letter == '-' ? "minus" : "";
    }
}

std::string joined(const std::vector<std::string>& parts) {
    std::string all;
    all.reserve(100);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (parts[i] != kName) {
            continue;
        }
        all += parts[i];
    }
    return all;
}

}  // namespace

// Everything above in one text, so that each change shows.
std::string everything() {
    std::string text;
    text += std::to_string(pair(3)[1]) + " ";
    for (const int value : {0, 1, 8, 9}) {
        text += isBetween(value, 0) ? 'y' : 'n';
    }
    text += std::string(" ") + sign('+') + " " + sign('-') + " " + sign('x');
    return text + " " + joined({"a", "name", "b"});
}

void refuse(char letter) {
    if (letter == 'x') {
        throw std::invalid_argument("x");
    }
}

int digit(char letter) {
    refuse(letter);
    if (letter == '1') {
        return 1;
    }
    throw std::out_of_range("no digit");
}

int direction(char letter) {
    if (letter == '+') {
        return 1;
    } else {
        throw std::out_of_range("no direction");
    }
}

int result(int (*function)()) {
    return function ? function() : 0;
}
