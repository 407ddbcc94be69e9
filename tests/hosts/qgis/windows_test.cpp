// SPDX-License-Identifier: MIT
// The forms at work in their windows: focus, pages, closing, failures, and the services that they
// use from a desktop.
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextBlock>
#include <QTextBrowser>
#include <filesystem>

#include "crop/frm_kc_editor.h"
#include "hosts/qgis/widgets/account_page.h"
#include "hosts/qgis/widgets/dataset_browser.h"
#include "hosts/qgis/widgets/desktop_application.h"
#include "hosts/qgis/widgets/help_window.h"
#include "hosts/qgis/widgets/keep_painted.h"
#include "irrigation/frm_statistics.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "settings/frm_settings.h"
#include "settings/settings_file.h"
#include "shell/frm_monitor.h"
#include "tests/hosts/qgis/qt_fixture.h"
#include "tests/support/irrigation_fixture.h"

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

struct Desktop : QtTest {
    CropFixture fixture;
    FakeDocument document;
    QWidget mainWindow;
    qt::DesktopApplication application{&mainWindow, document, fixture.folder.file("settings")};

    // Shows the form modally as a command does and lets `user` act on its window.
    void use(Form& form, const std::function<void(QWidget&)>& user) {
        form.load();
        withModal(user, [&] { application.dialogs().showModal(form); });
    }
    std::string path(const char* name) { return fixture.folder.file(name); }
};

TEST(ZonalResults, TheWaterAccountIsTheirSecondPage) {
    qtApplication();
    IrrigationFixture f;
    f.storeSettings();
    f.makeCropLand(f.fields());
    f.saveMonths(6, 7);
    f.save("faef_500", f.filled(0.5F));
    ASSERT_TRUE(runNetIrrigation(f.application, f.settings)) << f.allMessages();
    ASSERT_TRUE(runIrrigationRequirement(f.application, f.settings)) << f.allMessages();
    FakeDocument document;
    QWidget mainWindow;
    qt::DesktopApplication application(&mainWindow, document, f.application.folder);
    frmStatistics form(application);
    form.load();
    qt::FormWindow window(form, application.prompts(), nullptr);
    int made = 0;
    qt::showAccountIn(window, [&](bool metric) {
        ++made;
        return qt::accountPage(application.platform(), metric);
    });
    window.show();
    auto& pages = widget<QTabWidget>(window, "tabResults");
    auto& text = widget<QTextBrowser>(window, "accountText");
    EXPECT_EQ(pages.currentIndex(), 0);
    EXPECT_EQ(widget<QTableView>(window, "dgdResult").model()->rowCount(), 6);
    EXPECT_TRUE(widget<QTableView>(window, "dgdResult").isVisible());
    EXPECT_EQ(made, 0);
    for (int times = 0; times < 2; ++times) {
        pages.setCurrentIndex(1);
        pages.setCurrentIndex(0);
    }
    EXPECT_EQ(made, 1);
    pages.setCurrentIndex(1);
    EXPECT_TRUE(text.toPlainText().startsWith("Water account, Jun to Jul 2006"));
    EXPECT_TRUE(text.toPlainText().contains("By zone, acre-feet"));
    EXPECT_TRUE(text.toPlainText().contains("22 % more in a month of 31 days"));
    widget<QComboBox>(window, "accountUnits").setCurrentIndex(1);
    EXPECT_TRUE(text.toPlainText().contains("By zone, cubic metres"));
    fs::remove_all(f.folder.file("out"));
    widget<QComboBox>(window, "accountUnits").setCurrentIndex(0);
    EXPECT_TRUE(text.toPlainText().startsWith("There is no water account: "));
    form.close();
}

