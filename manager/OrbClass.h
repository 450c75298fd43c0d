#pragma once

#include <memory>
#include <string_view>
#include <type_traits>

#include "manager/ITkPPDUpdater.h"
#include "text/TkPPDUpdatingPublic.h"

namespace TkPPDUpdating {

/// A class as an object: it can be registered with the manager, compared by identity, named, and
/// asked for instances. There is one for each C++ class, made by `OrbClassOf<Class>()`; it lives as
/// long as the process.
class TKPPDUPDATING_PUBLIC OrbClass {
  public:
    using Maker = std::unique_ptr<ITkPPDUpdater> (*)();  ///< Makes an instance.

    /// `maker` is null for a class that does not fulfil `ITkPPDUpdater`.
    constexpr OrbClass(std::string_view name, Maker maker) : name_(name), maker_(maker) {}

    using MakerWithContext = std::unique_ptr<ITkPPDUpdater> (*)(const void* context);  ///< The same

    /// A class that is made while the program runs, of a description at `context`: both outlive
    /// every manager that the class is registered with. `maker` is not null.
    constexpr OrbClass(std::string_view name, MakerWithContext maker, const void* context)
        : name_(name), makerWithContext_(maker), context_(context) {}
    OrbClass(const OrbClass&) = delete;
    OrbClass& operator=(const OrbClass&) = delete;
    ~OrbClass() = default;

    std::string_view name() const { return name_; }  ///< As registered.

    /// Whether the class declares that it fulfils the updater contract, by deriving from it.
    bool conformsToITkPPDUpdater() const { return maker_ || makerWithContext_; }

    /// A fresh instance made with the plain constructor; null when the class does not conform.
    std::unique_ptr<ITkPPDUpdater> newInstance() const {
        return makerWithContext_ ? makerWithContext_(context_) : maker_ ? maker_() : nullptr;
    }

  private:
    std::string_view name_;
    Maker maker_ = nullptr;
    MakerWithContext makerWithContext_ = nullptr;
    const void* context_ = nullptr;
};

/// The class object of `Class`, which names itself by a constant `kClassName`:
/// `static constexpr std::string_view kClassName = "MyUpdater";`
template <typename Class>
const OrbClass& OrbClassOf() {
    static constexpr OrbClass::Maker kMaker = [] {
        if constexpr (std::is_base_of_v<ITkPPDUpdater, Class>) {
            return OrbClass::Maker(
                []() -> std::unique_ptr<ITkPPDUpdater> { return std::make_unique<Class>(); });
        } else {
            return OrbClass::Maker(nullptr);
        }
    }();
    static const OrbClass theClass(Class::kClassName, kMaker);
    return theClass;
}

}  // namespace TkPPDUpdating
