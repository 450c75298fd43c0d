#pragma once

#include <clocale>

namespace TkPPDUpdating {

/// Puts the calling thread into the C locale until the end of the scope, so that what the C library
/// reads and compares does not depend on the application's locale (POSIX: uselocale). Other threads
/// keep theirs.
class CLocaleScope {
  public:
    CLocaleScope() : before_(::uselocale(cLocale())) {}
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;
    ~CLocaleScope() { ::uselocale(before_); }

  private:
    static locale_t cLocale() {
        static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
        return locale;
    }

    locale_t before_;
};

}  // namespace TkPPDUpdating
