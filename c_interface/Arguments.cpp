#include "c_interface/Arguments.h"

#include <string>

#include "c_interface/Failure.h"

namespace TkPPDUpdating {

namespace {

[[noreturn]] void refuse(const char* name, const std::string& reason) {
    throw CFailure(TkPPDUpdatingBadArgument, std::string(name) + ": " + reason);
}

}  // namespace

std::string_view checkedText(const TkPPDUpdatingText& text, const char* name, std::size_t most) {
    if (text.length == TkPPDUpdatingNoEnd) {
        refuse(name, "the text has no end");
    }
    if (!text.bytes) {
        refuse(name, "is null");
    }
    if (text.length == 0) {
        refuse(name, "is empty");
    }
    if (text.length > most) {
        refuse(name, "takes " + std::to_string(text.length) + " bytes; at most " +
                         std::to_string(most) + " are possible");
    }
    return {text.bytes, text.length};
}

std::string_view checkedName(const TkPPDUpdatingText& text, const char* name) {
    const std::string_view checked = checkedText(text, name, TkPPDUpdatingMostBytesOfName);
    if (const std::size_t place = checked.find('\0'); place != std::string_view::npos) {
        refuse(name, "byte " + std::to_string(place) + " is NUL");
    }
    return checked;
}

void checkNotNull(const void* argument, const char* name) {
    if (!argument) {
        refuse(name, "is null");
    }
}

}  // namespace TkPPDUpdating