TEST_F(Desktop, SettingsAreTypedAndApplied) {
    frmSettings form(application);
    use(form, [&](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "General Settings");
        type(window, "txtDEM", "/in/dem");
        type(window, "txtWeatherStations", "/in/stations.shp");
        type(window, "txtWeatherData", "/in/none.dbf");
        type(window, "txtOutput", "/out");
        type(window, "txtExtent", "/in/domain.shp");
        type(window, "txtCellSize", "250");
        click(window, "cmdApply");
        EXPECT_TRUE(widget<QPushButton>(window, "cmdSaveAs").isEnabled());
        click(window, "cmdCancel");
    });
    EXPECT_FALSE(form.isOpen());
    const RunSettings stored = readSettings(application.platform().files(),
                                            defaultSettingsPath(application.extensionFolder()));
    EXPECT_EQ(stored.DEM, "/in/dem");
    EXPECT_EQ(stored.CellSize, 250);
}

TEST_F(Desktop, ARefusedApplyShowsTheBoxAndMovesTheFocusToItsPage) {
    frmSettings form(application);
    use(form, [&](QWidget& window) {
        for (const char* box : {"txtDEM", "txtWeatherStations", "txtOutput", "txtExtent"}) {
            type(window, box, "/x");
        }
        type(window, "txtWeatherData", "/x.dbf");
        type(window, "txtCellSize", "100");
        auto& begin = widget<QComboBox>(window, "cboBeginMonth");
        begin.setFocus();
        for (int i = 0; i < 11; ++i) QTest::keyClick(&begin, Qt::Key_Down);
        auto& end = widget<QComboBox>(window, "cboEndMonth");
        for (int i = 0; i < 11; ++i) QTest::keyClick(&end, Qt::Key_Up);
        withModal(
            [](QWidget& box) {
                EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(),
                          "End Month of specified period must be later than beginning month");
                QTest::keyClick(&box, Qt::Key_Return);
            },
            [&] { click(window, "cmdApply"); });
        EXPECT_EQ(widget<QTabWidget>(window, "tabPages").currentIndex(), 1);
        EXPECT_EQ(window.focusWidget(), &end);
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    EXPECT_FALSE(fs::exists(defaultSettingsPath(application.extensionFolder())));
}

TEST_F(Desktop, TheZoneFieldsAreListedWhenTheListIsReached) {
    fixture.makeZones(CropFixture::zones());
    frmSettings form(application);
    use(form, [&](QWidget& window) {
        type(window, "txtZones", QString::fromStdString(fixture.settings.Zones));
        auto& fields = widget<QComboBox>(window, "cboZoneField");
        EXPECT_FALSE(fields.isEnabled());
        withModal([](QWidget& browser) { QTest::keyClick(&browser, Qt::Key_Escape); },
                  [&] { click(window, "cmdZones"); });
        ASSERT_TRUE(fields.isEnabled());
        EXPECT_EQ(fields.count(), 0);
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        fields.setFocus(Qt::TabFocusReason);
        EXPECT_GT(fields.count(), 0);
        EXPECT_EQ(fields.currentIndex(), -1);  // nothing is chosen yet
        QTest::keyClick(&fields, Qt::Key_Down);
        EXPECT_EQ(form.cboZoneField.text(), fields.itemText(0).toStdString());
        EXPECT_EQ(fields.currentIndex(), 0);
        click(window, "cmdCancel");
    });
}

TEST_F(Desktop, ALongPathIsSeenToItsEndAndWholeInTheToolTip) {
    frmSettings form(application);
    use(form, [&](QWidget& window) {
        const QString path = "/a/" + QString("long/").repeated(60) + "dem";
        form.txtDEM.setText(path.toStdString());
        auto& box = widget<QLineEdit>(window, "txtDEM");
        EXPECT_EQ(box.cursorPosition(), path.size());
        EXPECT_TRUE(box.toolTip().endsWith(path));
        click(window, "cmdCancel");
    });
}

TEST_F(Desktop, AWindowKeepsItsSize) {
    frmSettings form(application);
    use(form, [&](QWidget& window) {
        window.resize(1100, 777);
        click(window, "cmdCancel");
    });
    use(form, [&](QWidget& window) {
        EXPECT_EQ(window.size(), QSize(1100, 777));
        click(window, "cmdCancel");
    });
}

TEST_F(Desktop, TheMonitorCannotBeClosedWhileItsStepRuns) {
    auto monitor = std::make_unique<frmMonitor>();
    monitor->load();
    application.dialogs().show(*monitor);
    QPointer<QWidget> window;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->objectName() == "frmMonitor") window = top;
    }
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    window->close();
    EXPECT_TRUE(window->isVisible());
    monitor->messageChanged("Kriging ...");
    EXPECT_EQ(widget<QLabel>(*window, "lblMessage").text(), "Kriging ...");
    monitor->stepEnded();
    click(*window, "cmdClose");
    EXPECT_FALSE(window->isVisible());
    monitor.reset();  // before its window
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
}

