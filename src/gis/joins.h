// SPDX-License-Identifier: MIT
// Joins of a table to a layer, selections by where clause and the field calculator.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gis/features.h"

namespace velmora {

// A link between a layer and a table by a key field each. Keys match exactly, case included,
// trailing blanks dropped; the first record of a key wins.
struct MemoryRelationship {
    std::string name;
    std::shared_ptr<ITable> origin;  // the table whose values are joined
    std::string originKey;
    std::shared_ptr<IFeatureClass> destination;  // the layer they are joined to
    std::string destinationKey;
    std::string forwardLabel;
    std::string backwardLabel;
};

// A layer with joined fields, addressed as "layer.FIELD" and "table.FIELD", without regard to ASCII
// case.
class IJoinedLayer {
  public:
    virtual ~IJoinedLayer() = default;
    virtual std::shared_ptr<IFeatureClass> layer() const = 0;
    virtual std::size_t matchedRecords() const = 0;  // layer records that found a key
    virtual bool hasField(const std::string& qualifiedField) const = 0;
    virtual FieldValue value(std::size_t record, const std::string& qualifiedField) const = 0;
    // The layer's records for which the clause holds; null is no value in any comparison. Throws
    // PlatformError with the position of a mistake.
    virtual std::vector<std::size_t> select(const std::string& whereClause) const = 0;
};

class IMemoryRelationshipClassFactory {
  public:
    virtual ~IMemoryRelationshipClassFactory() = default;
    // Throws PlatformError when a key field is missing.
    virtual std::unique_ptr<IJoinedLayer> open(const MemoryRelationship& relationship) = 0;
    // A layer to which nothing is joined; its fields go by their own names.
    virtual std::unique_ptr<IJoinedLayer> openUnjoined(std::shared_ptr<IFeatureClass> layer) = 0;
};

// Field calculation over a joined layer.
class ICalculator {
  public:
    virtual ~ICalculator() = default;
    // The value of the expression ([qualified.field] names) for each record; nothing where an
    // operand is null. Throws PlatformError with the position of a mistake.
    virtual std::vector<std::optional<double>> calculate(const IJoinedLayer& layer,
                                                         const std::vector<std::size_t>& records,
                                                         const std::string& expression) = 0;
};

}  // namespace velmora
