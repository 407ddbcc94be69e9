// SPDX-License-Identifier: MIT
#include "hosts/cli/failure.h"

#include "gis/month_names.h"
#include "hosts/cli/console.h"

namespace velmora::cli {

using Json = nlohmann::ordered_json;

Json failureJson(const std::string& text, const ErrorPlace& place) {
    Json json = {{"text", text}};
    if (!place.file.empty()) json["file"] = place.file;
    if (!place.field.empty()) json["field"] = place.field;
    if (place.record > 0) json["record"] = place.record;
    if (!place.station.empty()) json["station"] = place.station;
    if (place.month > 0) json["month"] = GetMonthName(place.month);
    if (place.column > 0) json["column"] = place.column;
    if (place.row > 0) json["row"] = place.row;
    return json;
}

void tellFailureJson(const std::string& text, const ErrorPlace& place) {
    if (tellsAsJson()) {
        Json line = {{"kind", "failure"}};
        line.update(failureJson(text, place));
        return tellJson(line);
    }
    const Json line = {{"failure", failureJson(text, place)}};
    tell("{}\n", line.dump(-1, ' ', true, Json::error_handler_t::replace));
}

void tellFailure(const std::string& text, const ErrorPlace& place, bool json) {
    tellOf("velmora", text);
    if (json) tellFailureJson(text, place);
}

}  // namespace velmora::cli
