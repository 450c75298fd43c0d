#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "backends/ppdmodel/PPDModelCore.h"
#include "backends/schemes/DeviceStatusSchemes.h"
#include "c_interface/Failure.h"
#include "c_interface/OwnUpdater.h"
#include "c_interface/TkPPDUpdating.h"
#include "manager/OrbPPDConcreteUpdatingManager.h"

/// What stands behind the handle of a caller in C.
struct TkPPDUpdatingManager {
  public:
    /// Sets what stands behind the core interface, where the process has not.
    TkPPDUpdatingManager();

    const TkPPDUpdating::DeviceStatusSchemes& schemes() const { return *schemes_; }
    const TkPPDUpdating::PPDModelCore& core() const { return *core_; }

    /// A manager of the library's with the classes that are registered here.
    std::unique_ptr<TkPPDUpdating::OrbPPDConcreteUpdatingManager> newManager() const;

    /// Raises `CFailure` when the name is taken.
    void registerUpdater(const TkPPDUpdatingUpdater& updater);
    /// Raises `CFailure` for an unknown name.
    void unregisterUpdater(std::string_view name);

    const char* message() const { return message_.data(); }
    const char* note() const { return note_.c_str(); }
    void setNote(std::string note) { note_ = std::move(note); }

    /// Runs a call and turns what it raises into its result. A null manager, and one that is at
    /// work, is a bad argument.
    template <typename Call>
    static TkPPDUpdatingResult run(TkPPDUpdatingManager* manager, const Call& call) noexcept {
        if (!manager || manager->isAtWork_.exchange(true)) {
            return TkPPDUpdatingBadArgument;
        }
        const TkPPDUpdatingResult result = manager->resultOf(call);
        manager->isAtWork_.store(false);
        return result;
    }

  private:
    template <typename Call>
    TkPPDUpdatingResult resultOf(const Call& call) noexcept {
        setMessage("");
        try {
            note_.clear();
            call(*this);
            return TkPPDUpdatingDone;
        } catch (const TkPPDUpdating::CFailure& failure) {
            return failed(failure.result(), failure.what());
        } catch (const std::bad_alloc&) {
            return failed(TkPPDUpdatingNoMemory, TkPPDUpdating_meaning(TkPPDUpdatingNoMemory));
        } catch (const std::out_of_range& error) {
            return failed(TkPPDUpdatingBrokenAttribute, error.what());
        } catch (const std::exception& error) {
            return failed(TkPPDUpdatingInternalError, error.what());
        } catch (...) {
            return failed(TkPPDUpdatingInternalError,
                          TkPPDUpdating_meaning(TkPPDUpdatingInternalError));
        }
    }

    TkPPDUpdatingResult failed(TkPPDUpdatingResult result, const char* message) noexcept {
        setMessage(message);
        return result;
    }

    /// Takes no memory: it may be that there is none. Longer ones end with what there is room for.
    void setMessage(const char* message) noexcept;

    std::shared_ptr<const TkPPDUpdating::PPDModelCore> core_;
    std::shared_ptr<const TkPPDUpdating::DeviceStatusSchemes> schemes_;
    std::set<std::string, std::less<>> leftOut_;
    std::vector<std::unique_ptr<TkPPDUpdating::OwnUpdaterClass>> ownClasses_;
    std::array<char, 1024> message_{};
    std::string note_;
    std::atomic<bool> isAtWork_ = false;
};
