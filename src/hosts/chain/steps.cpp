// SPDX-License-Identifier: MIT
#include "hosts/chain/steps.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "gis/errors.h"
#include "hosts/components/loaded_extension.h"
#include "shell/interfaces.h"

namespace velmora {

namespace {

struct Step {
    std::string_view name;
    std::string_view progId;
};

constexpr std::array kSteps = {Step{"refet", "Tarnwick.clsET_ReferenceET"},
                               Step{"kc", "Tarnwick.clsET_CropCoefficient"},
                               Step{"cropet", "Tarnwick.clsET_CropET"},
                               Step{"ppt", "Tarnwick.clsPPT"},
                               Step{"nir", "Tarnwick.clsIR_NIR"},
                               Step{"eff", "Tarnwick.clsIR_EFF"},
                               Step{"irr", "Tarnwick.clsIR_IRR"}};

}  // namespace

std::vector<std::string> stepNames() { return stepsFrom({}); }

std::vector<std::string> stepsFrom(const std::string& first) {
    const auto* step =
        first.empty() ? kSteps.begin() : std::ranges::find(kSteps, first, &Step::name);
    std::vector<std::string> names;
    for (; step != kSteps.end(); ++step) names.emplace_back(step->name);
    return names;
}

std::string progIdOf(const std::string& step) {
    const auto* const found = std::ranges::find(kSteps, step, &Step::name);
    if (found == kSteps.end()) throw PlatformError("There is no step " + step);
    return std::string(found->progId);
}

std::string stepOfProgId(const std::string& progId) {
    const auto* const found = std::ranges::find(kSteps, progId, &Step::progId);
    return found == kSteps.end() ? std::string() : std::string(found->name);
}

void clickStep(IApplication& application, const std::string& step) {
    const LoadedExtension extension;
    const auto command = extension.create<ICommand>(progIdOf(step));
    command->OnCreate(&application);
    command->OnClick();
}

}  // namespace velmora
