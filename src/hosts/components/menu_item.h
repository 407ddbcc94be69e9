// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "shell/interfaces.h"

namespace velmora {

// An item of a toolbar or menu as the extension declares it, for a host to draw.
class MenuItem : public IItemDef {
  public:
    void putID(const std::string& progId) override { id = progId; }
    void putGroup(bool beginsGroup) override { group = beginsGroup; }
    // A menu of its own, else a command.
    bool isMenu() const { return id.find("clsMenu") != std::string::npos; }

    std::string id;
    bool group = false;
};

}  // namespace velmora
