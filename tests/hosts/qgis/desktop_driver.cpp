// SPDX-License-Identifier: MIT
// A plugin that uses Velmora inside a real QGIS as a user would: it triggers the actions of the
// menus, types and clicks in the windows that open, answers the boxes, checks the project, and
// keeps a picture of every window. tests/hosts/qgis/desktop_test.sh starts it.
#include <dlfcn.h>
#include <malloc.h>
#include <qgisinterface.h>
#include <qgisplugin.h>
#include <qgscolorrampshader.h>
#include <qgslayertree.h>
#include <qgslayertreeview.h>
#include <qgsmapcanvas.h>
#include <qgsmessagebar.h>
#include <qgsmessagebaritem.h>
#include <qgsproject.h>
#include <qgsrasterlayer.h>
#include <qgsrastershader.h>
#include <qgssinglebandpseudocolorrenderer.h>
#include <qgsvectorlayer.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <functional>
#include <map>
#include <set>

namespace {

const QStringList kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const QStringList kSteps = {"Tarnwick.clsET_ReferenceET", "Tarnwick.clsET_CropCoefficient",
                            "Tarnwick.clsET_CropET",      "Tarnwick.clsPPT",
                            "Tarnwick.clsIR_NIR",         "Tarnwick.clsIR_EFF",
                            "Tarnwick.clsIR_IRR"};

// A layout of one label that tells when the label asks for another size, which it does at the
// moment when its text is set: no text is missed, however fast the next one follows.
class ListeningLayout : public QVBoxLayout {
  public:
    ListeningLayout(QWidget* frame, std::function<void()> changed)
        : QVBoxLayout(frame), changed_(std::move(changed)) {
        setContentsMargins(0, 0, 0, 0);
    }
    void invalidate() override {
        QVBoxLayout::invalidate();
        changed_();
    }

  private:
    std::function<void()> changed_;
};

class Driver : public QObject {
  public:
    explicit Driver(QgisInterface& desktop)
        : desktop_(desktop), window_(*qobject_cast<QMainWindow*>(desktop.mainWindow())) {
        qApp->installEventFilter(this);
        connect(QgsProject::instance(), &QgsProject::layerWasAdded, this,
                [this](QgsMapLayer* layer) {
                    if (running_) progress_ << "layer " + layer->name();
                });
    }
    // Waits for the main window: QGIS loads plugins long before it shows it, and handles events
    // meanwhile.
    void start() {
        if (!window_.isVisible()) return QTimer::singleShot(200, this, [this] { start(); });
        QTimer::singleShot(1500, this, [this] {
            watch();
            // A check that throws would end the process without a report.
            try {
                qgetenv("VELMORA_DRIVER_MODE") == "reload" ? reload() : useEverything();
            } catch (const std::exception& e) {
                check(false, QString("the driver stopped: ") + e.what());
            }
            report();
            QgsProject::instance()->setDirty(false);
            desktop_.actionExit()->trigger();
        });
    }

  private:
    // --- what is checked and kept ---------------------------------------------------------------

    void check(bool holds, const QString& what) {
        lines_ << (holds ? "ok      " : "FAILED  ") + what;
        if (!holds) ++failures_;
        fprintf(stderr, "%s\n", qPrintable(lines_.last()));
    }

    void report() {
        QFile file(out("report.txt"));
        if (!file.open(QIODevice::WriteOnly)) return;
        lines_ << QString("%1 checks, %2 failed").arg(lines_.size()).arg(failures_);
        file.write(lines_.join("\n").toUtf8() + "\n");
    }

    static QString in(const QString& name) { return qgetenv("VELMORA_DRIVER_IN") + "/" + name; }
    static QString out(const QString& name) { return qgetenv("VELMORA_DRIVER_OUT") + "/" + name; }

    // A picture of a window with its frame, or of what stands in front of it.
    void picture(QWidget& shown, const QString& name) {
        pictures_.insert(name);
        QTest::qWait(250);
        const QRect frame = shown.window()->frameGeometry();
        shown.window()
            ->screen()
            ->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height())
            .save(out(name + ".png"));
    }

    // --- windows that open ----------------------------------------------------------------------

