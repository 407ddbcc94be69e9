// SPDX-License-Identifier: MIT
// Whether a changed dBASE file holds what was asked for and is the old one in all else. It reads
// both files anew, with nothing of the code that made the change.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "gis/field_value.h"
#include "platform/tables/record_values.h"

namespace velmora::platform {

// What an edit is asked to change.
struct DbaseChanges {
    std::vector<std::string> addedFields;  // unless the table has them
    // Field -> the new values of records of the file.
    std::map<std::string, RecordValues> values;
    std::vector<std::vector<std::pair<std::string, FieldValue>>> appended;
};

// `before` and `after` are the whole files, `encoding` that of the table's texts ("": as they
// stand). Throws PlatformError that says what differs unless `after` has the header, the fields,
// the records with their deletion marks and the trailing bytes of `before`, byte for byte, and in
// addition what was asked for.
void requireOnlyChanges(const std::string& before, std::string after, const DbaseChanges& asked,
                        const std::string& encoding);

// Throws PlatformError that says what differs unless `after` is the file `before`, whose texts and
// names of fields are in `encoding`, with the same texts and names in UTF-8 and without a language
// mark: every other byte is the same.
void requireSameTexts(const std::string& before, const std::string& after,
                      const std::string& encoding);

}  // namespace velmora::platform
