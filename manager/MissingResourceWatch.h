#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// Data of the library's own that an updater wanted and could not read: one phrase that names it.
class TKPPDUPDATING_PUBLIC MissingResourceError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Learns, from its making to the end of its life, whether an updater that ran on this thread could
/// not read data of the library's own.
///
/// The operations of the updaters go on without such data and give a text that lacks what stands
/// there, which nobody sees in it. Who writes the text into a file wants to know. The innermost
/// watch of a thread learns.
class TKPPDUPDATING_PUBLIC MissingResourceWatch {
  public:
    MissingResourceWatch();
    MissingResourceWatch(const MissingResourceWatch&) = delete;
    MissingResourceWatch& operator=(const MissingResourceWatch&) = delete;
    ~MissingResourceWatch();

    /// Raises `MissingResourceError` with the first that was told of, if one was.
    void check() const;

    /// For updaters: tells the watch of this thread, if there is one. `what` is one phrase.
    static void tell(const std::string& what);

    /// The result of the operation, if it has one. Raises `MissingResourceError` when data was
    /// missing to it.
    template <typename Operation>
    static auto resultOf(const Operation& operation) {
        const MissingResourceWatch watch;
        if constexpr (std::is_void_v<decltype(operation())>) {
            operation();
            watch.check();
        } else {
            auto result = operation();
            watch.check();
            return result;
        }
    }

  private:
    MissingResourceWatch* outer_;
    std::optional<std::string> missing_;
};

}  // namespace TkPPDUpdating
