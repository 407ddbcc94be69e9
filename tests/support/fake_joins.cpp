// SPDX-License-Identifier: MIT
#include "tests/support/fake_joins.h"

#include <cmath>
#include <limits>
#include <utility>

#include "gis/errors.h"
#include "gis/expression.h"
#include "gis/text.h"

namespace velmora::test {

namespace {

// The expression's value for each of the records; not-a-number where an operand has none.
std::vector<double> evaluated(const IJoinedLayer& layer, const std::vector<std::size_t>& records,
                              const std::string& text) {
    const Expression expression(text);
    std::vector<std::vector<double>> columns;
    std::vector<const double*> operands;
    for (const std::string& name : expression.names()) {
        columns.emplace_back();
        for (const std::size_t record : records) {
            const FieldValue value = layer.value(record, name);
            const auto* number = std::get_if<double>(&value);
            columns.back().push_back(number ? *number : std::numeric_limits<double>::quiet_NaN());
        }
    }
    for (const auto& column : columns) operands.push_back(column.data());
    std::vector<double> values(records.size());
    expression.evaluate(operands, values.size(), values.data());
    return values;
}

// A layer with a table joined to it, or with none.
class FakeJoinedLayer : public IJoinedLayer {
  public:
    explicit FakeJoinedLayer(std::shared_ptr<IFeatureClass> layer) : layer_(std::move(layer)) {}
    explicit FakeJoinedLayer(const MemoryRelationship& r)
        : layer_(r.destination), table_(r.origin) {
        for (std::size_t i = 0; i < layer_->recordCount(); ++i) {
            matches_.push_back(matchOf(keyText(layer_->value(i, r.destinationKey)), r.originKey));
        }
    }

    std::shared_ptr<IFeatureClass> layer() const override { return layer_; }
    std::size_t matchedRecords() const override {
        std::size_t matched = 0;
        for (const auto& match : matches_) matched += match ? 1 : 0;
        return matched;
    }
    bool hasField(const std::string& qualified) const override {
        return fieldOf(*layer_, qualified) || (table_ && fieldOf(*table_, qualified));
    }
    FieldValue value(std::size_t record, const std::string& qualified) const override {
        if (const auto field = fieldOf(*layer_, qualified)) return layer_->value(record, *field);
        const auto field = table_ ? fieldOf(*table_, qualified) : std::nullopt;
        if (!field) throw PlatformError("There is no field " + qualified);
        const auto& match = matches_.at(record);
        return match ? table_->value(*match, *field) : FieldValue();
    }
    std::vector<std::size_t> select(const std::string& whereClause) const override {
        std::vector<std::size_t> all(layer_->recordCount());
        for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
        const std::vector<double> holds = evaluated(*this, all, whereClause);
        std::erase_if(all, [&](std::size_t r) { return std::isnan(holds[r]) || holds[r] == 0; });
        return all;
    }

  private:
    std::optional<std::size_t> matchOf(const std::string& key, const std::string& originKey) const {
        for (std::size_t r = 0; r < table_->recordCount() && !key.empty(); ++r) {
            if (keyText(table_->value(r, originKey)) == key) return r;
        }
        return std::nullopt;
    }
    // The field that "table.FIELD" names, or FIELD where nothing is joined.
    std::optional<std::string> fieldOf(const ITable& table, const std::string& qualified) const {
        const std::string prefix = table_ ? table.name() + "." : std::string();
        if (!sameIgnoringCase(qualified.substr(0, prefix.size()), prefix)) return std::nullopt;
        const std::string field = qualified.substr(prefix.size());
        return table.fieldIndex(field) >= 0 ? std::optional(field) : std::nullopt;
    }

    std::shared_ptr<IFeatureClass> layer_;
    std::shared_ptr<ITable> table_;
    std::vector<std::optional<std::size_t>> matches_;  // records of the table
};

}  // namespace

std::unique_ptr<IJoinedLayer> FakeMemoryRelationships::open(
    const MemoryRelationship& relationship) {
    return std::make_unique<FakeJoinedLayer>(relationship);
}

std::unique_ptr<IJoinedLayer> FakeMemoryRelationships::openUnjoined(
    std::shared_ptr<IFeatureClass> layer) {
    return std::make_unique<FakeJoinedLayer>(std::move(layer));
}

std::vector<std::optional<double>> FakeCalculator::calculate(
    const IJoinedLayer& layer, const std::vector<std::size_t>& records,
    const std::string& expression) {
    std::vector<std::optional<double>> values;
    for (const double value : evaluated(layer, records, expression)) {
        values.push_back(std::isnan(value) ? std::nullopt : std::optional(value));
    }
    return values;
}

}  // namespace velmora::test
