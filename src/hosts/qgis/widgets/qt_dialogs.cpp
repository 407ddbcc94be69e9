// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/qt_dialogs.h"

#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/qt_prompts.h"

namespace velmora::qt {

QtDialogs::~QtDialogs() {
    for (const auto& window : modeless_) delete window.data();
}

void QtDialogs::showModal(Form& form) {
    FormWindow window(form, prompts_, windowInFront(mainWindow_));
    showAccountIn(window, account_);
    window.exec();
    if (form.isOpen()) form.close();
}

void QtDialogs::show(Form& form) {
    const QPointer<FormWindow> window = new FormWindow(form, prompts_, mainWindow_);
    modeless_.push_back(window);
    // The form may end as soon as it is closed, so the window lets go of it at once. It may be
    // closed from inside one of its own buttons, so it is deleted a little later.
    form.hostClose = [window] {
        if (!window) return;
        window->hide();
        window->leave();
        window->deleteLater();
    };
    window->show();
    window->raise();
    paintNow();
}

void QtDialogs::raiseShown() {
    for (const auto& window : modeless_) {
        if (!window || !window->isVisible()) continue;
        window->raise();
        window->activateWindow();
    }
}

}  // namespace velmora::qt
