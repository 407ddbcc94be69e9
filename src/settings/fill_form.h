// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "forms/form.h"
#include "settings/settings_fields.h"

namespace velmora {

// Sets one field in an open General Settings form, as its user would: types into a box, chooses
// from a list or among options, ticks. A method is named by its digit, a flag by a word such as
// "true". Throws PlatformError that names the field and what may be chosen.
void fillIn(Form& form, const SettingsField& field, const std::string& value);

}  // namespace velmora
