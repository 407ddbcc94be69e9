// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/help_window.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "hosts/components/component_loader.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

QString documentFolder() {
    QDir folder(toQt(extensionLibrary()).section('/', 0, -2));
    for (int level = 0; level < 5; ++level) {
        QString documents = folder.filePath("share/doc/velmora");
        if (QFile::exists(documents + "/user-guide.md")) return documents;
        if (!folder.cdUp()) break;
    }
    return {};
}

namespace {

// Pictures of whole windows are shrunk to the width of a page.
class Guide : public QTextBrowser {
  public:
    using QTextBrowser::QTextBrowser;
    QVariant loadResource(int type, const QUrl& name) override {
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource) return resource;
        QImage picture;
        if (resource.canConvert<QImage>()) {
            picture = resource.value<QImage>();
        } else {
            picture.loadFromData(resource.toByteArray());
        }
        constexpr int kPage = 760;
        if (picture.width() <= kPage) return picture;
        return picture.scaledToWidth(kPage, Qt::SmoothTransformation);
    }
};

}  // namespace

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Velmora: User Guide");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    resize(900, 700);
    auto* text = new Guide(this);
    text->setObjectName("txtGuide");
    text->setOpenExternalLinks(true);
    const QString folder = documentFolder();
    if (folder.isEmpty()) {
        text->setPlainText("The user guide is not installed beside the extension library.");
    } else {
        text->setSearchPaths({folder});
        text->setSource(QUrl::fromLocalFile(folder + "/user-guide.md"));
    }
    auto* back = new QPushButton("&Back", this);
    back->setToolTip("The page before");
    back->setEnabled(false);
    auto* home = new QPushButton("User &Guide", this);
    home->setToolTip("The beginning of the user guide");
    auto* close = new QPushButton("Close", this);
    auto* row = new QHBoxLayout;
    row->addWidget(back);
    row->addWidget(home);
    row->addStretch();
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(text, 1);
    column->addLayout(row);
    connect(back, &QPushButton::clicked, text, &QTextBrowser::backward);
    connect(text, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(home, &QPushButton::clicked, text, &QTextBrowser::home);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
}

}  // namespace velmora::qt
