// SPDX-License-Identifier: MIT
#include "hosts/qgis/plugin/plugin_menu.h"

#include <qgisinterface.h>
#include <qgsmessagebar.h>
#include <qgsmessagebaritem.h>

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <exception>

#include "examples/basin/sample_basin.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/chain/steps.h"
#include "hosts/qgis/widgets/help_window.h"
#include "hosts/qgis/widgets/texts.h"
#include "plugin_version.h"
#include "settings/fill_form.h"
#include "settings/frm_settings.h"
#include "settings/settings_file.h"
#include "settings/stored_settings.h"

namespace velmora::qgis {

using qt::toQt;

namespace {

constexpr const char* kSettingsCommand = "Tarnwick.clsSettings";
constexpr const char* kEfficiencyCommand = "Tarnwick.clsIR_EFF";

// The settings as they stand. Throws PlatformError when there are none.
RunSettings currentSettings(IApplication& application) {
    return requiredSettings(application.platform().files(), application.extensionFolder());
}

// "Copy IREF to faef_500, the name that the irrigation water requirement step reads"
QString copyingTip(const Product& product) {
    std::string reader(firstMadeOf(product)->quantity);
    if (reader.starts_with("the ")) reader.erase(0, 4);
    return toQt("Copy " + namePattern(product.made) + " to " + namePattern(product.read) +
                ", the name" + (product.read.monthly ? "s" : "") + " that the " + reader +
                " step reads");
}

// Where settings are kept that the sample's displace: beside them, under a name that is not taken.
std::string freeName(const IFileSystem& files, const std::string& folder) {
    std::string name = joinedPath(folder, "before-sample-basin.inf");
    for (int i = 2; files.fileExists(name); ++i) {
        name = joinedPath(folder, "before-sample-basin-" + std::to_string(i) + ".inf");
    }
    return name;
}

}  // namespace

PluginMenu::PluginMenu(QgisInterface& desktop, qt::DesktopApplication& application,
                       QgisDocument& document, std::function<void()> openSettings,
                       std::function<QString(const std::string& progId)> captionOf)
    : desktop_(desktop),
      application_(application),
      document_(document),
      openSettings_(std::move(openSettings)),
      captionOf_(std::move(captionOf)),
      menu_(std::make_unique<QMenu>("Velmora")) {
    add("openSample", "Open Sample Basin...", "Make the sample basin and its settings, and show it",
        [this] { openSample(); });
    for (const Product& product : products()) {
        if (product.made == product.read) continue;
        add("copy." + toQt(std::string(product.maker)), toQt(std::string(product.copying)),
            copyingTip(product), [this, &product] { copyGridsOf(product); });
    }
    add("help", "Help", "Open the user guide", [this] { help(); });
    add("about", "About Velmora", "Version and licence", [this] { about(); });
    // A menu that QGIS makes for a plugin would stay in its window when the plugin is gone.
    desktop.pluginMenu()->addMenu(menu_.get());
}

PluginMenu::~PluginMenu() {
    if (said_) desktop_.messageBar()->popWidget(said_);
    delete helpWindow_;
}

void PluginMenu::add(const QString& name, const QString& text, const QString& statusTip,
                     const std::function<void()>& action) {
    QAction* entry = menu_->addAction(text);
    entry->setObjectName("velmora." + name);
    entry->setStatusTip(statusTip);
    connect(entry, &QAction::triggered, this, [this, action] { attempt(action); });
}

void PluginMenu::attempt(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& e) {
        application_.prompts().message(e.what());
    }
}

void PluginMenu::say(const QString& text, const std::vector<Answer>& answers) {
    if (said_) desktop_.messageBar()->popWidget(said_);
    QgsMessageBarItem* item = QgsMessageBar::createMessage("Velmora", text);
    for (const Answer& answer : answers) {
        auto* button = new QPushButton(answer.text, item);
        connect(button, &QPushButton::clicked, this, [this, given = answer.action] {
            const auto action = given;  // what is said goes, and the button with it
            if (said_) desktop_.messageBar()->popWidget(said_);
            attempt(action);
        });
        item->layout()->addWidget(button);
    }
    said_ = item;
    desktop_.messageBar()->pushItem(item);
}

void PluginMenu::guide() {
    const std::string path = defaultSettingsPath(application_.extensionFolder());
    if (application_.platform().files().fileExists(path)) return;
    say("Begin with General Settings, or try the sample basin.",
        {{"General Settings", openSettings_}, {"Open Sample Basin", [this] { openSample(); }}});
}

void PluginMenu::commandEnded(const std::string& progId, const QString& caption) {
    application_.dialogs().raiseShown();
    attempt([&] {
        if (offerCopies(progId)) return;
        const bool tells = progId != kSettingsCommand && progId != kEfficiencyCommand;
        if (tells && application_.outcome() == StepOutcome::done) say(caption + " is done.", {});
    });
}

