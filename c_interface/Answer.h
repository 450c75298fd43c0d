#pragma once

#include <deque>
#include <optional>
#include <string>

#include "c_interface/TkPPDUpdating.h"
#include "core_interface/OrbCSDeviceStatus.h"
#include "core_interface/OrbPPDFile.h"
#include "manager/ITkPPDUpdater.h"

/// What a call-back has answered so far.
struct TkPPDUpdatingAnswer {
    std::optional<std::string> text;
    TkPPDUpdating::OrbPPDUpdatingValues values;
    /// What was wrong with an answer that was refused; empty when none was.
    std::string error;
};

/// A status for the time of a call-back; none is null.
struct TkPPDUpdatingStatus {
    const TkPPDUpdating::OrbCSDeviceStatus* status = nullptr;
    /// Texts that were handed out and stand nowhere else.
    mutable std::deque<std::string> texts;
};

/// A parsed PPD for the time of a call-back.
struct TkPPDUpdatingPPD {
    const TkPPDUpdating::OrbPPDFile* PPD = nullptr;
};
