// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/keep_painted.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>

namespace velmora::qt {

namespace {

constexpr qint64 kInterval = 40;  // ms

// Throws input away.
class DeafFilter : public QObject {
  public:
    DeafFilter() { qApp->installEventFilter(this); }
    ~DeafFilter() override { qApp->removeEventFilter(this); }
    DeafFilter(const DeafFilter&) = delete;
    DeafFilter& operator=(const DeafFilter&) = delete;

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::Wheel:
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
            case QEvent::Shortcut:
            case QEvent::ShortcutOverride:
            case QEvent::ContextMenu:
            case QEvent::DragEnter:
            case QEvent::Drop:
            case QEvent::Close:
                event->ignore();
                return true;
            default:
                return false;
        }
    }
};

void pump(bool atOnce) {
    static bool pumping = false;
    static QElapsedTimer last;
    if (pumping || !qApp) return;
    if (!atOnce && last.isValid() && last.elapsed() < kInterval) return;
    pumping = true;
    {
        const DeafFilter deaf;
        QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kInterval));
    }
    last.start();
    pumping = false;
}

}  // namespace

void keepPainted() { pump(false); }

void paintNow() { pump(true); }

}  // namespace velmora::qt
