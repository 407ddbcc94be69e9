// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/keep_painted.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QKeyEvent>
#include <QPointer>
#include <utility>

namespace velmora::qt {

namespace {

constexpr qint64 kInterval = 40;  // ms

struct Heard {
    QPointer<QWidget> widget;
    std::function<void()> cancel;
};

Heard& heardNow() {
    static Heard heard;
    return heard;
}

bool isHeard(QObject* receiver) {
    const auto* widget = qobject_cast<QWidget*>(receiver);
    const QWidget* heard = heardNow().widget;
    return heard != nullptr && widget != nullptr &&
           (widget == heard || heard->isAncestorOf(widget));
}

// The windowing system's own event is on its way to a widget.
bool isOnItsWay(QObject* receiver) { return receiver->inherits("QWidgetWindow"); }

bool cancels(QEvent* event) {
    return event->type() == QEvent::KeyPress &&
           static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && heardNow().cancel;
}

// Throws input away.
class DeafFilter : public QObject {
  public:
    DeafFilter() { qApp->installEventFilter(this); }
    ~DeafFilter() override { qApp->removeEventFilter(this); }
    DeafFilter(const DeafFilter&) = delete;
    DeafFilter& operator=(const DeafFilter&) = delete;

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (cancels(event)) heardNow().cancel();
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
                if (isHeard(receiver) || isOnItsWay(receiver)) return false;
                event->ignore();
                return true;
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

void hearWhileWorking(QWidget* heard, std::function<void()> cancel) {
    heardNow() = {heard, std::move(cancel)};
}

}  // namespace velmora::qt
