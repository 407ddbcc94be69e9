// SPDX-License-Identifier: MIT
// Windows of forms without a screen.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "gis/errors.h"
#include "hosts/qgis/widgets/form_window.h"
#include "tests/support/fakes.h"

namespace velmora::test {

// The one application of the test program, on a platform without a screen.
QApplication& qtApplication();

struct QtTest : testing::Test {
    QtTest() {
        qtApplication();
        QSettings().clear();
    }
    ~QtTest() override { QSettings().clear(); }

    // Does something to the modal window that the call in `body` opens, once it is there.
    template <class Body>
    void withModal(const std::function<void(QWidget&)>& answer, Body body) {
        bool answered = false;
        const QWidget* before = QApplication::activeModalWidget();
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, &look, [&] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || modal == before || !modal->isVisible()) return;
            look.stop();
            answered = true;
            answer(*modal);
        });
        look.start(20);
        body();
        EXPECT_TRUE(answered) << "no window came";
    }

    FakePrompts prompts;
};

template <class Widget>
Widget& widget(const QWidget& window, const char* name) {
    auto* found = window.findChild<Widget*>(name);
    if (!found) throw PlatformError(std::string("No widget ") + name);
    return *found;
}

inline void click(const QWidget& window, const char* name) {
    QTest::mouseClick(&widget<QWidget>(window, name), Qt::LeftButton);
}

// Types a text into a box from its beginning and leaves it.
void type(const QWidget& window, const char* name, const QString& text);

}  // namespace velmora::test
