// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

#include "gis/application.h"
#include "hosts/qgis/widgets/account_page.h"
#include "hosts/qgis/widgets/form_window.h"

namespace velmora::qt {

// Shows forms as windows over the main window.
class QtDialogs : public IDialogs {
  public:
    QtDialogs(QWidget* mainWindow, IPrompts& prompts)
        : mainWindow_(mainWindow), prompts_(prompts) {}
    ~QtDialogs() override;
    QtDialogs(const QtDialogs&) = delete;
    QtDialogs& operator=(const QtDialogs&) = delete;

    // Where the window of the zone tables gets the water account from.
    void setAccount(AccountSource account) { account_ = std::move(account); }

    void showModal(Form& form) override;
    // The window stays until the form is closed.
    void show(Form& form) override;
    // Brings the windows that stay to the front, where the keyboard reaches them.
    void raiseShown();

  private:
    QWidget* mainWindow_;
    IPrompts& prompts_;
    AccountSource account_;
    std::vector<QPointer<FormWindow>> modeless_;
};

}  // namespace velmora::qt
