// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/account_page.h"

#include <QApplication>
#include <QComboBox>
#include <QTabWidget>
#include <QTextBrowser>
#include <exception>

#include "hosts/qgis/widgets/texts.h"
#include "hosts/results/account/account_section.h"
#include "hosts/results/reading_results.h"
#include "hosts/results/report/html.h"
#include "settings/run_state.h"

namespace velmora::qt {

std::string accountPage(IPlatform& platform, bool metric) {
    try {
        const RunSettings settings = processState().settings;
        const auto reading = readingResults(platform.files(), settings.OutputWorkspace);
        Feedback nobody;
        const Account account = makeAccount(platform, settings, nobody);
        return accountSection(account, annexOf(platform, account),
                              metric ? metricUnits() : usUnits());
    } catch (const std::exception& e) {
        return "<p class=\"error\">There is no water account: " + escaped(e.what()) + "</p>";
    } catch (const Cancelled&) {
        return "<p>Stopped as you asked.</p>";
    }
}

void showAccountIn(QDialog& window, const AccountSource& source) {
    auto* pages = window.findChild<QTabWidget*>("tabResults");
    auto* text = window.findChild<QTextBrowser*>("accountText");
    auto* units = window.findChild<QComboBox*>("accountUnits");
    if (!pages || !text || !units || !source) return;
    text->document()->setDefaultStyleSheet(
        "th,td{padding:1px 6px;white-space:nowrap;font-size:9pt} .error{color:#a61b1b} "
        ".warning{color:#8a5a00}");
    const auto fill = [text, units, source] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        QString html = toQt(source(units->currentIndex() == 1));
        QApplication::restoreOverrideCursor();
        // The attribute is what a text document knows of the side at which numbers stand.
        text->setHtml(html.replace(" class=\"n\"", " align=\"right\""));
    };
    QObject::connect(pages, &QTabWidget::currentChanged, text, [pages, text, fill](int page) {
        if (pages->widget(page)->isAncestorOf(text) && text->toPlainText().isEmpty()) fill();
    });
    QObject::connect(units, qOverload<int>(&QComboBox::currentIndexChanged), text, fill);
}

}  // namespace velmora::qt
