// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "crop/frm_kc_editor.h"
#include "crop/kc_table.h"
#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/table_text.h"
#include "hosts/components/loaded_extension.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"
#include "shell/interfaces.h"

namespace velmora::cli {

namespace {

void useOptions(Form& form, const KcOptions& options) {
    if (!options.table.empty()) {
        form.control<TextBox>("txtKcDBName").enter(wholePath(options.table));
    }
    if (!options.field.empty()) {
        auto& fields = form.control<ListBox>("cboFieldList");
        const auto found = std::ranges::find_if(fields.items(), [&](const std::string& item) {
            return sameIgnoringCase(item, options.field);
        });
        if (found == fields.items().end()) {
            throw PlatformError("The land cover has no field " + options.field +
                                    ": choose one of " + joinedNames(fields.items()),
                                {.field = options.field});
        }
        fields.select(static_cast<int>(found - fields.items().begin()));
    }
    if (!options.cellSize.empty()) {
        form.control<TextBox>("txtCellSize").enter(options.cellSize);
    }
}

// Opens the form behind the run gate and lets `use` work with it; 1 when it refused something. A
// table that is named, or that is to be made, stands in for the settings', which may not be there.
int withEditor(const Session& session, const KcOptions& options,
               const std::function<void(frmKcEditor&, HeadlessApplication&)>& use,
               bool makesTable = false) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (!passRunGate(application)) return kFailed;
    RunSettings settings = processState().settings;
    if (makesTable) settings.KcTable.clear();
    if (!options.table.empty()) settings.KcTable = wholePath(options.table);
    frmKcEditor form(application, settings);
    form.load();
    if (form.failed()) return kFailed;
    useOptions(form, {{}, options.field, options.cellSize});
    use(form, application);
    const bool failed = form.failed();
    form.close();
    return failed ? kFailed : kDone;
}

// "Kc_Jan" as "Jan".
std::string kcHeading(const std::string& name) { return isKcField(name) ? name.substr(3) : name; }

}  // namespace

int kcNew(const Session& session, const std::string& file) {
    return withEditor(
        session, {},
        [&](frmKcEditor& form, HeadlessApplication& application) {
            application.browsers().answer(wholePath(file));
            form.cmdCreateDB.click();
            if (!form.failed()) {
                sayDone(session, "{} is made; velmora settings apply KcTable={} uses it\n",
                        form.txtKcDBName.text(), shellWord(form.txtKcDBName.text()));
            }
        },
        true);
}

int kcList(const Session& session, const KcOptions& options) {
    return withEditor(session, options, [&](frmKcEditor& form, HeadlessApplication&) {
        const bool withLand = !form.txtLandCover.text().empty();
        if (withLand) form.cmdSummary.click();
        if (form.failed()) return;
        if (session.json) {
            nlohmann::ordered_json both;
            both["table"] = rowsOf(form.grdKc);
            both["landUse"] = rowsOf(form.grdSummary);
            printJson(both);
            return;
        }
        print("{}\n", form.txtKcDBName.text());
        print("{}", alignedText(form.grdKc, kcHeading));
        if (withLand) {
            print("\n{} (field {})\n", form.txtLandCover.text(), form.cboFieldList.text());
            print("{}", alignedText(form.grdSummary));
        }
    });
}

int kcMatch(const Session& session, const KcOptions& options) {
    return withEditor(session, options, [&](frmKcEditor& form, HeadlessApplication&) {
        const std::size_t before = form.grdKc.rowCount();
        form.cmdListLuType.click();
        if (form.failed()) return;
        form.cmdMatch.click();
        if (form.failed()) return;
        sayDone(session, "{} land use types, {} new crop types in {}\n",
                form.cboLuTypeList.items().size(), form.grdKc.rowCount() - before,
                form.txtKcDBName.text());
        for (std::size_t row = before; row < form.grdKc.rowCount(); ++row) {
            sayDone(session, "  {}\n", oneLine(form.grdKc.cell(row, 0)));
        }
    });
}

int kcSet(const Session& session, const KcOptions& options, const std::string& crop,
          const std::vector<std::string>& assignments, bool isNew) {
    return withEditor(session, options, [&](frmKcEditor& form, HeadlessApplication&) {
        const DataGrid& grid = form.grdKc;
        std::size_t row = 0;
        while (row < grid.rowCount() && grid.cell(row, 0) != crop) ++row;
        if (row == grid.rowCount()) {
            if (!isNew) {
                throw PlatformError("The table has no crop type \"" + crop +
                                    "\": see velmora kc list, or add it with --new");
            }
            form.grdKc.edit(row, 0, crop);
            if (form.failed()) return;
        }
        for (const std::string& assignment : assignments) {
            const auto equals = assignment.find('=');
            const std::string month = assignment.substr(0, equals);
            const auto column = std::ranges::find_if(grid.columns(), [&](const std::string& c) {
                return sameIgnoringCase(c, "Kc_" + month);
            });
            if (equals == std::string::npos || column == grid.columns().end()) {
                throw PlatformError(assignment + ": give Month=Coefficient, as in Jul=1.15");
            }
            form.grdKc.edit(row, static_cast<std::size_t>(column - grid.columns().begin()),
                            assignment.substr(equals + 1));
            if (form.failed()) {
                form.cmdSave.setEnabled(false);  // all of it or nothing
                return;
            }
        }
        form.cmdSave.click();
    });
}

void pressMakeKcMaps(const Session& session, Form& form, const KcOptions& options) {
    useOptions(form, options);
    if (!session.terminal.quiet) {
        tell("Kc maps of field {} of {} with {}\n", form.control<ListBox>("cboFieldList").text(),
             form.control<TextBox>("txtLandCover").text(),
             form.control<TextBox>("txtKcDBName").text());
    }
    form.control<CommandButton>("cmdMakeMap").click();
}

int kcMaps(const Session& session, const KcOptions& options) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    application.dialogs().driver = [&](Form& form) { pressMakeKcMaps(session, form, options); };
    const LoadedExtension extension;
    const auto command = extension.create<ICommand>("Tarnwick.clsET_CropCoefficient");
    command->OnCreate(&application);
    command->OnClick();
    return application.outcome() == StepOutcome::done ? kDone : kFailed;
}

}  // namespace velmora::cli
