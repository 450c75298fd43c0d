#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "c_interface/TkPPDUpdating.h"

namespace TkPPDUpdating::Testing {

inline const std::string kOfficePPD = TKPPDUPDATING_SOURCE_DIR "/samples/ppd/zr-office.ppd";
inline const std::string kOfficeRecording =
    TKPPDUPDATING_SOURCE_DIR "/samples/status/zr-office-all.json";

inline TkPPDUpdatingText textOf(std::string_view text) {
    return {text.data(), text.size()};
}

inline TkPPDUpdatingStatusSource sourceOfKind(TkPPDUpdatingSourceKind kind, std::string_view text) {
    TkPPDUpdatingStatusSource source = {};
    source.kind = kind;
    source.text = textOf(text);
    return source;
}

inline TkPPDUpdatingStatusSource sourceOfFunction(TkPPDUpdatingStatusFunction function,
                                                  void* context) {
    TkPPDUpdatingStatusSource source = {};
    source.kind = TkPPDUpdatingFromFunction;
    source.function = function;
    source.context = context;
    return source;
}

/// A manager of the C interface, and its calls with results as C++ has them.
class CManager {
  public:
    CManager() { EXPECT_EQ(TkPPDUpdatingManager_create(&manager_), TkPPDUpdatingDone); }
    CManager(const CManager&) = delete;
    CManager& operator=(const CManager&) = delete;
    ~CManager() { TkPPDUpdatingManager_free(manager_); }

    TkPPDUpdatingManager* get() const { return manager_; }
    std::string message() const { return TkPPDUpdating_message(manager_); }
    std::string note() const { return TkPPDUpdating_note(manager_); }

    TkPPDUpdatingResult update(std::string_view path, const TkPPDUpdatingStatusSource* source) {
        char* bytes = nullptr;
        std::size_t length = 0;
        const auto result = TkPPDUpdating_updatedPPDContentsForFile_deviceURI(
            manager_, textOf(path), source, &bytes, &length);
        contents.assign(bytes ? bytes : "", length);
        EXPECT_EQ(bytes != nullptr, result == TkPPDUpdatingDone);
        EXPECT_EQ(message().empty(), result == TkPPDUpdatingDone);
        TkPPDUpdating_free(bytes);
        return result;
    }

    /// Of the last update; empty when it failed.
    std::string contents;

  private:
    TkPPDUpdatingManager* manager_ = nullptr;
};

}  // namespace TkPPDUpdating::Testing
