#include "manager/MissingResourceWatch.h"

namespace TkPPDUpdating {

namespace {

thread_local MissingResourceWatch* theWatch =
    nullptr;  // NOLINT(*-avoid-non-const-global-variables)

}  // namespace

MissingResourceWatch::MissingResourceWatch() : outer_(theWatch) {
    theWatch = this;
}

MissingResourceWatch::~MissingResourceWatch() {
    theWatch = outer_;
}

void MissingResourceWatch::check() const {
    if (missing_) {
        throw MissingResourceError(*missing_);
    }
}

void MissingResourceWatch::tell(const std::string& what) {
    if (theWatch && !theWatch->missing_) {
        theWatch->missing_ = what;
    }
}

}  // namespace TkPPDUpdating
