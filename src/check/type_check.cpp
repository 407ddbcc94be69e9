// SPDX-License-Identifier: MIT
#include "check/type_check.h"

#include <map>
#include <set>

namespace velmora {

namespace {

std::string inSmallLetters(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

}  // namespace

std::vector<Finding> checkTypes(const ITable& landCover, const std::string& field) {
    if (landCover.fieldIndex(field) < 0) {
        return {{Severity::error,
                 landCover.path(),
                 field,
                 {},
                 "the field is missing, in which the irrigation efficiency looks for crop types"}};
    }
    std::map<std::string, std::set<std::string>> forms;
    for (std::size_t r = 0; r < landCover.recordCount(); ++r) {
        const std::string type = keyText(landCover.value(r, field));
        forms[inSmallLetters(type)].insert(type);
    }
    std::vector<Finding> findings;
    for (const auto& [small, types] : forms) {
        if (types.size() < 2) continue;
        std::string list;
        for (const std::string& type : types) {
            list += (list.empty() ? "\"" : " and \"") + type + "\"";
        }
        findings.push_back({Severity::warning,
                            landCover.path(),
                            field,
                            {},
                            list +
                                " differ in capitals alone: they are crop types of their own, each "
                                "with its own coefficients"});
    }
    return findings;
}

}  // namespace velmora
