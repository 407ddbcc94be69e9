// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "gis/errors.h"

namespace velmora {

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
        showFailure(text, title);
        showPlace(placeOfHandled());
    }
    // Why something failed, where the step's own texts do not say it or no text is shown for it.
    // No box; the click counts as failed.
    //
    // A handler that shows what it caught, shows with it where that failed (errors.h).
    void reason(const std::string& text) {
        ++failures_;
        showReason(text);
        showPlace(placeOfHandled());
    }
    // What a user wants to know though nothing failed, told once. No box.
    void notice(const std::string& text) { showNotice(text); }

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
    std::size_t failures_ = 0;
};

}  // namespace velmora
