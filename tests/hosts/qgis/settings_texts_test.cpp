// SPDX-License-Identifier: MIT
// The texts of the General Settings window, written down here once more, and what its keys do.
#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <set>

#include "hosts/qgis/widgets/texts.h"
#include "settings/frm_settings.h"
#include "settings/settings_fields.h"
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

// The window as it was drawn, beside the table of the fields.
TEST_F(SettingsWindow, HasAWidgetForEachFieldAndNoOther) {
    const qt::FormWindow window(form, prompts, nullptr);
    std::multiset<std::string> drawn;
    const auto add = [&](const auto& widgets) {
        for (const auto* drawnOne : widgets) {
            if (!drawnOne->objectName().isEmpty() && !drawnOne->objectName().startsWith("qt_")) {
                drawn.insert(drawnOne->objectName().toStdString());
            }
        }
    };
    add(window.findChildren<QLineEdit*>());
    add(window.findChildren<QComboBox*>());
    add(window.findChildren<QCheckBox*>());
    add(window.findChildren<QRadioButton*>());
    std::multiset<std::string> fields = {"cboRadiationUnit", "cboWindUnit"};  // have one entry each
    for (const SettingsField& field : settingsFields()) {
        SCOPED_TRACE(field.name);
        for (const FieldOption& option : field.options) {
            fields.emplace(option.control);
            widget<QRadioButton>(window, std::string(option.control).c_str());
        }
        if (!field.options.empty()) continue;
        const std::string name(field.control);
        fields.insert(name);
        if (field.kind == FieldKind::choice) {
            widget<QComboBox>(window, name.c_str());
        } else if (field.kind == FieldKind::flag) {
            widget<QCheckBox>(window, name.c_str());
        } else {
            widget<QLineEdit>(window, name.c_str());
        }
    }
    EXPECT_EQ(drawn, fields);
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