// True when there is something to copy for the next step.
bool PluginMenu::offerCopies(const std::string& progId) {
    const std::string step = stepOfProgId(progId);
    if (step.empty()) return false;
    const Product& product = productMadeBy(step);
    if (product.made == product.read) return false;
    const auto settings =
        storedSettings(application_.platform().files(), application_.extensionFolder());
    if (!settings) return false;
    std::vector<StepInputs::Copy> names;
    for (const GridCopy& copy :
         copiesOfProduct(application_.platform(), *settings, product, false)) {
        if (copy.isOffered()) names.push_back(copy.names);
    }
    if (names.empty()) return false;
    const QString reader = captionOf_(progIdOf(std::string(firstMadeOf(product)->maker)));
    say(reader + " reads " + toQt(names.front().made) + " under the name " +
            toQt(names.front().read) + ".",
        {{"Copy", [this, names] { copy(names); }}});
    return true;
}

void PluginMenu::openSample() {
    const std::string given =
        menu_->findChild<QAction*>("velmora.openSample")->data().toString().toStdString();
    if (!given.empty()) return openSampleIn(given);
    const std::string parent =
        application_.browsers().browseFolder("Select a folder for the sample basin");
    if (!parent.empty()) openSampleIn(joinedPath(parent, "velmora-basin"));
}

// A sample that is there already is opened as it is, with what its user has changed in it.
void PluginMenu::openSampleIn(const std::string& folder) {
    if (!applySample(folder)) return;
    showSample(folder);
    say("The sample basin is ready: run the menu's steps from top to bottom.",
        {{"General Settings", openSettings_}});
}

// The settings of the sample, filled in as a user would; false when the user keeps others.
bool PluginMenu::applySample(const std::string& folder) {
    IFileSystem& files = application_.platform().files();
    const std::string stored = defaultSettingsPath(application_.extensionFolder());
    const bool others = files.fileExists(stored);
    const std::string lastInput = joinedPath(folder, "IrDB.mdb");
    if (others && files.fileExists(lastInput) &&
        readSettings(files, stored).Zones == joinedPath(folder, "zones.shp")) {
        return true;
    }
    if (others) {
        const std::string kept = freeName(files, application_.extensionFolder());
        const std::string question =
            "The settings of the sample basin take the place of yours, which are kept in\n" + kept +
            "\nOpen the sample basin?";
        if (!application_.prompts().confirm(question, "Open Sample Basin")) return false;
        files.copyFile(stored, kept);
    }
    if (!files.fileExists(lastInput)) examples::makeSampleBasin(application_.platform(), folder);
    frmSettings form(application_);
    form.load();
    for (const std::string& assignment : examples::sampleSettings(folder)) {
        const auto equals = assignment.find('=');
        fillIn(form, *findSettingsField(assignment.substr(0, equals)),
               assignment.substr(equals + 1));
    }
    form.cmdApply.click();
    form.close();
    return true;
}

void PluginMenu::showSample(const std::string& folder) {
    auto terrain = document_.createRasterLayer(joinedPath(folder, "dem"));
    terrain->setStretchedRenderer({{60, 100, 60}, {245, 240, 225}, 1, 256});
    document_.addLayer(std::move(terrain));
    document_.addShapefile(joinedPath(folder, "landcover.shp"), "235,240,200,220", "0,0,0,0");
    document_.addShapefile(joinedPath(folder, "zones.shp"), "40,40,40,255", "0,0,0,0");
    document_.addShapefile(joinedPath(folder, "stations.shp"), "255,255,255,255", "190,40,40,255");
    document_.refreshContents();
}

void PluginMenu::copyGridsOf(const Product& product) {
    copy(copiesOf(product, currentSettings(application_)));
}

void PluginMenu::copy(const std::vector<StepInputs::Copy>& names) {
    const std::string folder = currentSettings(application_).OutputWorkspace;
    if (names.empty()) throw PlatformError("The settings name no months to copy for");
    for (const auto& name : names) copyToName(application_.platform(), folder, name);
    const QString more = names.size() > 1 ? " ... " + toQt(names.back().made) : QString();
    const QString to = names.size() > 1 ? " ... " + toQt(names.back().read) : QString();
    say(toQt(names.front().made) + more + " copied to " + toQt(names.front().read) + to + ".", {});
}

void PluginMenu::help() {
    if (!helpWindow_) helpWindow_ = new qt::HelpWindow(desktop_.mainWindow());
    helpWindow_->show();
    helpWindow_->raise();
}

void PluginMenu::about() {
    QMessageBox box(
        QMessageBox::NoIcon, "About Velmora",
        "Velmora " VELMORA_PLUGIN_VERSION
        "\n\nRegional evapotranspiration and irrigation water use as monthly grids: six "
        "reference ET equations, crop coefficients, precipitation, irrigation "
        "efficiency and zone tables in acre-feet.\n\nMIT licence.",
        QMessageBox::Ok, desktop_.mainWindow());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace velmora::qgis
