// SPDX-License-Identifier: MIT
#include "hosts/cli/commands.h"
#include "hosts/results/departures/departures_page.h"
#include "hosts/results/validation/validation_forms.h"

namespace velmora::cli {

int showComparison(const Session& session, ValidationForm form,
                   const std::vector<ComparedGroup>& groups) {
    if (session.json) {
        printJson(validationJson(groups));
    } else if (form == ValidationForm::markdown) {
        printData(validationPage(groups));
    } else {
        printText(form == ValidationForm::summary ? validationSummary(groups)
                                                  : validationText(groups));
    }
    return allWithin(groups) ? kDone : kFailed;
}

int validate(const Session& session, ValidationForm form) {
    if (form != ValidationForm::departures) {
        return showComparison(session, form, compared(publishedFigures()));
    }
    printData(departuresPage());
    return kDone;
}

}  // namespace velmora::cli
