// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/table_model.h"

#include <cmath>

#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

QStringList textsOf(const DataGrid& grid, std::size_t row) {
    QStringList texts;
    for (std::size_t c = 0; c < grid.columns().size(); ++c) texts << toQt(grid.cell(row, c));
    return texts;
}

// Numbers with many places are shown with four; the tool tip and the editor have all of them.
QString shortNumber(const QString& text) {
    if (text.size() < 9 || !text.contains('.')) return text;
    bool number = false;
    const double value = text.toDouble(&number);
    if (!number) return text;
    return QString::number(value, std::abs(value) < 0.01 ? 'g' : 'f', 4);
}

}  // namespace

TableModel::TableModel(const DataGrid& grid, Edit edit, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), edit_(std::move(edit)) {
    edited_.setSingleShot(true);
    connect(&edited_, &QTimer::timeout, this, [this] {
        editing_ = false;
        refresh();
    });
    refresh();
}

// Changed cells alone leave the view where it is; other columns or rows make it begin anew.
void TableModel::refresh() {
    if (editing_) return;  // setData comes back to it
    QStringList columns;
    for (const std::string& column : grid_.columns()) columns << toQt(column);
    std::vector<QStringList> rows;
    for (std::size_t r = 0; r < grid_.rowCount(); ++r) rows.push_back(textsOf(grid_, r));
    if (columns == columns_ && rows.size() == rows_.size()) {
        rows_ = std::move(rows);
        if (rowCount() > 0 && columnCount() > 0) {
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        }
        return;
    }
    beginResetModel();
    columns_ = std::move(columns);
    rows_ = std::move(rows);
    endResetModel();
}

int TableModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return static_cast<int>(rows_.size()) + (editable() && !columns_.isEmpty() ? 1 : 0);
}

int TableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant TableModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (row >= rows_.size() || index.column() >= rows_[row].size()) return {};
    const QString& text = rows_[row].at(index.column());
    if (role == Qt::DisplayRole) return shortNumber(text);
    if (role == Qt::EditRole || role == Qt::ToolTipRole) return text;
    if (role == Qt::TextAlignmentRole) {
        bool number = false;
        text.toDouble(&number);
        return static_cast<int>(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    }
    return {};
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal) return columns_.value(section);
    if (section == static_cast<int>(rows_.size())) return "*";
    return section + 1;
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags shown = QAbstractTableModel::flags(index);
    return editable() ? shown | Qt::ItemIsEditable : shown;
}

// The form decides what becomes of the text; the view then shows what the form made of it. It is
// told only when its editor is done with the cell.
bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !index.isValid()) return false;
    const auto row = static_cast<std::size_t>(index.row());
    const QString text = value.toString();
    if (row < rows_.size() && rows_[row].value(index.column()) == text) return true;
    if (row == rows_.size() && text.isEmpty()) return true;
    editing_ = true;
    edit_(row, static_cast<std::size_t>(index.column()), text.toStdString());
    edited_.start(0);
    return true;
}

}  // namespace velmora::qt
