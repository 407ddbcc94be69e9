// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/dataset_browser.h"
#include "platform/platform.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace velmora::qt {

bool DatasetBrowser::isDataset(DatasetKind kind, const QString& path) {
    if (kind == DatasetKind::raster) return platform::isRasterDataset(path.toStdString());
    const QFileInfo file(path);
    return file.isFile() && file.suffix().toLower() == "shp";
}

DatasetBrowser::DatasetBrowser(DatasetKind kind, const QString& title, const QString& startFolder,
                               const QString& buttonCaption, QWidget* parent)
    : QDialog(parent), kind_(kind) {
    setObjectName("DatasetBrowser");
    setWindowTitle(title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    resize(620, 420);

    look_ = new QLineEdit(this);
    look_->setObjectName("txtLookIn");
    look_->setToolTip("The folder shown. Type the path of a folder or dataset and press Enter.");
    auto* label = new QLabel("&Look in:", this);
    label->setBuddy(look_);
    auto* up = new QToolButton(this);
    up->setObjectName("cmdUp");
    up->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
    up->setToolTip("The folder above (Alt+Up)");
    up->setShortcut(QKeySequence("Alt+Up"));
    list_ = new QListWidget(this);
    list_->setObjectName("lstDatasets");
    list_->setToolTip(kind == DatasetKind::raster
                          ? "Folders and rasters: ESRI grids and raster files"
                          : "Folders and shapefiles");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    button_ = buttons->addButton(buttonCaption, QDialogButtonBox::AcceptRole);
    button_->setObjectName("cmdOpen");
    button_->setDefault(true);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(look_, 1);
    row->addWidget(up);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addWidget(list_, 1);
    column->addWidget(buttons);

    connect(up, &QToolButton::clicked, this, [this] { showFolder(QDir(folder_).filePath("..")); });
    connect(list_, &QListWidget::itemDoubleClicked, this, [this] { openCurrent(); });
    connect(list_, &QListWidget::currentItemChanged, this,
            [this] { button_->setEnabled(list_->currentItem() != nullptr); });
    connect(button_, &QPushButton::clicked, this, [this] {
        const bool typed = QDir::cleanPath(look_->text()) != folder_;
        typed ? open(look_->text()) : openCurrent();
    });
    connect(look_, &QLineEdit::textEdited, this, [this] { button_->setEnabled(true); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showFolder(QFileInfo(startFolder).isDir() ? startFolder : QDir::homePath());
    list_->setFocus();
}

void DatasetBrowser::showFolder(const QString& path) {
    const QString before = folder_;
    folder_ = QDir::cleanPath(QDir(path).absolutePath());
    look_->setText(folder_);
    list_->clear();
    const QDir dir(folder_);
    const auto entries = dir.entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot,
                                           QDir::Name | QDir::DirsFirst | QDir::IgnoreCase);
    for (const QFileInfo& entry : entries) {
        const bool dataset = isDataset(kind_, entry.filePath());
        const bool folder =
            entry.isDir() && !isDataset(DatasetKind::raster, entry.filePath());  // and no grid
        if (!dataset && !folder) continue;
        auto* item = new QListWidgetItem(
            style()->standardIcon(dataset ? QStyle::SP_FileIcon : QStyle::SP_DirIcon),
            entry.fileName(), list_);
        item->setData(Qt::UserRole, entry.filePath());
        item->setToolTip(entry.filePath());
        if (entry.filePath() == before) list_->setCurrentItem(item);
    }
    if (!list_->currentItem()) list_->setCurrentRow(0);
    button_->setEnabled(list_->currentItem() != nullptr);
}

// Takes a dataset, steps into a folder.
void DatasetBrowser::open(const QString& path) {
    if (isDataset(kind_, path)) {
        chosen_ = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
        accept();
    } else if (QFileInfo(path).isDir()) {
        showFolder(path);
        list_->setFocus();
    } else {
        look_->setFocus();
        look_->selectAll();
    }
}

void DatasetBrowser::openCurrent() {
    if (const auto* item = list_->currentItem()) open(item->data(Qt::UserRole).toString());
}

}  // namespace velmora::qt
