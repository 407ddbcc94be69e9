// SPDX-License-Identifier: MIT
// A plain writer of Jet 4 databases (Access 2000): as much of the format as tables of texts,
// numbers, dates and yes/no values need. Tests make Access files with it, which no Debian package
// can.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gis/field_value.h"

namespace velmora::test {

enum class JetType : std::uint8_t {
    yesNo = 1,
    longInteger = 4,
    single = 6,
    real = 7,
    date = 8,
    text = 10
};

struct JetColumn {
    std::string name;
    JetType type = JetType::text;
    int size = 50;  // characters of a text
};

struct JetTable {
    std::string name;
    std::vector<JetColumn> columns;
    std::vector<std::vector<FieldValue>> rows;  // a yes/no value is yes unless it is null
};

// The bytes of a database with the tables. Texts are ASCII.
std::string jetDatabase(const std::vector<JetTable>& tables);

}  // namespace velmora::test
