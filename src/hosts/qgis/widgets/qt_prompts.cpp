// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/qt_prompts.h"

#include <QApplication>
#include <QMessageBox>

#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

// The hourglass of a running step is no good over a box that waits for a click.
class PlainCursor {
  public:
    PlainCursor() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
    ~PlainCursor() { QApplication::restoreOverrideCursor(); }
    PlainCursor(const PlainCursor&) = delete;
    PlainCursor& operator=(const PlainCursor&) = delete;
};

int showBox(QWidget* mainWindow, const std::string& text, const std::string& title,
            QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
    const PlainCursor cursor;
    QMessageBox box(icon, title.empty() ? QStringLiteral("Velmora") : toQt(title), toQt(text),
                    buttons, windowInFront(mainWindow));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const int answer = box.exec();
    paintNow();
    return answer;
}

}  // namespace

QWidget* windowInFront(QWidget* mainWindow) {
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : mainWindow;
}

void QtPrompts::message(const std::string& text, const std::string& title) {
    showBox(mainWindow_, text, title, QMessageBox::Information, QMessageBox::Ok);
}

void QtPrompts::showFailure(const std::string& text, const std::string& title) {
    showBox(mainWindow_, text, title, QMessageBox::Warning, QMessageBox::Ok);
}

bool QtPrompts::confirm(const std::string& question, const std::string& title) {
    return showBox(mainWindow_, question, title, QMessageBox::Question,
                   QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace velmora::qt
