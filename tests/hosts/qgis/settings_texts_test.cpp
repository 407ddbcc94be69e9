// SPDX-License-Identifier: MIT
// The texts of the General Settings window, written down here once more, and what its keys do.
#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <set>

#include "hosts/qgis/widgets/texts.h"
#include "settings/frm_settings.h"
#include "settings/settings_file.h"
#include "tests/hosts/qgis/qt_fixture.h"
#include "tests/support/run_fixture.h"

namespace velmora::test {
namespace {

struct SettingsWindow : QtTest {
    RunFixture fixture;
    TestApplication& application = fixture.application;
    frmSettings form{application};
    std::string settingsPath = defaultSettingsPath(application.folder);

    RunSettings stored() { return readSettings(application.platform().files(), settingsPath); }
};

TEST_F(SettingsWindow, StaticTexts) {
    const qt::FormWindow window(form, prompts, nullptr);
    std::multiset<std::string> shown;
    const auto add = [&](const QString& text) {
        if (!text.isEmpty()) shown.insert(qt::withoutMnemonic(text).toStdString());
    };
    for (const auto* label : window.findChildren<QLabel*>()) add(label->text());
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        if (!button->objectName().startsWith("qt_")) add(button->text());
    }
    for (const auto* group : window.findChildren<QGroupBox*>()) add(group->title());
    const auto& pages = widget<QTabWidget>(window, "tabPages");
    for (int i = 0; i < pages.count(); ++i) add(pages.tabText(i));
    EXPECT_EQ(window.windowTitle(), "General Settings");
    EXPECT_EQ(pages.tabText(0), "Basic Data");
    for (const char* text : {"Input Data",
                             "Digital Elevation Model (DEM):",
                             "Weather Stations:",
                             "Weather Data Table:",
                             "Database for storing the Climate Data",
                             "Crop Coefficients Table:",
                             "Land Use/Cover Shapefile:",
                             "Basic-Zone Shapefile:",
                             "Coverage for Zonal Statistics",
                             "Key field identifying zones:",
                             "Output Workspace",
                             "Folder for Output:",
                             "Extent and Cell Size",
                             "Shapefile to show modeling domain:",
                             "Cell Size:",
                             "[meters]",
                             "Cell Numbers  in Width:",
                             "Cell Numbers  in Height:",
                             "Time Step and  Period",
                             "Monthly",
                             "Daily",
                             "Begin from:",
                             "Stop at:",
                             "Methods for Calculating Reference ET",
                             "Methods used for Reference ET Calculation:",
                             "Measurement Units",
                             "Site Elevation:",
                             "DEM Grid:",
                             "Temperature:",
                             "Solar Radiation:",
                             "Wind Speed:",
                             "Meteorological Data Information",
                             "Maximum Temperature",
                             "Minimum Temperature",
                             "Mean Temperature",
                             "Dewpoint Temperature",
                             "Mean RH",
                             "Maximum RH",
                             "Minimum RH",
                             "Solar Radiation",
                             "Wind Speed",
                             "Get Info",
                             "Estimated Wind Speed at 2m:",
                             "[m/s]",
                             "Use Formula:",
                             "(Tmax-Tmin)^0.5 x Ra x",
                             "[0.16 .. 0.19]",
                             "Estimated as :Tmin - Ko",
                             "Ko =",
                             "[Degree C]",
                             "Precipitation Interpolation",
                             "Use elevationally detrended method",
                             "Use PRISM precipitation GRID as reference",
                             "Location of  the reference GRIDs:",
                             "Performance Control",
                             "Show Progress  Monitor",
                             "OK",
                             "Apply",
                             "Cancel",
                             "Save As",
                             "Load Previous Settings"}) {
        EXPECT_EQ(shown.count(text), 1U) << text;
    }
}

// A letter presses a button without moving the focus out of the box that was typed into.
TEST_F(SettingsWindow, ApplyByItsLetterInspectsTheTableTypedLast) {
    fixture.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"TM_", "TN_"});
    RunSettings s = fixture.settings;
    s.WeatherData = "/none.dbf";
    application.platform().files().createFolder(application.folder);
    writeSettings(application.platform().files(), settingsPath, s);
    for (const Qt::Key letter : {Qt::Key_P, Qt::Key_O}) {
        form.load();
        qt::FormWindow window(form, prompts, nullptr);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        auto& box = widget<QLineEdit>(window, "txtWeatherData");
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, QString::fromStdString(fixture.folder.file("weather.dbf")));
        QTest::keyClick(&box, letter, Qt::AltModifier);  // the button clicks a moment later
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return stored().WeatherData == fixture.folder.file("weather.dbf"); }, 3000));
        EXPECT_TRUE(stored().HasTmax);
        EXPECT_FALSE(stored().HasSR);
        writeSettings(application.platform().files(), settingsPath, s);
    }
}

}  // namespace
}  // namespace velmora::test
