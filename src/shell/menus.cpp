// SPDX-License-Identifier: MIT
#include "shell/menus.h"

#include <optional>
#include <span>

namespace velmora {

namespace {

struct MenuItem {
    const char* progId;
    std::optional<bool> group;  // nothing: the host's own value stays
};

void setItem(std::span<const MenuItem> items, std::int32_t position, IItemDef& item) {
    if (position < 0 || position >= static_cast<std::int32_t>(items.size())) return;
    const MenuItem& chosen = items[static_cast<std::size_t>(position)];
    item.putID(chosen.progId);
    if (chosen.group) item.putGroup(*chosen.group);
}

}  // namespace

void clsToolBar_Zav::GetItemInfo(std::int32_t position, IItemDef& item) {
    static const std::array<MenuItem, 1> items = {{{"Tarnwick.clsMenu_Zav_IR", std::nullopt}}};
    setItem(items, position, item);
}

void clsMenu_Zav_IR::GetItemInfo(std::int32_t position, IItemDef& item) {
    static const std::array<MenuItem, 4> items = {{{"Tarnwick.clsSettings", false},
                                                   {"Tarnwick.clsMenu_Zav_IR_ET", true},
                                                   {"Tarnwick.clsPPT", true},
                                                   {"Tarnwick.clsMenu_Zav_IR_IRR", true}}};
    setItem(items, position, item);
}

void clsMenu_Zav_IR_ET::GetItemInfo(std::int32_t position, IItemDef& item) {
    static const std::array<MenuItem, 3> items = {{{"Tarnwick.clsET_ReferenceET", std::nullopt},
                                                   {"Tarnwick.clsET_CropCoefficient", true},
                                                   {"Tarnwick.clsET_CropET", true}}};
    setItem(items, position, item);
}

void clsMenu_Zav_IR_IRR::GetItemInfo(std::int32_t position, IItemDef& item) {
    static const std::array<MenuItem, 3> items = {
        {{"Tarnwick.clsIR_NIR", true}, {"Tarnwick.clsIR_EFF", true}, {"Tarnwick.clsIR_IRR", true}}};
    setItem(items, position, item);
}

}  // namespace velmora
