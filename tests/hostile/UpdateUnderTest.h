#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core_interface/OrbCSDeviceStatus.h"
#include "ppd/PPDText.h"
#include "tests/hostile/LibcupsReading.h"
#include "tests/hostile/UpdateInvariants.h"

namespace TkPPDUpdating::Testing {

/// A PPD that printers update, and what no update of it may do, as libcups judges. Not for several
/// threads.
class UpdateUnderTest {
  public:
    /// How one update ended.
    struct Outcome {
        /// What is wrong with it; empty when nothing is.
        std::vector<std::string> findings;
        /// Why the guard refused the result; then nothing would be written.
        std::optional<std::string> refusal;
        /// How many choices of media types, and of profiles, it added.
        std::size_t mediaTypes = 0;
        std::size_t profiles = 0;
    };

    /// Whether the guard before writing stands before the result.
    enum class Guard { on, off };

    /// Throws `std::runtime_error` when the text is no PPD, to the model or to libcups.
    explicit UpdateUnderTest(PPDText text);

    /// Updates the PPD with a status and looks at the result:
    /// - libcups opens it;
    /// - all that it knows of it is as it is after the same update without the printer's texts, but
    ///   the values of the updaters' own attributes and the choices of the custom media types;
    /// - a custom choice's code is its own, a profile choice's is empty, and each is there once;
    /// - no new text has a control character;
    /// - when the guard lets it pass, what must hold of every update holds (`UpdateInvariants`);
    /// - a second run changes nothing, and a run without media types takes all of them back.
    Outcome outcomeWith(const std::shared_ptr<const OrbCSDeviceStatus>& status,
                        Guard guard = Guard::on);

  private:
    using Facts = std::vector<LibcupsFact>;

    static PPDText updated(const PPDText& text, const std::shared_ptr<const OrbCSDeviceStatus>&);
    const Facts& expectedWith(const OrbCSDeviceStatus& status);
    static void look(const Facts& facts, const Facts& expected, const OrbCSDeviceStatus& status,
                     Outcome& outcome);
    void lookAtFurtherRuns(const PPDText& afterOneRun,
                           const std::shared_ptr<const OrbCSDeviceStatus>& status,
                           Outcome& outcome) const;

    PPDText text_;
    UpdateInvariants invariants_;
    /// What libcups knows of the PPD after an update with these accessories alone.
    std::map<std::string, Facts> expected_;
};

}  // namespace TkPPDUpdating::Testing
