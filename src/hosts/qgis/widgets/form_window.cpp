// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/form_window.h"

#include <QApplication>
#include <QSettings>
#include <QTabWidget>
#include <map>

#include "gis/errors.h"
#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/texts.h"
#include "ui_frmEfficiency.h"
#include "ui_frmKcEditor.h"
#include "ui_frmMonitor.h"
#include "ui_frmSettings.h"
#include "ui_frmStatistics.h"

namespace velmora::qt {

namespace {

template <class Ui>
void setUp(QDialog* window) {
    Ui().setupUi(window);
}

const std::map<std::string, void (*)(QDialog*)> kWindows = {
    {"frmSettings", setUp<Ui::frmSettings>},
    {"frmKcEditor", setUp<Ui::frmKcEditor>},
    {"frmEfficiency", setUp<Ui::frmEfficiency>},
    {"frmStatistics", setUp<Ui::frmStatistics>},
    {"frmMonitor", setUp<Ui::frmMonitor>}};

QString sizeKey(const Form& form) { return "velmora/size/" + toQt(form.name()); }

}  // namespace

FormWindow::FormWindow(Form& form, IPrompts& prompts, QWidget* parent)
    : QDialog(parent), form_(&form) {
    const auto found = kWindows.find(form.name());
    if (found == kWindows.end()) throw PlatformError("There is no window for " + form.name());
    found->second(this);
    setWindowTitle(toQt(form.title()));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    const QSize size = QSettings().value(sizeKey(form)).toSize();
    if (size.isValid()) resize(size);
    binder_ = std::make_unique<FormBinder>(form, *this, prompts);
    form.hostFocus = [this] { showFocus(); };
    form.hostPage = [this] { showPage(); };
    form.hostBusy = [this] { showBusy(); };
    form.hostClose = [this] { done(QDialog::Accepted); };
    showPage();
}

FormWindow::~FormWindow() { leave(); }

void FormWindow::leave() {
    if (!form_) return;
    if (hourglass_) QApplication::restoreOverrideCursor();
    hourglass_ = false;
    QSettings().setValue(sizeKey(*form_), size());
    binder_->letGo();
    for (Handler* handler :
         {&form_->hostFocus, &form_->hostPage, &form_->hostBusy, &form_->hostClose}) {
        *handler = nullptr;
    }
    form_ = nullptr;
}

void FormWindow::reject() {
    if (!form_) return;
    for (const char* name : {"cmdCancel", "cmdClose"}) {
        auto* button = dynamic_cast<CommandButton*>(form_->find(name));
        if (!button) continue;
        button->click();
        return;
    }
    form_->close();
}

// The page that holds the control comes to the front with it.
void FormWindow::showFocus() {
    if (!form_->focused()) return;
    QWidget* widget = binder_->widgetOf(*form_->focused());
    auto* pages = findChild<QTabWidget*>();
    for (int i = 0; pages && i < pages->count(); ++i) {
        if (pages->widget(i)->isAncestorOf(widget)) pages->setCurrentIndex(i);
    }
    widget->setFocus();
}

void FormWindow::showPage() {
    if (auto* pages = findChild<QTabWidget*>()) pages->setCurrentIndex(form_->page());
}

void FormWindow::showBusy() {
    if (form_->busy() == hourglass_) return;
    hourglass_ = form_->busy();
    if (hourglass_) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
    paintNow();
}

}  // namespace velmora::qt
