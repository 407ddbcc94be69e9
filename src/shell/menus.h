// SPDX-License-Identifier: MIT
// The toolbar with its one item, the root menu, and the menus with the commands.
#pragma once

#include "shell/com_object.h"
#include "shell/interfaces.h"

namespace velmora {

class clsToolBar_Zav : public ComObject<IToolBarDef> {
  public:
    std::int32_t ItemCount() override { return 1; }
    void GetItemInfo(std::int32_t position, IItemDef& item) override;
    std::string Name() override { return "Zav Toolbar"; }
    std::string Caption() override { return "Velmora:  Water Use Estimation"; }
};

class clsMenu_Zav_IR : public ComObject<IMenuDef, IRootLevelMenu> {
  public:
    std::int32_t ItemCount() override { return 4; }
    void GetItemInfo(std::int32_t position, IItemDef& item) override;
    std::string Name() override { return "Irrigation Water Use Estimation"; }
    std::string Caption() override { return "Irrigation Water Use Estimation"; }
};

class clsMenu_Zav_IR_ET : public ComObject<IMenuDef> {
  public:
    std::int32_t ItemCount() override { return 3; }
    void GetItemInfo(std::int32_t position, IItemDef& item) override;
    std::string Name() override { return {}; }
    std::string Caption() override { return "Evapotranspiration Estimation"; }
};

class clsMenu_Zav_IR_IRR : public ComObject<IMenuDef> {
  public:
    std::int32_t ItemCount() override { return 3; }
    void GetItemInfo(std::int32_t position, IItemDef& item) override;
    std::string Name() override { return {}; }
    std::string Caption() override { return "Crop Irrigation Water Requirement"; }
};

}  // namespace velmora
