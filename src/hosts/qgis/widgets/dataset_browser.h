// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "gis/browsers.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace velmora::qt {

// What a catalogue shows of one folder: its folders, and the datasets of one kind. An ESRI grid is
// a folder by its files, but a dataset to its user.
class DatasetBrowser : public QDialog {
  public:
    DatasetBrowser(DatasetKind kind, const QString& title, const QString& startFolder,
                   const QString& buttonCaption, QWidget* parent);

    // The full path of the dataset chosen; empty until one is.
    QString chosen() const { return chosen_; }

    // Whether the path is a dataset of the kind.
    static bool isDataset(DatasetKind kind, const QString& path);

  private:
    void showFolder(const QString& path);
    void open(const QString& path);
    void openCurrent();

    DatasetKind kind_;
    QString folder_;
    QString chosen_;
    QLineEdit* look_ = nullptr;
    QListWidget* list_ = nullptr;
    QPushButton* button_ = nullptr;
};

}  // namespace velmora::qt
