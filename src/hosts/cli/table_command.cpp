// SPDX-License-Identifier: MIT
#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/table_text.h"
#include "hosts/results/zone_results.h"
#include "irrigation/frm_statistics.h"
#include "modelling/products.h"
#include "settings/run_state.h"

namespace velmora::cli {

namespace {

void chooseColumns(frmStatistics& form, const std::vector<std::string>& columns) {
    const auto& items = form.lstContent.items();
    for (const std::string& column : columns) {
        const auto found = std::ranges::find_if(
            items, [&](const std::string& item) { return sameIgnoringCase(item, column); });
        if (found == items.end()) {
            throw PlatformError("The table has no column " + column + ": choose from " +
                                joinedNames(items));
        }
        form.lstContent.choose(static_cast<std::size_t>(found - items.begin()));
    }
    form.cmdRefresh.click();
}

}  // namespace

int showTable(const Session& session, const std::string& name,
              const std::vector<std::string>& columns, TableForm form) {
    HeadlessApplication application(session.settingsFolder, session.terminal);
    const std::string table = withoutEnding(name, ".dbf");
    frmStatistics viewer(application, table);
    viewer.load();
    if (viewer.failed()) return kFailed;
    if (!columns.empty()) chooseColumns(viewer, columns);
    if (viewer.failed()) return kFailed;
    const bool ofZones = std::ranges::count(zoneTableNames(), table) > 0;
    if (ofZones) application.prompts().notice(zoneTableNote(table));
    if (session.json) {
        const auto file = application.platform().features().openTable(
            joinedPath(processState().settings.OutputWorkspace, table));
        const auto isNumber = [&](std::size_t column) {
            const int field = file->fieldIndex(viewer.dgdResult.columns()[column]);
            const FieldType type = file->fields().at(static_cast<std::size_t>(field)).type;
            return type == FieldType::number || type == FieldType::integer;
        };
        auto rows = rowsOf(viewer.dgdResult, isNumber);
        for (auto& row : rows) {
            if (ofZones) row["reading"] = zoneTableReading();
        }
        printJson(rows);
    } else if (form == TableForm::csv) {
        printData(csvText(viewer.dgdResult));
    } else {
        print("{}{}\n", alignedText(viewer.dgdResult), viewer.lblNote.text());
    }
    return kDone;
}

}  // namespace velmora::cli
