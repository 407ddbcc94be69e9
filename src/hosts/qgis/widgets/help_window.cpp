// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/help_window.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QImage>
#include <QMap>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
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

// The name by which links of a document point to a heading: "The Kc table" is "the-kc-table".
QString anchorOf(const QString& heading) {
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == '-') anchor += c;
        if (c == ' ') anchor += '-';
    }
    return anchor;
}

// Shows the heading at the top; of several of one name the later ones end in -1, -2 and so on.
void showHeading(QTextBrowser& guide, const QString& anchor) {
    QMap<QString, int> met;
    for (QTextBlock block = guide.document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) continue;
        const QString name = anchorOf(block.text());
        const int before = met[name]++;
        if ((before == 0 ? name : name + "-" + QString::number(before)) != anchor) continue;
        const qreal top = guide.document()->documentLayout()->blockBoundingRect(block).top();
        guide.verticalScrollBar()->setValue(static_cast<int>(top));
        return;
    }
}

void follow(QTextBrowser& guide, const QUrl& link) {
    const QUrl document = guide.source().resolved(link).adjusted(QUrl::RemoveFragment);
    if (!document.isLocalFile()) {
        QDesktopServices::openUrl(link);
        return;
    }
    if (document != guide.source().adjusted(QUrl::RemoveFragment)) guide.setSource(document);
    if (link.hasFragment()) showHeading(guide, link.fragment());
}

}  // namespace

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent) {
    setWindowTitle("Velmora: User Guide");
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    resize(900, 700);
    auto* text = new Guide(this);
    text->setObjectName("txtGuide");
    text->setOpenLinks(false);
    connect(text, &QTextBrowser::anchorClicked, this,
            [text](const QUrl& link) { follow(*text, link); });
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
