// SPDX-License-Identifier: MIT
#include "refet/cell_table.h"

#include <limits>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora {

namespace {

constexpr std::array<const char*, kCellFields> kNames = {
    "Latitude", "Elevation", "TM", "TN", "TD", "TA", "GG", "SA", "SR", "WS", "RefET"};

constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

class CellRecordset : public IRecordset {
  public:
    explicit CellRecordset(CellTable& table) : table_(table) {}
    int fieldCount() const override { return kCellFields; }
    std::string fieldName(int position) const override {
        return kNames.at(static_cast<std::size_t>(position));
    }
    bool eof() const override { return at_ >= table_.rowCount(); }
    void moveFirst() override { at_ = 0; }
    void moveNext() override {
        if (!eof()) ++at_;
    }
    FieldValue value(const std::string& field) const override {
        const auto values = table_.values(find(field));
        requireRecord();
        if (values.empty() || values[at_] != values[at_]) return {};
        return values[at_];
    }
    void setValue(const std::string& field, const FieldValue& value) override {
        requireRecord();
        const auto* number = std::get_if<double>(&value);
        table_.writable(find(field))[at_] = number ? *number : kNull;
    }
    void addNew() override { throw PlatformError("The records of GGG are created all at once"); }
    void update() override {}

  private:
    static CellField find(const std::string& field) {
        for (std::size_t i = 0; i < kNames.size(); ++i) {
            if (sameIgnoringCase(kNames[i], field)) return static_cast<CellField>(i);
        }
        throw PlatformError("The table GGG has no field " + field);
    }
    void requireRecord() const {
        if (eof()) throw PlatformError("Either BOF or EOF is true: there is no current record");
    }

    CellTable& table_;
    std::size_t at_ = 0;
};

}  // namespace

const char* cellFieldName(CellField field) { return kNames[static_cast<std::size_t>(field)]; }

void CellTable::createRecords(std::size_t records) {
    records_ = records;
    for (auto& field : fields_) field.clear();
}

std::span<const double> CellTable::column(int position) const {
    return fields_.at(static_cast<std::size_t>(position));
}

std::span<const double> CellTable::values(CellField field) const {
    return fields_[static_cast<std::size_t>(field)];
}

std::span<double> CellTable::writable(CellField field) {
    auto& values = storage(field);
    if (values.size() != records_) values.assign(records_, kNull);
    return values;
}

std::unique_ptr<IRecordset> CellTable::records() { return std::make_unique<CellRecordset>(*this); }

}  // namespace velmora
