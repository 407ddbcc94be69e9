// SPDX-License-Identifier: MIT
// How far a step is, in the desktop's status bar, and how it is cancelled there.
#include "hosts/qgis/widgets/work_bar.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QThread>

#include "hosts/qgis/widgets/desktop_application.h"
#include "tests/hosts/qgis/qt_fixture.h"

namespace velmora::test {
namespace {

struct WorkBars : QtTest {
    WorkBars() { window.show(); }
    QMainWindow window;
    FakeDocument document;
    qt::DesktopApplication application{&window, document, "/none"};
    Feedback& feedback = application.feedback();

    QWidget* bar() const { return window.findChild<QWidget*>("velmora.work"); }
    // The work has gone on for a while.
    void goOn(double done) {
        QThread::msleep(600);
        feedback.advance(done);
        feedback.setMessage("Crop ET of Jul ...");
    }
    // A click that is waiting when the work looks for events the next time.
    void clickLater(QWidget& widget) const {
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QCoreApplication::postEvent(
                &widget, new QMouseEvent(type, {3, 3}, Qt::LeftButton, Qt::LeftButton, {}));
        }
    }
};

TEST_F(WorkBars, ShowWhatIsDoneAndGoWithTheWork) {
    {
        const FeedbackScope scope(feedback, "Estimate Crop ET");
        feedback.advance(0.25);
        EXPECT_EQ(bar(), nullptr);  // as yet a moment
        goOn(0.5);
        ASSERT_NE(bar(), nullptr);
        EXPECT_EQ(bar()->findChild<QProgressBar*>()->value(), 50);
        EXPECT_EQ(bar()->findChild<QLabel*>()->text(), "Crop ET of Jul ...");
    }
    EXPECT_EQ(bar(), nullptr);
    goOn(0.75);  // a loop outside of a step
    EXPECT_EQ(bar(), nullptr);
}

TEST_F(WorkBars, TheirButtonAloneIsHeard) {
    auto* other = new QPushButton("Other", &window);
    int clicks = 0;
    QObject::connect(other, &QPushButton::clicked, [&] { ++clicks; });
    other->show();
    const FeedbackScope scope(feedback, "Estimate Crop ET");
    goOn(0.5);
    ASSERT_NE(bar(), nullptr);
    clickLater(*other);
    QThread::msleep(60);
    feedback.advance(0.6);
    EXPECT_EQ(clicks, 0);
    EXPECT_FALSE(feedback.cancelled());
    clickLater(*bar()->findChild<QPushButton*>());
    QThread::msleep(60);
    feedback.advance(0.7);
    EXPECT_TRUE(feedback.cancelled());
    feedback.begin("the next step");  // begins anew
    EXPECT_FALSE(feedback.cancelled());
}

TEST_F(WorkBars, EscCancelsFromAnyWindow) {
    QWidget dialog;
    dialog.show();
    const auto press = [&](int key) {
        QCoreApplication::postEvent(&dialog, new QKeyEvent(QEvent::KeyPress, key, {}));
        QThread::msleep(60);
        feedback.advance(0.1);
    };
    {
        const FeedbackScope scope(feedback, "Estimate Crop ET");
        press(Qt::Key_Return);
        EXPECT_FALSE(feedback.cancelled());
        press(Qt::Key_Escape);
        EXPECT_TRUE(feedback.cancelled());
    }
    feedback.resume();
    press(Qt::Key_Escape);  // no work goes on
    EXPECT_FALSE(feedback.cancelled());
}

}  // namespace
}  // namespace velmora::test
