// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "gis/errors.h"

namespace velmora {

// Hears what is told beside messages; for records.
class IPromptsListener {
  public:
    virtual ~IPromptsListener() = default;
    virtual void heard(const std::string& text) = 0;
};

// What a step tells its user. The desktop shows messages, failures and questions in modal boxes;
// the headless host prints them.
class IPrompts {
  public:
    virtual ~IPrompts() = default;
    virtual void message(const std::string& text, const std::string& title) = 0;  // OK only
    void message(const std::string& text) { message(text, {}); }
    virtual bool confirm(const std::string& question, const std::string& title) = 0;  // Yes, No

    // A message that says what failed. The click that shows it counts as failed, also where the
    // step goes on.
    void failure(const std::string& text, const std::string& title = {}) {
        ++failures_;
        tellListener(text);
        showFailure(text, title);
        showPlace(placeOfHandled());
    }
    // Why something failed, where the step's own texts do not say it or no text is shown for it.
    // No box; the click counts as failed.
    //
    // A handler that shows what it caught, shows with it where that failed (errors.h).
    void reason(const std::string& text) {
        ++failures_;
        tellListener(text);
        showReason(text);
        showPlace(placeOfHandled());
    }
    // What a user wants to know though nothing failed, told once. No box.
    void notice(const std::string& text) {
        tellListener(text);
        showNotice(text);
    }

    // Who hears failures, reasons and notices from now on, nullptr for nobody; who did before.
    IPromptsListener* setListener(IPromptsListener* listener) {
        return std::exchange(listener_, listener);
    }

    // Failures and reasons so far.
    std::size_t failures() const { return failures_; }

  protected:
    virtual void showFailure(const std::string& text, const std::string& title) {
        message(text, title);
    }
    virtual void showReason(const std::string& text) = 0;
    virtual void showNotice(const std::string& text) = 0;
    // Where the failure or reason that has just been shown happened, as far as that is known; for
    // hosts that pass it on.
    virtual void showPlace(const ErrorPlace& /*place*/) {}

  private:
    void tellListener(const std::string& text) {
        if (listener_) listener_->heard(text);
    }

    std::size_t failures_ = 0;
    IPromptsListener* listener_ = nullptr;
};

}  // namespace velmora
