// SPDX-License-Identifier: MIT
#include "hosts/results/records/made_for.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "modelling/products.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

void add(std::vector<MadeFor>& all, const std::string& text, std::string_view name) {
    auto found = std::ranges::find(all, text, &MadeFor::text);
    if (found == all.end()) found = all.insert(all.end(), {text, {}});
    found->names.emplace_back(name);
}

}  // namespace

std::string methodName(const RunSettings& settings) {
    static constexpr std::array<const char*, 7> names = {"an unknown method",
                                                         "ASCE Penman-Monteith, tall reference",
                                                         "ASCE Penman-Monteith, short reference",
                                                         "FAO-56 Penman-Monteith",
                                                         "Hargreaves 1985",
                                                         "Blaney-Criddle",
                                                         "Priestley-Taylor"};
    return names.at(static_cast<std::size_t>(refEtMethod(settings)));
}

std::string periodText(const RunSettings& settings) {
    return settings.BeginMonth + " to " + settings.EndMonth + ", " + settings.Year;
}

std::string madeForText(const RunSettings& settings) {
    return fmt::format("{}; reference ET by {}; cells of {:g} m", periodText(settings),
                       methodName(settings), settings.CellSize);
}

std::vector<MadeFor> productsMadeFor(const RunRecords& records) {
    std::vector<MadeFor> all;
    for (const Product& product : products()) {
        if (const RecordedStep* step = records.of(product.maker)) {
            add(all, madeForText(step->settings), product.title);
        }
    }
    return all;
}

std::vector<MadeFor> tablesMadeFor(const RunRecords& records, const RunSettings& settings) {
    std::vector<MadeFor> all;
    for (const Product* product : tabledProducts()) {
        add(all, periodText(records.settingsOf(product->maker, settings)), product->table.name);
    }
    return all;
}

std::vector<ZoneTableScope> zoneTableScopes(const RunRecords& records,
                                            const RunSettings& settings) {
    std::vector<ZoneTableScope> scopes;
    for (const Product* product : tabledProducts()) {
        const RunSettings& made = records.settingsOf(product->maker, settings);
        scopes.push_back({std::string(product->table.name), made.yearNumber(), made.months()});
    }
    return scopes;
}

}  // namespace velmora
