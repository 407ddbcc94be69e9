// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "gis/application.h"

namespace velmora::test {

// Shows no form, but lets a test use it as its user.
class FakeDialogs : public IDialogs {
  public:
    void showModal(Form& form) override {
        ++modal;
        if (driver) driver(form);
    }
    void show(Form& form) override {
        ++modeless;
        if (driver) driver(form);
    }
    std::function<void(Form&)> driver;
    int modal = 0;
    int modeless = 0;
};

}  // namespace velmora::test
