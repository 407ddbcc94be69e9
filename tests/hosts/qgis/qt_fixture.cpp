// SPDX-License-Identifier: MIT
#include "tests/hosts/qgis/qt_fixture.h"

#include <QLineEdit>

namespace velmora::test {

void type(const QWidget& window, const char* name, const QString& text) {
    auto& box = widget<QLineEdit>(window, name);
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, text);
    QTest::keyClick(&box, Qt::Key_Tab);
}

}  // namespace velmora::test
