// SPDX-License-Identifier: MIT
#include "gis/errors.h"

#include <exception>

namespace velmora {

PlatformError::~PlatformError() = default;

PlatformError errorInField(const ErrorPlace& place, const std::string& what) {
    return {"In " + place.file + ", record " + std::to_string(place.record) + ", field " +
                place.field + ": " + what,
            place};
}

ErrorPlace placeOfHandled() {
    if (!std::current_exception()) return {};
    try {
        throw;
    } catch (const PlacedError& e) {
        return e.place();
    } catch (...) {
        return {};
    }
}

}  // namespace velmora
