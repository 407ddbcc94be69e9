// SPDX-License-Identifier: MIT
// Every control of every form in its window: the user's typing, choosing, ticking and clicking
// reach the control, and what the form changes is seen.
#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTableView>
#include <set>

#include "crop/frm_kc_editor.h"
#include "hosts/qgis/widgets/curve_chart.h"
#include "hosts/qgis/widgets/texts.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/frm_statistics.h"
#include "settings/frm_settings.h"
#include "shell/frm_monitor.h"
#include "tests/hosts/qgis/qt_fixture.h"
#include "tests/support/test_platform.h"

namespace velmora::test {
namespace {

using qt::toQt;

struct Windows : QtTest {
    TempFolder folder;
    TestPlatform platform;
    TestApplication application{platform, folder.file("settings")};
    RunSettings settings;
    frmSettings settingsForm{application};
    frmKcEditor kcForm{application, settings};
    frmEfficiency efficiencyForm{application};
    frmStatistics statisticsForm{application};
    frmMonitor monitorForm;
    std::vector<Form*> forms{&settingsForm, &kcForm, &efficiencyForm, &statisticsForm,
                             &monitorForm};

    // What the handlers of the form would do is not of interest here: the binding is.
    static void silence(Form& form) {
        for (Control* control : form.controls()) {
            control->onFocus = nullptr;
            if (auto* box = dynamic_cast<TextBox*>(control)) {
                box->onChange = box->onLeave = box->onDoubleClick = nullptr;
            }
            if (auto* list = dynamic_cast<ListBox*>(control)) list->onClick = nullptr;
            if (auto* list = dynamic_cast<MultiSelectList*>(control)) list->onClick = nullptr;
            if (auto* option = dynamic_cast<OptionButton*>(control)) option->onClick = nullptr;
            if (auto* button = dynamic_cast<CommandButton*>(control)) button->onClick = nullptr;
            if (auto* grid = dynamic_cast<DataGrid*>(control)) {
                grid->onEdit = nullptr;
                grid->onSelect = nullptr;
            }
            control->setEnabled(true);
        }
    }

