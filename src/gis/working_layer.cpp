// SPDX-License-Identifier: MIT
#include "gis/working_layer.h"

#include <utility>

#include "gis/text.h"

namespace velmora {

WorkingLayer::WorkingLayer(std::shared_ptr<IFeatureClass> layer, std::string field)
    : layer_(std::move(layer)),
      field_(std::move(field)),
      fields_(layer_->fields()),
      values_(layer_->recordCount()),
      set_(layer_->recordCount(), false) {
    if (layer_->fieldIndex(field_) < 0) {
        fields_.push_back({field_, FieldType::number, 0, 0});
        return;
    }
    for (std::size_t r = 0; r < values_.size(); ++r) values_[r] = layer_->value(r, field_);
}

FieldValue WorkingLayer::value(std::size_t record, const std::string& field) const {
    return sameIgnoringCase(field, field_) ? values_.at(record) : layer_->value(record, field);
}

void WorkingLayer::setValue(std::size_t record, const FieldValue& value) {
    values_.at(record) = value;
    set_[record] = true;
}

void WorkingLayer::store(IFeatureWorkspaceFactory& features) {
    const auto session = features.edit(layer_);
    session->addNumericField(field_);
    for (std::size_t r = 0; r < values_.size(); ++r) {
        if (set_[r]) session->setValue(r, field_, values_[r]);
    }
    session->save();
}

}  // namespace velmora