    // Looks for a modal window that nobody has answered yet; boxes that open while one is being
    // answered are found too.
    void watch() {
        QTimer::singleShot(60, this, [this] {
            watch();
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal || answering_.contains(modal)) return;
            answering_.insert(modal);
            answer(*modal);
            answering_.remove(modal);
        });
    }

    void answer(QWidget& modal) {
        if (auto* box = qobject_cast<QMessageBox*>(&modal)) return answerBox(*box);
        if (auto* chooser = qobject_cast<QFileDialog*>(&modal)) {
            auto* name = chooser->findChild<QLineEdit*>("fileNameEdit");
            name->setText(file_);
            QTest::keyClick(name, Qt::Key_Return);
            return;
        }
        const auto found = users_.find(modal.objectName());
        if (found == users_.end()) {
            check(false,
                  "nobody uses the window " + modal.objectName() + " " + modal.windowTitle());
            modal.close();
            return;
        }
        found->second(modal);
    }

    void answerBox(QMessageBox& box) {
        boxes_ << box.text();
        const QString kind = box.text().section(' ', 0, 3);
        if (!seen_.contains(kind)) {
            seen_.insert(kind);
            picture(box, QString("box-%1").arg(seen_.size(), 2, 10, QChar('0')));
        }
        const bool asks = box.standardButtons().testFlag(QMessageBox::Yes);
        QTest::mouseClick(box.button(asks ? QMessageBox::Yes : QMessageBox::Ok), Qt::LeftButton);
    }

    // What the progress window says while a step works.
    void hearProgress(QLabel& label) {
        const QString text = label.text();
        if (!running_ || text.isEmpty() || text == heard_) return;
        heard_ = text;
        progress_ << text;
        if (text.contains("is ready") && !pictures_.contains("progress-monitor")) {
            picture(*label.window(), "progress-monitor");
        }
    }
    void listenTo(QLabel& label) {
        auto* frame = new QWidget;
        delete label.parentWidget()->layout()->replaceWidget(&label, frame);
        auto* layout = new ListeningLayout(frame, [this, &label] { hearProgress(label); });
        layout->addWidget(&label);
        frame->show();
        label.show();
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        if (!running_) return false;
        if (event->type() == QEvent::Show && object->objectName() == "frmMonitor") {
            listenTo(part<QLabel>(*qobject_cast<QWidget*>(object), "lblMessage"));
        }
        auto* label = event->type() == QEvent::Paint ? qobject_cast<QLabel*>(object) : nullptr;
        if (label && label->objectName() == "lblMessage") painted_.insert(label->text());
        return false;
    }

    // --- what a user does -----------------------------------------------------------------------

    QAction& action(const QString& name) {
        auto* found = window_.findChild<QAction*>(name);
        for (QAction* entry : desktop_.pluginMenu()->actions()) {
            if (!found && entry->menu()) found = entry->menu()->findChild<QAction*>(name);
        }
        if (!found) throw std::runtime_error("no action " + name.toStdString());
        return *found;
    }

    void run(const QString& name) {
        running_ = true;
        heard_.clear();
        progress_.clear();
        painted_.clear();
        action(name).trigger();
        running_ = false;
        QTest::qWait(200);
    }

    template <class Widget>
    static Widget& part(QWidget& window, const QString& name) {
        auto* found = window.findChild<Widget*>(name);
        if (!found) throw std::runtime_error("no widget " + name.toStdString());
        return *found;
    }
    static void click(QWidget& window, const QString& name) {
        QTest::mouseClick(&part<QWidget>(window, name), Qt::LeftButton);
    }
    static void type(QWidget& window, const QString& name, const QString& text) {
        auto& box = part<QLineEdit>(window, name);
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, text);
        QTest::keyClick(&box, Qt::Key_Tab);
    }
    void choose(QWidget& window, const QString& name, int entry) {
        auto& list = part<QComboBox>(window, name);
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window, 3000))
            check(false, window.objectName() + " is in front for " + name);
        list.setFocus(Qt::TabFocusReason);
        for (int i = 0; i < list.count() && list.currentIndex() != entry; ++i) {
            QTest::keyClick(&list, list.currentIndex() > entry ? Qt::Key_Up : Qt::Key_Down);
        }
    }
    // Presses a button that opens the catalogue and names the dataset there.
    void browse(QWidget& window, const QString& button, const QString& path) {
        users_["DatasetBrowser"] = [this, path](QWidget& browser) {
            auto& list = part<QListWidget>(browser, "lstDatasets");
            auto& look = part<QLineEdit>(browser, "txtLookIn");
            if (look.text() != QFileInfo(path).path()) {
                look.selectAll();
                QTest::keyClicks(&look, QFileInfo(path).path());
                click(browser, "cmdOpen");
            }
            if (!pictures_.contains("dataset-browser")) picture(browser, "dataset-browser");
            const auto found = list.findItems(QFileInfo(path).fileName(), Qt::MatchExactly);
            check(found.size() == 1, "the catalogue lists " + QFileInfo(path).fileName());
            if (found.size() != 1) {
                browser.close();
                return;
            }
            list.setCurrentItem(found.at(0));
            QTest::keyClick(&list, Qt::Key_Return);
        };
        click(window, button);
    }

    // --- the whole job --------------------------------------------------------------------------

    void useEverything() {
        window_.setGeometry(20, 40, 1240, 800);
        QTest::qWait(500);
        lookAtToolBar();
        stepsNeedSettings();
        fillSettings();
        runReferenceEt();
        makeKcMaps();
        runPlainSteps();
        fillEfficiency();
        runRequirement();
        lookAtProject();
        runAgain();
        pictureJuly();
        lookAtPluginMenu();
    }

    void lookAtToolBar() {
        auto* bar = window_.findChild<QToolBar*>("Zav Toolbar");
        check(bar != nullptr && bar->isVisible(), "the toolbar is there");
        if (!bar) throw std::runtime_error("no toolbar");
        check(bar->windowTitle() == "Velmora:  Water Use Estimation",
              "the toolbar has its caption");
        auto& button = part<QToolButton>(*bar, "Tarnwick.clsMenu_Zav_IR.button");
        check(button.text() == "Irrigation Water Use Estimation", "the drop-down has its caption");
        for (const char* menu : {"Tarnwick.clsMenu_Zav_IR_ET", "Tarnwick.clsMenu_Zav_IR_IRR"}) {
            QTimer::singleShot(700, this, [this, menu] {
                auto* root = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                if (!root) return check(false, "the drop-down opens");
                auto* sub = window_.findChild<QMenu*>(menu);
                root->setActiveAction(sub->menuAction());
                QTest::keyClick(root, Qt::Key_Right);
                picture(window_,
                        QString("menu-") + (QString(menu).endsWith("ET") ? "et" : "irrigation"));
                sub->close();
                root->close();
            });
            QTest::mouseClick(&button, Qt::LeftButton);
            QTest::qWait(200);
        }
        check(window_.findChildren<QToolBar*>("Zav Toolbar").size() == 1, "there is one toolbar");
        check(desktop_.messageBar()->currentItem() != nullptr, "a user without settings is guided");
    }

    void stepsNeedSettings() {
        boxes_.clear();
        for (const QString& step : kSteps) run(step);
        check(boxes_ == QStringList(QVector<QString>(7, "Run Settings First,Please!").toList()),
              "every step asks for settings first");
        check(QgsProject::instance()->count() == 0, "and does nothing else");
    }

    void fillSettings() {
        users_["frmSettings"] = [this](QWidget& window) {
            auto& pages = part<QTabWidget>(window, "tabPages");
            check(pages.currentIndex() == 0, "General Settings opens on its first page");
            browse(window, "cmdDEM", in("dem"));
            browse(window, "cmdWeatherStations", in("stations.shp"));
            type(window, "txtWeatherData", in("weather.dbf"));
            type(window, "txtKc", in("kc.dbf"));
            browse(window, "cmdLandCover", in("landcover.shp"));
            browse(window, "cmdZones", in("zones.shp"));
            choose(window, "cboZoneField", 0);
            check(part<QComboBox>(window, "cboZoneField").currentText() == "NAME",
                  "the zone field is chosen");
            type(window, "txtOutput", in("output"));
            picture(window, "settings-basic-data");

            pages.setCurrentIndex(1);
            browse(window, "cmdExtent", in("domain.shp"));
            check(part<QLineEdit>(window, "txtCellSize").text() == "200",
                  "a cell size is proposed");
            check(part<QLabel>(window, "lblCellsInWidth").text() == "250" &&
                      part<QLabel>(window, "lblCellsInHeight").text() == "300",
                  "the cells are counted");
            type(window, "txtYear", "2023");
            picture(window, "settings-extent-and-period");

            pages.setCurrentIndex(2);
            choose(window, "cboRefETMethod", 1);
            click(window, "cmdGetInfo");
            picture(window, "settings-reference-et");
            pages.setCurrentIndex(3);
            picture(window, "settings-precipitation");

            check(!part<QPushButton>(window, "cmdSaveAs").isEnabled(), "Save As waits for Apply");
            click(window, "cmdApply");
            check(part<QPushButton>(window, "cmdSaveAs").isEnabled(), "the settings are applied");
            file_ = in("saved.inf");
            click(window, "cmdSaveAs");
            check(QFile::exists(file_), "and saved under a name");
            click(window, "cmdOK");
        };
        run("Tarnwick.clsSettings");
        users_["frmSettings"] = [this](QWidget& window) {
            check(part<QLineEdit>(window, "txtDEM").text() == in("dem"),
                  "settings open as applied");
            check(part<QComboBox>(window, "cboZoneField").currentText() == "NAME",
                  "the stored zone field is shown");
            file_ = in("saved.inf");
            click(window, "cmdLoad");
            QTest::keyClick(&window, Qt::Key_Escape);
        };
        run("Tarnwick.clsSettings");
    }

    void runReferenceEt() {
        boxes_.clear();
        run(kSteps[0]);
        check(boxes_.size() == 1 && boxes_[0].startsWith("Time for estimating referece ET: "),
              "reference ET tells its time");
        const QStringList told = referenceEtTold(boxes_.value(0));
        check(progress_ == told,
              "the progress window tells all, and months appear as they are done");
        if (progress_ != told) showDifference(told);
        for (const QString& month : kMonths.mid(1, 10)) {
            check(painted_.contains(monthTold(month)), "it is painted at work: " + month);
        }
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() != "frmMonitor" || !top->isVisible()) continue;
            check(part<QPushButton>(*top, "cmdClose").isEnabled(), "the monitor can be closed");
            check(part<QLabel>(*top, "lblStatus").text() == "The step has ended.", "and tells why");
            picture(*top, "progress-monitor-done");
            check(top->isActiveWindow(), "the keyboard reaches it");
            QTest::keyClick(top, Qt::Key_Escape);
            check(!top->isVisible(), "Escape closes it");
        }
        const QgsRectangle shown = desktop_.mapCanvas()->extent();
        auto* first = layer("RefET_Jan_2");
        check(
            first && shown.contains(first->extent()) && shown.width() < 3 * first->extent().width(),
            "the first result is zoomed to");
    }

    static QString monthTold(const QString& month) {
        return "Reference ET in " + month + "are estimated successfully ...";
    }
    // The texts of the progress window and the layers of a year, in their order.
    static QStringList referenceEtTold(const QString& time) {
        QStringList all = {"Velmora is starting to run ...",
                           "Previous setttings has been loaded ...",
                           "Access MDB has been created for operations ..."};
        for (const QString& month : kMonths) {
            for (const char* surface : {"TM_", "TN_", "TD_"}) {
                all << surface + month + " is ready...";
            }
            all << "Interpolation of <Soalr radiation> is done!"
                << "Interpolation of <Wind Speed> is done!";
        }
        all << "All parameter layers are ready now..."
            << "use ASCE Std  Penman-Monteith (Short Crop: Grass) ...";
        for (const QString& month : kMonths)
            all << "layer RefET_" + month + "_2" << monthTold(month);
        return all << "Estimation of Reference ET is done ... " << time;
    }
    void showDifference(const QStringList& told) {
        for (int i = 0; i < std::max(told.size(), progress_.size()); ++i) {
            if (told.value(i) == progress_.value(i)) continue;
            check(false, QString("entry %1 is \"%2\", not \"%3\"")
                             .arg(i + 1)
                             .arg(progress_.value(i), told.value(i)));
            return;
        }
    }

    void makeKcMaps() {
        users_["frmKcEditor"] = [this](QWidget& window) {
            auto& grid = part<QTableView>(window, "grdKc");
            check(grid.model()->rowCount() == 9, "eight crops and a row for a new one");
            for (int i = 0; i < 2; ++i) click(window, "cmdForward");
            check(grid.currentIndex().row() == 2, "Forward goes to the next crop");
            click(window, "cmdBackward");
            click(window, "cmdListLuType");
            check(part<QComboBox>(window, "cboLuTypeList").count() == 8,
                  "the land use types are listed");
            click(window, "cmdMatch");
            click(window, "cmdSummary");
            check(part<QTableView>(window, "grdSummary").model()->rowCount() == 8,
                  "and summarized");
            type(window, "txtCellSize", "200");
            picture(window, "kc-map-maker");
            click(window, "cmdMakeMap");
            click(window, "cmdClose");
        };
        boxes_.clear();
        run(kSteps[1]);
        check(boxes_ == QStringList({"match-1", "match-2", "Joined_kc", "pre", in("output"), "post",
                                     "Kc_loop", "Kc-Maps have been generated successfully"}),
              "the boxes of the Kc maps: " + boxes_.join(" | "));
        QPushButton* copy = nullptr;
        for (auto* button : window_.findChildren<QPushButton*>()) {
            if (button->text() == "Copy" && button->isVisible()) copy = button;
        }
        check(copy != nullptr, "the copies that crop ET waits for are offered");
        check(said().contains("Estimate Crop ET reads Kc_Jan_2 under the name Kc_Jan."),
              "what is offered: " + said());
        picture(window_, "offered-copies");
        if (copy) QTest::mouseClick(copy, Qt::LeftButton);
        check(QFile::exists(in("output/Kc_Jul/hdr.adf")), "and made");
        users_["frmKcEditor"] = [](QWidget& window) { click(window, "cmdClose"); };
        run(kSteps[1]);
        check(!said().contains("reads"), "copies that stand are not offered again: " + said());
    }

    // What the message bar says.
    QString said() {
        auto* item = desktop_.messageBar()->currentItem();
        return item ? item->text() : QString();
    }

    void runPlainSteps() {
        boxes_.clear();
        run(kSteps[2]);
        auto* tree = QgsProject::instance()->layerTreeRoot();
        check(layer("ET_Dec_2") && !tree->findLayer(layer("ET_Dec_2"))->itemVisibilityChecked() &&
                  tree->findLayer(layer("ET_Oct_2"))->itemVisibilityChecked(),
              "a month without crops does not hide the last one with some");
        check(boxes_.size() == 14 && boxes_[0] == "Ready to create table" &&
                  boxes_[7] == "RefET_Jul_2",
              "crop ET tells its months: " + boxes_.join(" | "));
        run(kSteps[3]);
        check(boxes_.contains("PPT Calculation for Jul is Over!"),
              "precipitation tells its months");
        boxes_.clear();
        run(kSteps[4]);
        check(boxes_.isEmpty(), "the net requirement runs without a box: " + boxes_.join(" | "));
        check(said() == "Estimate Crop Water Requirement is done.", "but tells its end: " + said());
    }

    void fillEfficiency() {
        users_["frmEfficiency"] = [this](QWidget& window) {
            check(!part<QWidget>(window, "fraMap").isEnabled(), "the rest waits for Apply");
            picture(window, "efficiency-before-apply");
            click(window, "cmdApplyIRDB");
            auto& zones = part<QComboBox>(window, "cmbZone");
            check(zones.count() == 7, "six zones and None");
            type(window, "txtCvef", "0.9");
            for (int zone = 0; zone < 6; ++zone) choose(window, "cmbZone", zone);
            check(part<QTableView>(window, "dgdShares").model()->rowCount() == 9,
                  "the zone's eight crops and a row for a new one");
            click(window, "cmdCalFieldEf");
            picture(window, "efficiency");
            click(window, "cmdEFMap");
            click(window, "cmdClose");
        };
        boxes_.clear();
        run(kSteps[5]);
        check(boxes_.count("Add default IR percentage?") == 6, "each zone asks for its shares");
        check(boxes_.last().startsWith("EF map (IREF) generated successfully"), boxes_.last());
        check(action("velmora.copy.kc").text() == "Copy Kc Maps for Crop ET" &&
                  action("velmora.copy.kc").statusTip() ==
                      "Copy Kc_<month>_<method> to Kc_<month>, the names that the crop ET step "
                      "reads",
              "the entry that copies Kc maps");
        check(
            action("velmora.copy.eff").text() == "Copy Efficiency Map for Irrigation Requirement" &&
                action("velmora.copy.eff").statusTip() ==
                    "Copy IREF to faef_500, the name that the irrigation water requirement step "
                    "reads",
            "the entry that copies the efficiency map");
        action("velmora.copy.eff").trigger();
        check(QFile::exists(in("output/faef_500/hdr.adf")), "the efficiency map is copied");
    }

    void runRequirement() {
        users_["frmStatistics"] = [this](QWidget& window) {
            auto& table = part<QTableView>(window, "dgdResult");
            check(table.model()->rowCount() > 6 && table.model()->columnCount() == 6,
                  "the zone table is shown");
            picture(window, "zonal-results");
            auto& columns = part<QListWidget>(window, "lstContent");
            for (const int row : {0, 3, 5}) {
                QTest::mouseClick(columns.viewport(), Qt::LeftButton, {},
                                  columns.visualItemRect(columns.item(row)).center());
            }
            click(window, "cmdRefresh");
            check(table.model()->columnCount() == 3, "and its chosen columns");
            picture(window, "zonal-results-columns");
            part<QTabWidget>(window, "tabResults").setCurrentIndex(1);
            const QString account = part<QTextBrowser>(window, "accountText").toPlainText();
            check(account.startsWith("Water account, ") && account.contains("all land"),
                  "the water account is the second page: " + account.left(200));
            picture(window, "zonal-results-account");
            click(window, "cmdClose");
        };
        boxes_.clear();
        run(kSteps[6]);
        check(boxes_.isEmpty(), "the requirement runs without a box: " + boxes_.join(" | "));
    }

    QgsMapLayer* layer(const QString& name) {
        const auto found = QgsProject::instance()->mapLayersByName(name);
        return found.size() == 1 ? found.at(0) : nullptr;
    }

    void lookAtProject() {
        const std::map<QString, std::pair<QColor, QColor>> products = {
            {"RefET_%1_2", {QColor(0, 255, 0), QColor(50, 50, 100)}},
            {"Kc_%1_2", {QColor(0, 0, 255), QColor(0, 255, 0)}},
            {"ET_%1_2", {QColor(100, 50, 50), QColor(0, 255, 0)}},
            {"PPT_%1", {QColor(200, 50, 50), QColor(0, 255, 255)}},
            {"NIR_%1", {QColor(100, 50, 50), QColor(0, 255, 0)}},
            {"IRR_%1", {QColor(100, 50, 50), QColor(0, 255, 0)}}};
        for (const auto& [pattern, colors] : products) {
            for (const QString& month : kMonths) lookAtGrid(pattern.arg(month), colors);
        }
        for (const QString name : {"StatCET", "StatNIR", "StatIRR"}) {
            auto* table = qobject_cast<QgsVectorLayer*>(layer(name));
            check(table && !table->isSpatial() && table->featureCount() > 0 &&
                      table->fields().lookupField("ZoneUnit") >= 0,
                  name + " is a table of the project");
        }
        check(QgsProject::instance()->count() == 6 * 12 + 3,
              QString("%1 layers and tables in all").arg(QgsProject::instance()->count()));
    }

    void lookAtGrid(const QString& name, const std::pair<QColor, QColor>& colors) {
        auto* grid = qobject_cast<QgsRasterLayer*>(layer(name));
        if (!grid) return check(false, name + " is a layer");
        auto* look = dynamic_cast<QgsSingleBandPseudoColorRenderer*>(grid->renderer());
        auto* ramp = look
                         ? dynamic_cast<QgsColorRampShader*>(look->shader()->rasterShaderFunction())
                         : nullptr;
        if (!ramp) return check(false, name + " has a stretched ramp");
        const auto items = ramp->colorRampItemList();
        check(grid->source() == in("output/" + name) && items.size() == 256 &&
                  items.first().color == colors.first && items.last().color == colors.second &&
                  items.first().value <= items.last().value,
              name + " is shown stretched over its 256 colours");
    }

    // Results of a second run take the place of the first one's.
    void runAgain() {
        const int before = QgsProject::instance()->count();
        run(kSteps[4]);
        check(QgsProject::instance()->count() == before, "a second run adds no layer twice");
        check(layer("NIR_Jul") != nullptr, "and shows its results");
        int shown = 0;
        for (QgsLayerTreeLayer* node : QgsProject::instance()->layerTreeRoot()->findLayers()) {
            if (node->itemVisibilityChecked() && qobject_cast<QgsRasterLayer*>(node->layer()))
                ++shown;
        }
        check(shown == 1, QString("the newest of the results is shown alone (%1)").arg(shown));
        const QStringList left = QDir(in("output")).entryList({"*.aux.xml"});
        check(left.isEmpty(), "QGIS leaves no statistics beside the grids: " + left.join(' '));
    }

    void pictureJuly() {
        QgsLayerTree* tree = QgsProject::instance()->layerTreeRoot();
        if (auto* browser = window_.findChild<QDockWidget*>("Browser")) browser->hide();
        for (const auto& [name, shown] : std::map<QString, QString>{
                 {"RefET_Jul_2", "map-refet-july"}, {"IRR_Jul", "map-irr-july"}}) {
            for (QgsLayerTreeLayer* node : tree->findLayers()) {
                node->setItemVisibilityChecked(node->name() == name);
                node->setExpanded(node->name() == name);
            }
            desktop_.messageBar()->clearWidgets();
            desktop_.setActiveLayer(layer(name));
            auto* view = desktop_.layerTreeView();
            view->scrollTo(view->currentIndex(), QAbstractItemView::PositionAtTop);
            check(drawn(layer(name)), "the map draws " + name);
            picture(window_, shown);
            const QImage map = desktop_.mapCanvas()->grab().toImage();
            std::set<QRgb> colors;
            for (int x = 0; x < map.width(); x += 3) {
                for (int y = 0; y < map.height(); y += 3) colors.insert(map.pixel(x, y));
            }
            check(colors.size() > 40,
                  QString("the map shows %1 (%2 colours)").arg(name).arg(colors.size()));
        }
    }

    // Draws the map with this layer alone and waits for its end.
    bool drawn(QgsMapLayer* layer) {
        auto* canvas = desktop_.mapCanvas();
        const auto shows = [&] { return canvas->layers() == QList<QgsMapLayer*>{layer}; };
        if (!QTest::qWaitFor(shows, 60000)) return false;
        canvas->stopRendering();
        bool ended = false;
        QObject here;
        connect(canvas, &QgsMapCanvas::mapCanvasRefreshed, &here, [&] { ended = true; });
        canvas->refresh();
        return QTest::qWaitFor([&] { return ended && !canvas->isDrawing(); }, 60000);
    }

    void lookAtPluginMenu() {
        action("velmora.about").trigger();
        action("velmora.help").trigger();
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (!top->windowTitle().startsWith("Velmora: User Guide")) continue;
            check(top->isVisible(), "the guide opens");
            picture(*top, "user-guide");
            top->close();
        }
        file_ = out("sample");
        QDir().mkpath(file_);
        QgsProject::instance()->clear();
        boxes_.clear();
        action("velmora.openSample").trigger();
        check(boxes_.size() == 1 && boxes_[0].contains("before-sample-basin.inf"),
              "the sample asks before it takes the place of settings");
        for (const char* name : {"dem", "zones", "landcover", "stations"}) {
            check(layer(name) != nullptr, QString("the sample shows its ") + name);
        }
        const QString home = qgetenv("XDG_CONFIG_HOME") + "/velmora";
        check(QFile::exists(home + "/before-sample-basin.inf"), "and keeps them");
        QTest::qWait(1500);
        picture(window_, "sample-basin");
        boxes_.clear();
        QFile::remove(file_ + "/velmora-basin/kc.dbf");
        action("velmora.openSample").trigger();
        check(boxes_.isEmpty() && !QFile::exists(file_ + "/velmora-basin/kc.dbf"),
              "opened again it is as its user left it");
        boxes_.clear();
        run(kSteps[0]);
        check(boxes_.size() == 1 && layer("RefET_Jul_2"), "and its reference ET runs");
    }

    // --- coming and going -----------------------------------------------------------------------

    void reload() {
        using Registry = void*;
        const auto instance = reinterpret_cast<Registry (*)()>(
            dlsym(RTLD_DEFAULT, "_ZN17QgsPluginRegistry8instanceEv"));
        const auto load = reinterpret_cast<void (*)(Registry, const QString&)>(
            dlsym(RTLD_DEFAULT, "_ZN17QgsPluginRegistry13loadCppPluginERK7QString"));
        const auto unload = reinterpret_cast<void (*)(Registry, const QString&)>(
            dlsym(RTLD_DEFAULT, "_ZN17QgsPluginRegistry15unloadCppPluginERK7QString"));
        if (!instance || !load || !unload) return check(false, "QGIS's plugin registry is found");
        const QString plugin = qgetenv("VELMORA_DRIVER_PLUGIN");
        const QString name = QFileInfo(plugin).baseName();
        void* library = dlopen(qgetenv("VELMORA_DRIVER_LIBRARY"), RTLD_NOW | RTLD_LOCAL);
        const auto canUnload =
            reinterpret_cast<int (*)()>(library ? dlsym(library, "DllCanUnloadNow") : nullptr);
        if (!canUnload) return check(false, "the extension library is found");
        const auto bars = [&] { return window_.findChildren<QToolBar*>("Zav Toolbar").size(); };
        const auto entries = [&] { return desktop_.pluginMenu()->actions().size(); };
        const int entriesBefore = entries();
        int objects = 0;
        std::size_t bytes = 0;
        for (int i = 0; i < 10; ++i) {
            load(instance(), plugin);
            QTest::qWait(100);
            check(bars() == 1 && canUnload() == 1,
                  QString("load %1: the toolbar is there").arg(i + 1));
            users_["frmSettings"] = [](QWidget& window) { click(window, "cmdCancel"); };
            if (i < 4) {  // windows of QGIS cost some memory of their own
                run("Tarnwick.clsSettings");
                action("velmora.help").trigger();
            }
            unload(instance(), name);
            QTest::qWait(100);
            check(bars() == 0 && canUnload() == 0,
                  "unloaded: no toolbar, no object of the library");
            check(entries() == entriesBefore, "and nothing under Plugins");
            check(desktop_.messageBar()->items().isEmpty(), "nor in the message bar");
            if (i == 3) {
                objects = window_.findChildren<QObject*>().size();
                bytes = mallinfo2().uordblks;
            }
        }
        const auto grown = static_cast<long>(mallinfo2().uordblks) - static_cast<long>(bytes);
        const auto more = window_.findChildren<QObject*>().size() - objects;
        check(more <= 0, QString("six more rounds leave %1 more objects in the window").arg(more));
        check(grown < 600000, QString("and %1 more bytes in use").arg(grown));
    }

    QgisInterface& desktop_;
    QMainWindow& window_;
    QStringList lines_;
    int failures_ = 0;
    QSet<QWidget*> answering_;
    std::map<QString, std::function<void(QWidget&)>> users_;  // by the name of the window
    QStringList boxes_;                                       // texts in their order
    QSet<QString> seen_;
    QSet<QString> pictures_;
    QString file_;  // what the next file chooser gets
    bool running_ = false;
    QString heard_;          // the progress window's text
    QStringList progress_;   // texts of the progress window and new layers, as they came
    QSet<QString> painted_;  // texts that were painted
};

class DriverPlugin : public QgisPlugin {
  public:
    explicit DriverPlugin(QgisInterface& desktop) : driver_(desktop) {}
    void initGui() override { driver_.start(); }
    void unload() override {}

  private:
    Driver driver_;
};

const QString kName = "Velmora desktop test";

}  // namespace

extern "C" {
QgisPlugin* classFactory(QgisInterface* desktop) { return new DriverPlugin(*desktop); }
const QString* name() { return &kName; }
const QString* description() { return &kName; }
const QString* category() { return &kName; }
const QString* version() { return &kName; }
int type() { return QgisPlugin::UI; }
void unload(QgisPlugin* plugin) { delete plugin; }
}
