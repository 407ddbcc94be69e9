// SPDX-License-Identifier: MIT
// A dialog without a toolkit: named controls, a title, which control has the focus, open or closed.
#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"

namespace velmora {

class Form {
  public:
    Form(std::string formName, std::string formTitle)
        : name_(std::move(formName)), title_(std::move(formTitle)) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    const std::string& title() const { return title_; }
    // In the order in which the form declares them.
    const std::vector<Control*>& controls() const { return controls_; }
    Control* find(const std::string& controlName) const;  // nullptr when there is none

    // The named control as its kind. Throws PlatformError when the form has no such control.
    template <class Kind>
    Kind& control(const std::string& controlName) const {
        if (auto* found = dynamic_cast<Kind*>(find(controlName))) return *found;
        throwMissing(controlName);
    }

    int page() const { return page_; }  // the tab page shown, counted from 0
    void showPage(int page);
    const Control* focused() const { return focused_; }
    void setFocus(Control& control);

    bool isOpen() const { return open_; }
    // While busy, the host shows the hourglass.
    bool busy() const { return busy_; }
    virtual void load() { open_ = true; }  // the form is about to be shown
    void close();
    Handler hostBusy;   // busy() has changed
    Handler hostFocus;  // focused() has changed
    Handler hostPage;   // page() has changed
    Handler onClosing;  // the form is about to be closed
    Handler hostClose;  // the host takes its window away

  protected:
    void setBusy(bool busy);

  private:
    friend class Control;  // which joins its form
    [[noreturn]] void throwMissing(const std::string& controlName) const;

    std::string name_;
    std::string title_;
    std::vector<Control*> controls_;
    const Control* focused_ = nullptr;
    int page_ = 0;
    bool open_ = false;
    bool busy_ = false;
};

}  // namespace velmora
