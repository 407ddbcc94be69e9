// SPDX-License-Identifier: MIT
#include "tests/hosts/qgis/qt_fixture.h"

#include <QLineEdit>
#include <QStandardPaths>
#include <cstdio>
#ifdef VELMORA_SANITIZE
#include <sanitizer/lsan_interface.h>
#endif

namespace velmora::test {

namespace {

std::unique_ptr<QApplication>& held() {
    static std::unique_ptr<QApplication> application;
    return application;
}

// The platform without a screen never gives back its one screen.
std::unique_ptr<QApplication> made(int& argc, char** argv) {
#ifdef VELMORA_SANITIZE
    const __lsan::ScopedDisabler notOurs;
#endif
    return std::make_unique<QApplication>(argc, argv);
}

// The application ends before the program does, so that nothing of it looks like a leak.
struct EndOfQt : testing::Environment {
    void TearDown() override { held().reset(); }
};
const testing::Environment* const kEnd = testing::AddGlobalTestEnvironment(new EndOfQt);

}  // namespace

QApplication& qtApplication() {
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    if (!held()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setOrganizationName("velmora-tests");
        // The platform without a screen says at every window what it cannot do.
        qInstallMessageHandler([](QtMsgType kind, const QMessageLogContext&, const QString& text) {
            if (kind == QtCriticalMsg || kind == QtFatalMsg)
                fprintf(stderr, "%s\n", qPrintable(text));
        });
        held() = made(argc, argv);
    }
    return *held();
}

void type(const QWidget& window, const char* name, const QString& text) {
    auto& box = widget<QLineEdit>(window, name);
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, text);
    QTest::keyClick(&box, Qt::Key_Tab);
}

}  // namespace velmora::test
