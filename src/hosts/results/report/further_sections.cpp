// SPDX-License-Identifier: MIT
#include "hosts/results/report/further_sections.h"

#include "gis/errors.h"
#include "hosts/results/account/account_section.h"
#include "hosts/results/report/html.h"
#include "hosts/results/standard/standard_differences.h"
#include "hosts/results/validation/validation_forms.h"

namespace velmora {

namespace {

std::string notMade(const std::string& id, const std::string& title, const std::string& why,
                    std::vector<std::string>* missing) {
    if (missing) missing->push_back("The report lacks \"" + title + "\": " + why);
    return "<h2 id=\"" + id + "\">" + escaped(title) +
           "</h2>\n<p class=\"error\">Not made: " + escaped(why) + "</p>\n";
}

}  // namespace

std::string waterAccount(IPlatform& platform, const RunResults& results,
                         std::vector<std::string>* missing) {
    if (!results.account) return notMade("account", "Water account", results.noAccount, missing);
    try {
        const Account& account = *results.account;
        std::string html = accountSection(account, annexOf(platform, account), usUnits());
        if (missing) {
            for (const std::string& text : unclosed(residualsOf(account))) missing->push_back(text);
        }
        return html;
    } catch (const PlatformError& e) {
        return notMade("account", "Water account", e.what(), missing);
    }
}

std::string papersChoices(IPlatform& platform, const RunResults& results,
                          std::vector<std::string>* missing) {
    const Product& reference = productMadeBy("refet");
    try {
        std::string html =
            standardSection(standardDifferences(platform, results.settingsOf(reference)));
        if (html.empty()) return html;
        const std::size_t body = html.find("</h2>") + 5;
        return html.substr(0, body) + "<details><summary>By month and zone</summary>" +
               html.substr(body) + "</details>\n";
    } catch (const PlatformError& e) {
        return notMade("standard", "By the papers' choices", e.what(), missing);
    }
}

std::string publishedFiguresSection(std::vector<std::string>* missing) {
    const std::vector<ComparedGroup> groups = compared(publishedFigures());
    if (missing && !allWithin(groups)) {
        missing->push_back("Published figures are not met: velmora validate lists them");
    }
    return validationSection(groups);
}

}  // namespace velmora
