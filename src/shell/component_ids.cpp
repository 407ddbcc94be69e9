// SPDX-License-Identifier: MIT
#include "shell/component_ids.h"

#include <array>

namespace velmora {

namespace {

constexpr Guid classId(std::uint8_t number) {
    return {0x5C1E9A40, 0x8D36, 0x4B7F, {0xA2, 0xE4, 0x61, 0x0F, 0xB3, 0x9C, 0x57, number}};
}

constexpr std::array kIds = {
    ComponentId{"Tarnwick.clsWaterUseEstimation", classId(1)},
    ComponentId{"Tarnwick.clsToolBar_Zav", classId(2)},
    ComponentId{"Tarnwick.clsMenu_Zav_IR", classId(3)},
    ComponentId{"Tarnwick.clsMenu_Zav_IR_ET", classId(4)},
    ComponentId{"Tarnwick.clsMenu_Zav_IR_IRR", classId(5)},
    ComponentId{"Tarnwick.clsSettings", classId(6)},
    ComponentId{"Tarnwick.clsET_ReferenceET", classId(7)},
    ComponentId{"Tarnwick.clsET_CropCoefficient", classId(8)},
    ComponentId{"Tarnwick.clsET_CropET", classId(9)},
    ComponentId{"Tarnwick.clsPPT", classId(10)},
    ComponentId{"Tarnwick.clsIR_NIR", classId(11)},
    ComponentId{"Tarnwick.clsIR_EFF", classId(12)},
    ComponentId{"Tarnwick.clsIR_IRR", classId(13)},
};

}  // namespace

std::span<const ComponentId> componentIds() { return kIds; }

}  // namespace velmora
