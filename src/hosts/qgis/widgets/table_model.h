// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <vector>

#include "forms/controls.h"

namespace velmora::qt {

// The cells of a data grid for a table view. A grid that takes edits has one more row, which begins
// a new record.
class TableModel : public QAbstractTableModel {
  public:
    // What the user types into a cell: row, column, text. The grid must outlive the model.
    using Edit = std::function<void(std::size_t, std::size_t, const std::string&)>;
    TableModel(const DataGrid& grid, Edit edit, QObject* parent);

    void refresh();  // the grid has changed

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    bool editable() const { return static_cast<bool>(grid_.onEdit); }
    const DataGrid& grid_;
    Edit edit_;
    // What the view has been told of; the grid may be ahead while a cell is being edited.
    QStringList columns_;
    std::vector<QStringList> rows_;
    bool editing_ = false;
    QTimer edited_;  // fires when the view's editor is done with its cell
};

}  // namespace velmora::qt
