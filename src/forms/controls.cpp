// SPDX-License-Identifier: MIT
#include "forms/controls.h"

#include <algorithm>

#include "forms/form.h"
#include "gis/errors.h"

namespace velmora {

Control::Control(Form& form, std::string controlName, std::string initialText)
    : Control(std::move(controlName), std::move(initialText)) {
    form.controls_.push_back(this);
}

void Control::setText(const std::string& text) {
    text_ = text;
    refresh();
}

void Control::setEnabled(bool enabled) {
    enabled_ = enabled;
    refresh();
}

void TextBox::setText(const std::string& text) {
    const bool changed = text != this->text();
    Control::setText(text);
    if (changed && onChange) onChange();
}

void TextBox::enter(const std::string& text) {
    setText(text);
    if (onLeave) onLeave();
}

void ListBox::clear() {
    items_.clear();
    index_ = -1;
    Control::setText({});
}

void ListBox::addItem(const std::string& item) {
    items_.push_back(item);
    refresh();
}

void ListBox::select(int index) {
    if (index < 0 || index >= static_cast<int>(items_.size())) {
        throw PlatformError(name() + " has no entry at position " + std::to_string(index));
    }
    index_ = index;
    Control::setText(items_[static_cast<std::size_t>(index)]);
    if (onClick) onClick();
}

void ListBox::setText(const std::string& text) {
    const auto found = std::find(items_.begin(), items_.end(), text);
    if (found != items_.end()) {
        select(static_cast<int>(found - items_.begin()));
        return;
    }
    index_ = -1;
    Control::setText(text);
}

void MultiSelectList::clear() {
    items_.clear();
    chosen_.clear();
    refresh();
}

void MultiSelectList::addItem(const std::string& item) {
    items_.push_back(item);
    chosen_.push_back(false);
    refresh();
}

void MultiSelectList::choose(std::size_t position, bool chosen) {
    chosen_.at(position) = chosen;
    refresh();
    if (onClick) onClick();
}

std::vector<std::string> MultiSelectList::chosenItems() const {
    std::vector<std::string> chosen;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (chosen_[i]) chosen.push_back(items_[i]);
    }
    return chosen;
}

void ProgressBar::setFraction(double fraction) {
    fraction_ = fraction;
    refresh();
}

void CheckBox::setValue(bool value) {
    value_ = value;
    refresh();
}

void OptionButton::choose() {
    for (OptionButton* other : others_) {
        other->value_ = false;
        other->refresh();
    }
    value_ = true;
    refresh();
    if (onClick) onClick();
}

void OptionButton::clear() {
    value_ = false;
    refresh();
}

void OptionButton::group(const std::vector<OptionButton*>& members) {
    for (OptionButton* member : members) {
        member->others_ = members;
        std::erase(member->others_, member);
    }
}

void DataGrid::show(std::vector<std::string> columns, std::vector<std::vector<std::string>> rows) {
    if (columns != columns_ || current_ >= rows.size()) current_ = 0;
    columns_ = std::move(columns);
    rows_ = std::move(rows);
    refresh();
}

void DataGrid::setCell(std::size_t row, std::size_t column, const std::string& text) {
    rows_.at(row).at(column) = text;
    refresh();
}

void DataGrid::addRow(std::vector<std::string> cells) {
    cells.resize(columns_.size());
    rows_.push_back(std::move(cells));
    refresh();
}

void DataGrid::select(std::size_t row) {
    if (row >= rows_.size()) {
        throw PlatformError(name() + " has no row " + std::to_string(row + 1));
    }
    current_ = row;
    refresh();
    if (onSelect) onSelect();
}

void Chart::show(const std::string& title, std::vector<std::string> labels,
                 std::vector<double> values) {
    labels_ = std::move(labels);
    values_ = std::move(values);
    setText(title);
}

}  // namespace velmora
