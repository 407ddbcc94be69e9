// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/work_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <cmath>

#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

constexpr qint64 kMoment = 500;  // ms

}  // namespace

WorkBar::WorkBar(QWidget* mainWindow, Feedback& feedback, IPrompts& prompts)
    : mainWindow_(mainWindow), feedback_(feedback), prompts_(prompts) {
    feedback_.listen(*this);
}

WorkBar::~WorkBar() {
    feedback_.ignore(*this);
    delete bar_;
}

void WorkBar::begins(const std::string& title) {
    title_ = toQt(title);
    message_.clear();
    done_ = 0;
    since_.start();
    feedback_.resume();
    hearWhileWorking(bar_, [this] { feedback_.cancel(); });
}

void WorkBar::ends() {
    since_.invalidate();
    hearWhileWorking(nullptr, {});
    delete bar_;
}

void WorkBar::show() {
    auto* window = qobject_cast<QMainWindow*>(mainWindow_.data());
    if (window == nullptr) return;
    bar_ = new QWidget;
    bar_->setObjectName("velmora.work");
    auto* layout = new QHBoxLayout(bar_);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* text = new QLabel;
    text->setTextFormat(Qt::PlainText);
    auto* progress = new QProgressBar;
    progress->setRange(0, 100);
    progress->setFixedWidth(160);
    auto* cancel = new QPushButton("Cancel");
    cancel->setToolTip("Stop the step at the next safe place (Esc)");
    QObject::connect(cancel, &QPushButton::clicked, [this] { feedback_.cancel(); });
    for (QWidget* part : {static_cast<QWidget*>(text), static_cast<QWidget*>(progress),
                          static_cast<QWidget*>(cancel)}) {
        layout->addWidget(part);
    }
    window->statusBar()->insertPermanentWidget(0, bar_);
    hearWhileWorking(bar_, [this] { feedback_.cancel(); });
}

void WorkBar::refresh() {
    if (!bar_ && since_.isValid() && since_.elapsed() >= kMoment) show();
    if (!bar_) return;
    bar_->findChild<QProgressBar*>()->setValue(static_cast<int>(std::lround(done_ * 100)));
    bar_->findChild<QLabel*>()->setText(message_.isEmpty() ? title_ : message_);
}

void WorkBar::fractionChanged(double done) {
    done_ = done;
    refresh();
}

void WorkBar::messageChanged(const std::string& text) {
    message_ = toQt(text);
    refresh();
}

void WorkBar::beat() {
    if (!bar_) refresh();
    keepPainted();
}

}  // namespace velmora::qt