TEST_F(Desktop, TheKcTableIsEditedAndItsCurvesAreTurned) {
    fixture.makeKcTable({{"Corn", {}}, {"Oats", {}}});
    frmKcEditor form(application, fixture.settings);
    use(form, [&](QWidget& window) {
        auto& grid = widget<QTableView>(window, "grdKc");
        EXPECT_EQ(grid.model()->rowCount(), 3);
        click(window, "cmdForward");
        EXPECT_EQ(form.picCurve.text(), "Oats");
        EXPECT_EQ(grid.currentIndex().row(), 1);
        click(window, "cmdBackward");
        EXPECT_EQ(form.picCurve.text(), "Corn");
        EXPECT_FALSE(form.cmdSave.enabled());
        grid.model()->setData(grid.model()->index(0, 7), "1.15");
        const auto shows = [&](const char* text) {
            return QTest::qWaitFor(
                [&] { return grid.model()->index(0, 7).data().toString() == text; });
        };
        EXPECT_TRUE(shows("1.15"));
        EXPECT_EQ(form.picCurve.values().at(6), 1.15);
        withModal(
            [](QWidget& box) {
                EXPECT_TRUE(dynamic_cast<QMessageBox&>(box).text().contains("is no number"));
                QTest::keyClick(&box, Qt::Key_Return);
            },
            [&] { grid.model()->setData(grid.model()->index(0, 7), "much"); });
        EXPECT_TRUE(shows("1.15"));
        click(window, "cmdSave");
        EXPECT_FALSE(form.cmdSave.enabled());
        click(window, "cmdClose");
    });
    EXPECT_FALSE(form.isOpen());
}

TEST_F(Desktop, BoxesShowTextsAsTheyStand) {
    withModal(
        [](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(box.text(), "Error in sub <GotoStatTable>: \nnext");
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.windowTitle(), "Velmora");
            EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
            QTest::keyClick(&box, Qt::Key_Return);
        },
        [&] { application.prompts().message("Error in sub <GotoStatTable>: \rnext"); });
    for (const auto& [button, answer] :
         {std::pair{QMessageBox::Yes, true}, {QMessageBox::No, false}}) {
        withModal(
            [button = button](QWidget& window) {
                auto& box = dynamic_cast<QMessageBox&>(window);
                EXPECT_EQ(box.windowTitle(), "Confirmation");
                QTest::mouseClick(box.button(button), Qt::LeftButton);
            },
            [&, answer = answer] {
                EXPECT_EQ(application.prompts().confirm("Replace it?", "Confirmation"), answer);
            });
    }
}