    // Shows each form in its window and calls `body` for every control of a kind with its widget.
    template <class Kind, class Widget>
    int forEach(const std::function<void(Kind&, Widget&)>& body) {
        int count = 0;
        for (Form* form : forms) {
            silence(*form);
            qt::FormWindow window(*form, prompts, nullptr);
            window.show();
            for (Control* control : form->controls()) {
                auto* kind = dynamic_cast<Kind*>(control);
                if (!kind) continue;
                SCOPED_TRACE(form->name() + "." + control->name());
                auto& shown = widget<Widget>(window, control->name().c_str());
                if (auto* pages = window.findChild<QTabWidget*>()) {
                    for (int i = 0; i < pages->count(); ++i) {
                        if (pages->widget(i)->isAncestorOf(&shown)) pages->setCurrentIndex(i);
                    }
                }
                body(*kind, shown);
                ++count;
            }
        }
        return count;
    }
};

TEST_F(Windows, TextBoxesTakeWhatIsTyped) {
    const int boxes = forEach<TextBox, QLineEdit>([](TextBox& box, QLineEdit& shown) {
        int left = 0;
        box.onLeave = [&] { ++left; };
        box.setText("from the form");
        EXPECT_EQ(shown.text(), "from the form");
        shown.selectAll();
        QTest::keyClicks(&shown, "typed 1.5");
        EXPECT_EQ(box.text(), "typed 1.5");
        EXPECT_EQ(left, 0);
        QTest::keyClick(&shown, Qt::Key_Return);
        EXPECT_EQ(left, 1);
        QTest::keyClick(&shown, Qt::Key_Return);
        EXPECT_EQ(left, 1);  // nothing has changed since
        int twice = 0;
        box.onDoubleClick = [&] { ++twice; };
        QTest::mouseDClick(&shown, Qt::LeftButton);
        EXPECT_EQ(twice, 1);
        box.setEnabled(false);
        EXPECT_FALSE(shown.isEnabled());
        box.onLeave = box.onDoubleClick = nullptr;
    });
    EXPECT_EQ(boxes, 14 + 3 + 2);
}

TEST_F(Windows, ListsTakeEveryEntry) {
    const int lists = forEach<ListBox, QComboBox>([](ListBox& list, QComboBox& shown) {
        list.clear();
        for (const char* item : {"one", "two", "three"}) list.addItem(item);
        EXPECT_EQ(shown.count(), 3);
        int clicks = 0;
        list.onClick = [&] { ++clicks; };
        list.select(2);
        EXPECT_EQ(shown.currentText(), "three");
        shown.setFocus();
        for (int i = 0; i < 2; ++i) QTest::keyClick(&shown, Qt::Key_Up);
        EXPECT_EQ(list.text(), "one");
        EXPECT_EQ(clicks, 3);
        list.setText("no entry");
        EXPECT_EQ(shown.currentText(), "no entry");
        QTest::keyClick(&shown, Qt::Key_Up);
        EXPECT_EQ(list.text(), "three");
        EXPECT_EQ(shown.count(), 3);
        list.onClick = nullptr;
    });
    EXPECT_EQ(lists, 11 + 2 + 1 + 1);
}

TEST_F(Windows, ManyEntriesMayBeChosen) {
    const int lists =
        forEach<MultiSelectList, QListWidget>([](MultiSelectList& list, QListWidget& shown) {
            list.clear();
            for (const char* item : {"a", "b", "c"}) list.addItem(item);
            for (const int row : {0, 2}) {
                QTest::mouseClick(shown.viewport(), Qt::LeftButton, {},
                                  shown.visualItemRect(shown.item(row)).center());
            }
            EXPECT_EQ(list.chosenItems(), (std::vector<std::string>{"a", "c"}));
            list.choose(2, false);
            EXPECT_FALSE(shown.item(2)->isSelected());
        });
    EXPECT_EQ(lists, 1);
}

TEST_F(Windows, BoxesAreTicked) {
    const int boxes = forEach<CheckBox, QCheckBox>([](CheckBox& box, QCheckBox& shown) {
        box.setValue(true);
        EXPECT_TRUE(shown.isChecked());
        QTest::keyClick(&shown, Qt::Key_Space);
        EXPECT_FALSE(box.value());
        EXPECT_EQ(qt::withoutMnemonic(shown.text()), toQt(box.text()));
    });
    EXPECT_EQ(boxes, 10);
}

TEST_F(Windows, OptionsExcludeEachOther) {
    std::vector<std::string> chosen;
    const int options =
        forEach<OptionButton, QRadioButton>([&](OptionButton& option, QRadioButton& shown) {
            QTest::keyClick(&shown, Qt::Key_Space);
            EXPECT_TRUE(option.value());
            EXPECT_TRUE(shown.isChecked());
            chosen.push_back(option.name());
        });
    EXPECT_EQ(options, 4);
    EXPECT_FALSE(settingsForm.optMonthly.value());
    EXPECT_TRUE(settingsForm.optDaily.value());
    EXPECT_FALSE(settingsForm.optEDK.value());
    settingsForm.optEDK.choose();
    EXPECT_FALSE(settingsForm.optPRISM.value());
}

TEST_F(Windows, ButtonsAreClickedByMouseAndKeyboard) {
    const int buttons =
        forEach<CommandButton, QAbstractButton>([](CommandButton& button, QAbstractButton& shown) {
            int clicks = 0;
            button.onClick = [&] { ++clicks; };
            QTest::mouseClick(&shown, Qt::LeftButton);
            QTest::keyClick(&shown, Qt::Key_Space);
            EXPECT_EQ(clicks, 2);
            EXPECT_EQ(qt::withoutMnemonic(shown.text()), toQt(button.text()));
            EXPECT_NE(shown.focusPolicy() & Qt::TabFocus, 0);
            button.setEnabled(false);
            QTest::mouseClick(&shown, Qt::LeftButton);
            EXPECT_EQ(clicks, 2);
            button.onClick = nullptr;
        });
    EXPECT_EQ(buttons, 16 + 11 + 5 + 2 + 1);
}

TEST_F(Windows, GridsShowAndTakeCells) {
    const int grids = forEach<DataGrid, QTableView>([](DataGrid& grid, QTableView& shown) {
        std::vector<std::string> edits;
        grid.onEdit = [&](std::size_t row, std::size_t column, const std::string& text) {
            edits.push_back(std::to_string(row) + "," + std::to_string(column) + "=" + text);
            if (row == grid.rowCount()) grid.addRow({});
            grid.setCell(row, column, text);
        };
        grid.show({"name", "value"}, {{"a", "1"}, {"b", "2"}});
        QAbstractItemModel& model = *shown.model();
        EXPECT_EQ(model.rowCount(), 3);  // the last begins a new record
        EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "value");
        EXPECT_EQ(model.index(1, 0).data().toString(), "b");
        const auto typeInto = [&](int row, int column, const char* text) {
            shown.setCurrentIndex(model.index(row, column));
            shown.edit(model.index(row, column));
            auto* editor = shown.findChild<QLineEdit*>();
            ASSERT_NE(editor, nullptr);
            editor->selectAll();
            QTest::keyClicks(editor, text);
            QTest::keyClick(editor, Qt::Key_Return);
            // The editor hands its text over and goes, and the view is told, each when Qt comes to
            // it: an editor that is still there would be taken for the next one.
            ASSERT_TRUE(QTest::qWaitFor([&] {
                return !shown.findChild<QLineEdit*>() &&
                       model.index(row, column).data(Qt::EditRole).toString() == text;
            }));
        };
        typeInto(1, 1, "2.5");
        EXPECT_EQ(model.index(1, 1).data().toString(), "2.5");
        EXPECT_EQ(grid.currentRow(), 1U);
        typeInto(2, 0, "c");
        EXPECT_EQ(model.rowCount(), 4);
        EXPECT_EQ(grid.currentRow(), 2U);
        EXPECT_EQ(edits, (std::vector<std::string>{"1,1=2.5", "2,0=c"}));
        grid.setCell(0, 1, "1086.4334387838");
        EXPECT_EQ(model.index(0, 1).data().toString(), "1086.4334");
        EXPECT_EQ(model.index(0, 1).data(Qt::EditRole).toString(), "1086.4334387838");
        grid.setCell(0, 1, "0.00012345678");
        EXPECT_EQ(model.index(0, 1).data().toString(), "0.0001235");
        grid.setCell(0, 1, "1001002003");
        EXPECT_EQ(model.index(0, 1).data().toString(), "1001002003");
        EXPECT_GE(shown.columnWidth(1), shown.fontMetrics().horizontalAdvance("1001002003"));
        grid.select(0);
        EXPECT_EQ(shown.currentIndex().row(), 0);
        QTest::keyClick(&shown, Qt::Key_Down);
        EXPECT_EQ(grid.currentRow(), 1U);
        grid.onEdit = nullptr;
    });
    EXPECT_EQ(grids, 2 + 2 + 1);
}

TEST_F(Windows, LabelsFramesBarsAndChartsFollow) {
    const int labels = forEach<Label, QLabel>([](Label& label, QLabel& shown) {
        EXPECT_EQ(qt::withoutMnemonic(shown.text()), toQt(label.text()));
        label.setText("<b> & text");
        EXPECT_EQ(shown.text(), "<b> & text");
        EXPECT_EQ(shown.textFormat(), Qt::PlainText);
    });
    EXPECT_EQ(labels, 10 + 3 + 1 + 4);
    const int frames = forEach<Frame, QGroupBox>([](Frame& frame, QGroupBox& shown) {
        EXPECT_EQ(shown.title(), toQt(frame.text()));
        frame.setEnabled(false);
        EXPECT_FALSE(shown.isEnabled());
    });
    EXPECT_EQ(frames, 3);
    const int bars = forEach<ProgressBar, QProgressBar>([](ProgressBar& bar, QProgressBar& shown) {
        bar.setFraction(0.25);
        EXPECT_EQ(shown.maximum(), 4 * shown.value());
    });
    EXPECT_EQ(bars, 1);
    const int charts = forEach<Chart, qt::CurveChart>([](Chart& chart, qt::CurveChart& shown) {
        chart.show("Corn", {"Jan", "Feb", "Mar"}, {0, 0.75, 1.2});
        EXPECT_EQ(shown.title(), "Corn");
        EXPECT_EQ(shown.points(), 3);
        const QImage curve = shown.grab().toImage();
        chart.clear();
        EXPECT_EQ(shown.points(), 0);
        EXPECT_NE(shown.grab().toImage(), curve);
    });
    EXPECT_EQ(charts, 1);
}

TEST_F(Windows, EveryControlHasAToolTipAndAPlaceInTheTabOrder) {
    for (Form* form : forms) {
        qt::FormWindow window(*form, prompts, nullptr);
        std::set<const QWidget*> reached;
        for (QWidget* next = window.nextInFocusChain(); next != &window;
             next = next->nextInFocusChain()) {
            reached.insert(next);
        }
        for (const Control* control : form->controls()) {
            SCOPED_TRACE(form->name() + "." + control->name());
            auto& shown = widget<QWidget>(window, control->name().c_str());
            EXPECT_TRUE(reached.contains(&shown));
            const bool speaks = dynamic_cast<const Label*>(control) || !shown.toolTip().isEmpty();
            EXPECT_TRUE(speaks);
        }
        EXPECT_EQ(window.windowTitle(), toQt(form->title()));
    }
}

TEST_F(Windows, EveryWidgetThatTakesInputIsAControl) {
    const QRegularExpression input("^(txt|cbo|cmb|cmd|chk|opt|lst|grd|dgd)");
    int count = 0;
    for (Form* form : forms) {
        const qt::FormWindow window(*form, prompts, nullptr);
        for (const auto* shown : window.findChildren<QWidget*>(input)) {
            const std::string name = shown->objectName().toStdString();
            EXPECT_TRUE(form->find(name)) << form->name() << "." << name;
            ++count;
        }
    }
    EXPECT_GT(count, 80);
}

// Down a page and from left to right, as one reads.
TEST_F(Windows, TheTabOrderFollowsTheRowsOfAPage) {
    qt::FormWindow window(settingsForm, prompts, nullptr);
    std::vector<std::string> order;
    for (QWidget* next = window.nextInFocusChain(); next != &window;
         next = next->nextInFocusChain()) {
        if (settingsForm.find(next->objectName().toStdString()) &&
            (next->focusPolicy() & Qt::TabFocus) != 0) {
            order.push_back(next->objectName().toStdString());
        }
    }
    const std::vector<std::string> first = {"txtDEM", "cmdDEM", "txtWeatherStations",
                                            "cmdWeatherStations", "txtWeatherData"};
    ASSERT_GT(order.size(), first.size());
    EXPECT_TRUE(std::equal(first.begin(), first.end(), order.begin()));
    EXPECT_EQ(order.back(), "cmdCancel");
}

TEST_F(Windows, AWindowThatEndsLetsGoOfItsForm) {
    for (Form* form : forms) {
        { const qt::FormWindow window(*form, prompts, nullptr); }
        for (const Control* control : form->controls()) EXPECT_FALSE(control->hostRefresh);
        EXPECT_FALSE(form->hostClose);
        EXPECT_FALSE(form->hostFocus);
    }
}

TEST_F(Windows, AFormWithoutAWindowIsNamed) {
    Form strange("frmStrange", "Strange");
    try {
        const qt::FormWindow window(strange, prompts, nullptr);
        FAIL();
    } catch (const PlatformError& e) {
        EXPECT_STREQ(e.what(), "There is no window for frmStrange");
    }
}

}  // namespace
}  // namespace velmora::test
