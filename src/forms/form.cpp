// SPDX-License-Identifier: MIT
#include "forms/form.h"

#include <algorithm>

#include "gis/errors.h"

namespace velmora {

Control* Form::find(const std::string& controlName) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [&](const Control* c) { return c->name() == controlName; });
    return found == controls_.end() ? nullptr : *found;
}

void Form::setFocus(Control& control) {
    focused_ = &control;
    control.focus();
    if (hostFocus) hostFocus();
}

void Form::showPage(int page) {
    page_ = page;
    if (hostPage) hostPage();
}

void Form::setBusy(bool busy) {
    busy_ = busy;
    if (hostBusy) hostBusy();
}

void Form::close() {
    if (!open_) return;
    if (onClosing) onClosing();
    open_ = false;
    const Handler takeAway = hostClose;  // the host may let go of the form in it
    if (takeAway) takeAway();
}

void Form::throwMissing(const std::string& controlName) const {
    throw PlatformError("The form " + name_ + " has no such control: " + controlName);
}

}  // namespace velmora