TEST_F(Desktop, DatasetsAreChosenFromTheirFolder) {
    fixture.makeZones(CropFixture::zones());
    fixture.makeDem([](int, int) { return 1.0F; });
    fs::create_directories(path("sub/deeper"));
    write(path("notes.txt"), "no dataset");
    QListWidget* list = nullptr;
    const auto browse = [&](DatasetKind kind, const std::string& start,
                            const std::function<void(QWidget&)>& user) {
        std::string chosen;
        withModal(
            [&](QWidget& window) {
                list = &widget<QListWidget>(window, "lstDatasets");
                user(window);
            },
            [&] { chosen = application.browsers().browseDataset(kind, "Browser", start, "Open"); });
        return chosen;
    };
    const auto items = [&] {
        QStringList names;
        for (int i = 0; i < list->count(); ++i) names << list->item(i)->text();
        return names;
    };
    const std::string folder = fs::path(fixture.settings.Zones).parent_path();
    const std::string zones = browse(DatasetKind::featureClass, folder, [&](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "Browser");
        EXPECT_EQ(widget<QPushButton>(window, "cmdOpen").text(), "Open");
        EXPECT_TRUE(items().contains("zones.shp"));
        EXPECT_TRUE(items().contains("sub"));
        EXPECT_FALSE(items().contains("dem"));
        EXPECT_FALSE(items().contains("notes.txt"));
        list->setCurrentItem(list->findItems("zones.shp", Qt::MatchExactly).at(0));
        QTest::keyClick(list, Qt::Key_Return);
    });
    EXPECT_EQ(zones, fixture.settings.Zones);
    EXPECT_EQ(application.browsers().lastBrowseLocation(), folder);
    // An ESRI grid is one dataset; a folder is stepped into, and a path may be typed.
    const std::string dem = browse(DatasetKind::raster, path("sub/deeper"), [&](QWidget& window) {
        click(window, "cmdUp");
        EXPECT_EQ(items(), QStringList{"deeper"});
        auto& look = widget<QLineEdit>(window, "txtLookIn");
        look.selectAll();
        QTest::keyClicks(&look, QString::fromStdString(fixture.settings.DEM));
        click(window, "cmdOpen");
    });
    EXPECT_EQ(dem, fixture.settings.DEM);
    EXPECT_EQ(browse(DatasetKind::raster, folder,
                     [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); }),
              "");
}

TEST_F(Desktop, FiltersTakeEitherCase) {
    EXPECT_EQ(qt::qtFilter("dBase Files (*.DBF)|*.DBF"), "dBase Files (*.DBF *.dbf)");
    EXPECT_EQ(qt::qtFilter("INFO Files (*.inf)|*.inf"), "INFO Files (*.inf *.INF)");
}

// Windows are painted while a step works, but what the user clicks meanwhile starts nothing.
TEST_F(Desktop, AWorkingStepPaintsAndHearsNothing) {
    QPushButton button;
    QLineEdit box;
    box.show();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] { ++clicks; });
    button.show();
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        ++ticks;
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        QTest::keyClicks(&box, "typed");
    });
    timer.start(0);
    qt::paintNow();
    EXPECT_EQ(box.text(), "");
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(clicks, 0);
    timer.stop();
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(Desktop, LoopsOfThePlatformKeepItPainted) {
    int painted = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++painted; });
    timer.start(0);
    QTest::qSleep(50);
    application.platform().loop().run(4, 1, [](std::size_t, std::size_t) { QTest::qSleep(50); });
    EXPECT_GT(painted, 0);
}

TEST_F(Desktop, TheGuideIsFoundAndShown) {
    qputenv("VELMORA_LIBRARY", VELMORA_LIBRARY_FILE);
    qt::HelpWindow window(nullptr);
    qunsetenv("VELMORA_LIBRARY");
    auto& guide = widget<QTextBrowser>(window, "txtGuide");
    EXPECT_TRUE(guide.toPlainText().startsWith("User guide"));
    window.show();
    const auto top = [&] {
        return guide.cursorForPosition(QPoint(5, 12)).block().text().toStdString();
    };
    const QUrl page = guide.source();
    emit guide.anchorClicked(page.resolved(QUrl("#units")));
    EXPECT_EQ(top(), "Units");
    emit guide.anchorClicked(page.resolved(QUrl("#irrigation-efficiency-1")));
    EXPECT_EQ(top(), "Irrigation efficiency");
    const int second = guide.verticalScrollBar()->value();
    emit guide.anchorClicked(page.resolved(QUrl("#irrigation-efficiency")));
    EXPECT_LT(guide.verticalScrollBar()->value(), second);
    emit guide.anchorClicked(page.resolved(QUrl("methods.md")));
    EXPECT_TRUE(guide.toPlainText().startsWith("Methods"));
}

}  // namespace
}  // namespace velmora::test
