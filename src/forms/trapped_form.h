// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "forms/form.h"
#include "gis/application.h"
#include "gis/error_trap.h"

namespace velmora {

// A form whose handlers show their failures.
class TrappedForm : public Form {
  public:
    // Whether the last thing that the user asked for has been refused or has failed.
    bool failed() const { return failed_; }

  protected:
    // The application must outlive the form.
    TrappedForm(IApplication& application, std::string formName, std::string formTitle)
        : Form(std::move(formName), std::move(formTitle)), application_(application) {}

    IApplication& application() const { return application_; }
    IPlatform& platform() const { return application_.platform(); }
    IPrompts& prompts() const { return application_.prompts(); }

    // Does what the user asks for; shows what a failure says. Here cancelled work ends.
    void attempt(const std::function<void()>& body) {
        failed_ = false;
        try {
            if (!trapped(prompts(), body)) fail();
        } catch (const Cancelled&) {
            fail();
            application_.noteOutcome(StepOutcome::cancelled);
        }
    }
    void fail() { failed_ = true; }
    // A refusal or failure that has a text of its own.
    void fail(const std::string& message) {
        fail();
        prompts().failure(message);
    }

  private:
    IApplication& application_;
    bool failed_ = false;
};

}  // namespace velmora
