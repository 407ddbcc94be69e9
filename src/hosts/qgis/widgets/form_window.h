// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <memory>

#include "hosts/qgis/widgets/form_binder.h"

namespace velmora::qt {

// The window of a form: its widgets come from the .ui file of the form's name. It follows the
// form's focus, page and hourglass, and goes when the form is closed. Closing the window is the
// form's Cancel or Close, and cannot be done while that button is disabled.
class FormWindow : public QDialog {
  public:
    // The form and the prompts must outlive the window. Throws PlatformError for a form without a
    // window of its name.
    FormWindow(Form& form, IPrompts& prompts, QWidget* parent);
    ~FormWindow() override;
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;

    void reject() override;
    // Lets go of the form, which may end before the window from then on.
    void leave();

  private:
    void showFocus();
    void showPage();
    void showBusy();

    Form* form_;
    bool hourglass_ = false;
    std::unique_ptr<FormBinder> binder_;
};

}  // namespace velmora::qt
