// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/joins.h"

namespace velmora::test {

// Joins in memory. Where layer and table share a name, it takes the layer's fields alone.
class FakeMemoryRelationships : public IMemoryRelationshipClassFactory {
  public:
    std::unique_ptr<IJoinedLayer> open(const MemoryRelationship& relationship) override;
    std::unique_ptr<IJoinedLayer> openUnjoined(std::shared_ptr<IFeatureClass> layer) override;
};

class FakeCalculator : public ICalculator {
  public:
    std::vector<std::optional<double>> calculate(const IJoinedLayer& layer,
                                                 const std::vector<std::size_t>& records,
                                                 const std::string& expression) override;
};

}  // namespace velmora::test
