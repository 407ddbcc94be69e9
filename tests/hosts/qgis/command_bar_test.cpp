// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/command_bar.h"

#include <dlfcn.h>

#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QToolButton>

#include "hosts/qgis/widgets/desktop_application.h"
#include "settings/settings_file.h"
#include "tests/hosts/qgis/qt_fixture.h"

namespace velmora::test {
namespace {

// The extension in a main window, as a plugin holds it.
struct Held {
    explicit Held(QMainWindow& window, const std::string& folder)
        : application(&window, document, folder),
          bar(extension, "Tarnwick.clsToolBar_Zav", application, &window,
              [this](const std::string& progId) { ended.push_back(progId); }) {
        window.addToolBar(&bar.toolBar());
    }
    LoadedExtension extension;
    FakeDocument document;
    std::vector<std::string> ended;
    qt::DesktopApplication application;
    qt::CommandBar bar;
};

struct Bar : QtTest {
    Bar() {
        qputenv("VELMORA_LIBRARY", VELMORA_LIBRARY_FILE);
        qputenv("XDG_CONFIG_HOME", folder.file("config").c_str());
    }
    ~Bar() override {
        qunsetenv("VELMORA_LIBRARY");
        qunsetenv("XDG_CONFIG_HOME");
    }
    TempFolder folder;
    QMainWindow window;
};

// "caption" of an item, "> caption" of a menu with its items behind it, "-" of a separator.
QStringList itemsOf(const QWidget& owner) {
    QStringList items;
    for (const QAction* action : owner.actions()) {
        if (action->isSeparator()) {
            items << "-";
        } else if (const QMenu* menu = action->menu()) {
            items << "> " + action->text() << itemsOf(*menu) << "<";
        } else {
            items << action->text();
        }
    }
    return items;
}

TEST_F(Bar, ShowsWhatTheExtensionDeclares) {
    const Held held(window, folder.file("settings"));
    const QToolBar& bar = held.bar.toolBar();
    EXPECT_EQ(bar.objectName(), "Zav Toolbar");
    EXPECT_EQ(bar.windowTitle(), "Velmora:  Water Use Estimation");
    const auto& button = widget<QToolButton>(bar, "Tarnwick.clsMenu_Zav_IR.button");
    EXPECT_EQ(button.text(), "Irrigation Water Use Estimation");
    EXPECT_EQ(itemsOf(*button.menu()), (QStringList{"General Settings",
                                                    "-",
                                                    "> Evapotranspiration Estimation",
                                                    "Calculate Reference ET",
                                                    "-",
                                                    "Make Kc Maps",
                                                    "-",
                                                    "Estimate Crop ET",
                                                    "<",
                                                    "-",
                                                    "Precipitation Estimation",
                                                    "-",
                                                    "> Crop Irrigation Water Requirement",
                                                    "-",
                                                    "Estimate Crop Water Requirement",
                                                    "-",
                                                    "Estimate Irrigation Efficiency",
                                                    "-",
                                                    "Estimate Irrigation Water Requirement",
                                                    "<"}));
    EXPECT_EQ(held.bar.action("Tarnwick.clsSettings")->statusTip(),
              "Make settings for model running");
    EXPECT_EQ(held.bar.action("Tarnwick.clsIR_EFF")->statusTip(), "Show the Results");
    EXPECT_TRUE(held.bar.action("Tarnwick.clsET_CropET")->statusTip().isEmpty());
    EXPECT_EQ(held.bar.action("Tarnwick.clsNone"), nullptr);
}

TEST_F(Bar, AnActionClicksItsCommandAndTellsItsEnd) {
    const Held held(window, folder.file("settings"));
    withModal(
        [](QWidget& box) {
            EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(), "Run Settings First,Please!");
            QTest::keyClick(&box, Qt::Key_Return);
        },
        [&] { held.bar.action("Tarnwick.clsPPT")->trigger(); });
    EXPECT_EQ(held.ended, std::vector<std::string>{"Tarnwick.clsPPT"});
    EXPECT_EQ(held.application.outcome(), StepOutcome::failed);
}

TEST_F(Bar, OneCommandRunsAtATime) {
    const Held held(window, folder.file("settings"));
    withModal(
        [&](QWidget& box) {
            held.bar.action("Tarnwick.clsSettings")->trigger();  // passed over
            EXPECT_EQ(QApplication::activeModalWidget(), &box);
            QTest::keyClick(&box, Qt::Key_Return);
        },
        [&] { held.bar.action("Tarnwick.clsPPT")->trigger(); });
    EXPECT_EQ(held.ended.size(), 1U);
}

// A line without a box, before the step's own.
TEST_F(Bar, AStepsInputsAreLookedAtBeforeIt) {
    Held held(window, folder.file("settings"));
    std::vector<std::string> lines;
    held.application.prompts().showLine = [&](qt::QtPrompts::Level, const std::string& text) {
        lines.push_back(text);
    };
    IFileSystem& files = held.application.platform().files();
    files.createFolder(folder.file("settings"));
    writeSettings(files, defaultSettingsPath(folder.file("settings")), RunSettings());
    withModal(
        [&](QWidget& box) {
            ASSERT_FALSE(lines.empty());
            EXPECT_TRUE(lines[0].ends_with("in the inputs: velmora check shows them")) << lines[0];
            QTest::keyClick(&box, Qt::Key_Return);
        },
        [&] { held.bar.action("Tarnwick.clsPPT")->trigger(); });
}

// Nothing of the extension outlives its host: no object of the library, no child of the window.
TEST_F(Bar, ComesAndGoesTenTimes) {
    void* library = dlopen(VELMORA_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr);
    const auto canUnload = reinterpret_cast<HResult (*)()>(dlsym(library, "DllCanUnloadNow"));
    QMainWindow fresh;
    const auto before = window.findChildren<QObject*>().size();
    for (int i = 0; i < 10; ++i) {
        {
            const Held held(window, folder.file("settings"));
            EXPECT_EQ(canUnload(), S_FALSE);
            withModal([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                      [&] { held.bar.action("Tarnwick.clsSettings")->trigger(); });
        }
        EXPECT_EQ(canUnload(), S_OK);
        EXPECT_TRUE(window.findChildren<QToolBar*>().isEmpty());
        if (i == 0) continue;  // a window's layout for toolbars comes with the first one
        EXPECT_LE(window.findChildren<QObject*>().size(), before + 2);
    }
    dlclose(library);
}

}  // namespace
}  // namespace velmora::test
