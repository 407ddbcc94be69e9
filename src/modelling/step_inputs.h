// SPDX-License-Identifier: MIT
// The grids of the output folder that a step reads.
#pragma once

#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/products.h"
#include "settings/run_settings.h"

namespace velmora {

struct StepInputs {
    // The grids of one maker that a step reads.
    struct Source {
        std::string maker;
        std::vector<std::string> grids;
    };
    // A grid that is read under another name than the one under which it was made.
    struct Copy {
        std::string made;
        std::string read;
        bool operator==(const Copy&) const = default;
    };
    std::vector<Source> sources;
    std::vector<Copy> copies;
};

// Those of the step that makes a product ("cropet", "nir" or "irr"; others read none). Throws
// PlatformError for no such step.
StepInputs inputsOf(const RunSettings& settings, const std::string& step);

// The product's grids that are read under another name, those of the settings' period.
std::vector<StepInputs::Copy> copiesOf(const Product& product, const RunSettings& settings);

// The names under which the step reads them, each once.
std::vector<std::string> namesReadBy(const RunSettings& settings, const std::string& step);

// What passedOverTexts says of the step's inputs. A missing folder, or a grid that cannot be read,
// says nothing: the step says so itself.
std::vector<std::string> passedOverInputs(IPlatform& platform, const RunSettings& settings,
                                          const std::string& step);

}  // namespace velmora
