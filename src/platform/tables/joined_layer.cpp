// SPDX-License-Identifier: MIT
#include "platform/tables/joined_layer.h"

#include <limits>
#include <numeric>
#include <unordered_map>

#include "gis/errors.h"
#include "gis/expression.h"
#include "gis/text.h"

namespace velmora::platform {

namespace {

void requireField(const ITable& table, const std::string& field) {
    if (table.fieldIndex(field) >= 0) return;
    std::vector<std::string> names;
    for (const Field& f : table.fields()) names.push_back(f.name);
    throw PlatformError("The table " + table.path() + " has no field " + field +
                            " (its fields: " + joinedNames(names) + ")",
                        {.file = table.path(), .field = field});
}

// The numbers of a field in the given records; not-a-number for null.
std::vector<double> numbers(const IJoinedLayer& layer, const std::vector<std::size_t>& records,
                            const std::string& field) {
    std::vector<double> values;
    values.reserve(records.size());
    for (const std::size_t record : records) {
        const FieldValue value = layer.value(record, field);
        const auto* number = std::get_if<double>(&value);
        if (!number && !isNull(value)) {
            throw PlatformError("The field " + field + " holds text (\"" +
                                    std::get<std::string>(value) + "\" in record " +
                                    std::to_string(record + 1) + ") where a number is needed",
                                {.field = field, .record = record + 1});
        }
        values.push_back(number ? *number : std::numeric_limits<double>::quiet_NaN());
    }
    return values;
}

std::vector<double> evaluated(const IJoinedLayer& layer, const std::vector<std::size_t>& records,
                              const std::string& text) {
    const Expression expression(text);
    std::vector<std::vector<double>> columns;
    std::vector<const double*> operands;
    for (const std::string& name : expression.names()) {
        columns.push_back(numbers(layer, records, name));
    }
    for (const auto& column : columns) operands.push_back(column.data());
    std::vector<double> results(records.size());
    expression.evaluate(operands, records.size(), results.data());
    return results;
}

// Selects by evaluating the clause for every record.
class SelectableLayer : public IJoinedLayer {
  public:
    std::vector<std::size_t> select(const std::string& whereClause) const override {
        std::vector<std::size_t> all(layer()->recordCount());
        std::iota(all.begin(), all.end(), 0);
        const std::vector<double> holds = evaluated(*this, all, whereClause);
        std::erase_if(all, [&](std::size_t r) { return !(holds[r] != 0) || holds[r] != holds[r]; });
        return all;
    }
};

class UnjoinedLayer : public SelectableLayer {
  public:
    explicit UnjoinedLayer(std::shared_ptr<IFeatureClass> layer) : layer_(std::move(layer)) {}
    std::shared_ptr<IFeatureClass> layer() const override { return layer_; }
    std::size_t matchedRecords() const override { return 0; }
    bool hasField(const std::string& field) const override {
        return layer_->fieldIndex(field) >= 0;
    }
    FieldValue value(std::size_t record, const std::string& field) const override {
        return layer_->value(record, field);
    }

  private:
    std::shared_ptr<IFeatureClass> layer_;
};

class JoinedLayer : public SelectableLayer {
  public:
    explicit JoinedLayer(const MemoryRelationship& relationship)
        : layer_(relationship.destination), table_(relationship.origin) {
        requireField(*layer_, relationship.destinationKey);
        requireField(*table_, relationship.originKey);
        std::unordered_map<std::string, std::size_t> byKey;
        for (std::size_t r = 0; r < table_->recordCount(); ++r) {
            const std::string key = keyText(table_->value(r, relationship.originKey));
            if (!key.empty()) byKey.emplace(key, r);
        }
        for (std::size_t r = 0; r < layer_->recordCount(); ++r) {
            const auto found = byKey.find(keyText(layer_->value(r, relationship.destinationKey)));
            if (found == byKey.end()) {
                matches_.emplace_back();
            } else {
                matches_.emplace_back(found->second);
                ++matched_;
            }
        }
    }

    std::shared_ptr<IFeatureClass> layer() const override { return layer_; }
    std::size_t matchedRecords() const override { return matched_; }

    bool hasField(const std::string& qualifiedField) const override {
        const auto [table, field] = split(qualifiedField);
        return table && table->fieldIndex(field) >= 0;
    }

    FieldValue value(std::size_t record, const std::string& qualifiedField) const override {
        const auto [table, field] = split(qualifiedField);
        if (!table) {
            throw PlatformError("The field " + qualifiedField + " belongs neither to " +
                                    layer_->name() + " nor to " + table_->name(),
                                {.field = qualifiedField});
        }
        if (table == layer_.get()) return layer_->value(record, field);
        const auto& match = matches_.at(record);
        requireField(*table_, field);
        return match ? table_->value(*match, field) : FieldValue{};
    }

  private:
    // "table.FIELD" as the table and the field; no table when the name is neither's. Where layer
    // and table share a name, the layer's fields come first.
    std::pair<const ITable*, std::string> split(const std::string& qualified) const {
        for (const ITable* table :
             {static_cast<const ITable*>(layer_.get()), static_cast<const ITable*>(table_.get())}) {
            const std::string prefix = table->name() + ".";
            if (qualified.size() > prefix.size() &&
                sameIgnoringCase(std::string_view(qualified).substr(0, prefix.size()), prefix)) {
                const std::string field = qualified.substr(prefix.size());
                if (table == table_.get() || table->fieldIndex(field) >= 0 ||
                    !sameIgnoringCase(layer_->name(), table_->name())) {
                    return {table, field};
                }
            }
        }
        return {nullptr, {}};
    }

    std::shared_ptr<IFeatureClass> layer_;
    std::shared_ptr<ITable> table_;
    std::vector<std::optional<std::size_t>> matches_;
    std::size_t matched_ = 0;
};

}  // namespace

std::unique_ptr<IJoinedLayer> MemoryRelationshipClassFactory::open(
    const MemoryRelationship& relationship) {
    return std::make_unique<JoinedLayer>(relationship);
}

std::unique_ptr<IJoinedLayer> MemoryRelationshipClassFactory::openUnjoined(
    std::shared_ptr<IFeatureClass> layer) {
    return std::make_unique<UnjoinedLayer>(std::move(layer));
}

std::vector<std::optional<double>> Calculator::calculate(const IJoinedLayer& layer,
                                                         const std::vector<std::size_t>& records,
                                                         const std::string& expression) {
    std::vector<std::optional<double>> values;
    for (const double value : evaluated(layer, records, expression)) {
        values.push_back(value != value ? std::nullopt : std::optional(value));
    }
    return values;
}

}  // namespace velmora::platform
