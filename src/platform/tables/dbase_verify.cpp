// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_verify.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <string_view>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/dbase_encoding.h"
#include "platform/tables/dbase_layout.h"

namespace velmora::platform {

namespace {

constexpr const char* kFile = "the edited table";

[[noreturn]] void differs(const std::string& what) {
    throw PlatformError("read again, " + what + ", so the table stays as it was");
}

void require(bool holds, const std::string& what) {
    if (!holds) differs(what);
}

// The same where texts of millions would cost more than the comparison.
template <class Text>
requires std::invocable<Text>
void require(bool holds, Text what) {
    if (!holds) differs(what());
}

// A dBASE number may be rounded to the decimals that fit into its field.
bool holdsNumber(std::string_view text, double value) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return false;
    text.remove_prefix(first);
    double stored = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, stored, std::chars_format::fixed);
    if (error != std::errc() || rest != end) return false;
    const auto point = text.find('.');
    const auto decimals = point == std::string_view::npos ? 0 : text.size() - point - 1;
    const double place = std::pow(10.0, -static_cast<double>(decimals));
    return std::abs(stored - value) <= place / 2 + 1e-15 * std::abs(value);
}

bool holdsText(const std::string& bytes, const std::string& text, const std::string& encoding) {
    return trimmedRight(fromEncoding(encoding, bytes)) == trimmedRight(text);
}

bool isBlank(std::string_view bytes) {
    return bytes.find_first_not_of(' ') == std::string_view::npos;
}

bool holds(const std::string& bytes, const FieldValue& value, const std::string& encoding) {
    if (isNull(value)) return isBlank(bytes);
    if (const auto* number = std::get_if<double>(&value)) return holdsNumber(bytes, *number);
    return holdsText(bytes, std::get<std::string>(value), encoding);
}

class Comparison {
  public:
    Comparison(const std::string& before, std::string after, const DbaseChanges& asked,
               const std::string& encoding)
        : before_(before),
          after_(std::move(after)),
          asked_(asked),
          encoding_(encoding),
          old_(dbaseLayout(before, kFile)),
          new_(dbaseLayout(after_, kFile)) {}

    void run() {
        compareHeaders();
        compareSizes();
        forEachChange(&Comparison::requireHeld);
        forEachChange(&Comparison::takeBack);
        compareRecords();
    }

  private:
    // The first 32 bytes but for the lengths, the descriptors, and what follows their end mark.
    void compareHeaders() const {
        require(before_.compare(0, 4, after_, 0, 4) == 0 &&
                    before_.compare(12, 20, after_, 12, 20) == 0,
                "the header is another one");
        const std::size_t descriptors = old_.descriptorsEnd - kDbaseHeaderBytes;
        require(before_.compare(kDbaseHeaderBytes, descriptors, after_, kDbaseHeaderBytes,
                                descriptors) == 0,
                "the old fields are other ones");
        std::vector<std::string> names;
        for (const std::string& name : asked_.addedFields) {
            if (old_.find(name)) continue;
            const bool twice = std::any_of(names.begin(), names.end(), [&](const auto& other) {
                return sameIgnoringCase(name, other);
            });
            if (!twice) names.push_back(name);
        }
        require(new_.columns.size() == old_.columns.size() + names.size(),
                "it has " + std::to_string(new_.columns.size()) + " fields");
        for (std::size_t i = 0; i < names.size(); ++i) {
            const DbaseColumn& column = new_.columns[old_.columns.size() + i];
            require(column.name == names[i] && column.numeric(),
                    "the field " + names[i] + " is missing");
        }
        require(before_.substr(old_.descriptorsEnd, old_.headerLength - old_.descriptorsEnd) ==
                    after_.substr(new_.descriptorsEnd, new_.headerLength - new_.descriptorsEnd),
                "the end of the header is another one");
    }

    void compareSizes() const {
        std::size_t added = 0;
        for (std::size_t c = old_.columns.size(); c < new_.columns.size(); ++c) {
            added += new_.columns[c].width;
        }
        require(new_.recordLength == old_.recordLength + added &&
                    new_.records == old_.records + asked_.appended.size(),
                "records or their length are other ones");
        require(before_.size() >= old_.recordsEnd() && after_.size() >= new_.recordsEnd() &&
                    before_.compare(old_.recordsEnd(), std::string::npos, after_, new_.recordsEnd(),
                                    std::string::npos) == 0,
                "what follows the records is another");
    }

    // Where a changed value stands, and what it was.
    struct Place {
        std::size_t at;  // in the new file
        const DbaseColumn& column;
        const DbaseColumn* old;
        std::size_t record;
        const std::string& field;
    };

    // The asked values must stand in the new records; blanks or the old bytes take their place, so
    // that what is left is to be the old records.
    void forEachChange(void (Comparison::*look)(const Place& place, const FieldValue& value)) {
        for (const auto& [field, values] : asked_.values) {
            const Columns columns = columnsOf(field);
            for (std::size_t i = 0; i < values.size(); ++i) {
                (this->*look)(placeOf(columns, values.record(i)), values.value(i));
            }
        }
        for (std::size_t i = 0; i < asked_.appended.size(); ++i) {
            for (const auto& [field, value] : asked_.appended[i]) {
                (this->*look)(placeOf(columnsOf(field), old_.records + i), value);
            }
        }
    }

    struct Columns {
        const std::string& field;
        const DbaseColumn* now;
        const DbaseColumn* old;
    };

    Columns columnsOf(const std::string& field) const {
        const std::string name = encodedIn(encoding_, field);
        return {field, new_.find(name), old_.find(name)};
    }

    Place placeOf(const Columns& columns, std::size_t record) const {
        require(columns.now && record < new_.records,
                [&] { return "a place for " + columns.field + " is missing"; });
        return {new_.headerLength + record * new_.recordLength + columns.now->offset, *columns.now,
                columns.old, record, columns.field};
    }

    void requireHeld(const Place& place, const FieldValue& value) {
        require(holds(after_.substr(place.at, place.column.width), value, encoding_), [&] {
            return "record " + std::to_string(place.record + 1) + " has another value in " +
                   place.field;
        });
    }

    void takeBack(const Place& place, const FieldValue&) {
        std::string was(place.column.width, ' ');
        if (place.record < old_.records && place.old) {
            was = before_.substr(
                old_.headerLength + place.record * old_.recordLength + place.old->offset,
                place.column.width);
        }
        after_.replace(place.at, place.column.width, was);
    }

    std::string_view oldRecord(std::size_t r) const {  // empty for an appended one
        if (r >= old_.records) return {};
        return std::string_view(before_).substr(old_.headerLength + r * old_.recordLength,
                                                old_.recordLength);
    }

    void compareRecords() const {
        const std::string_view records = std::string_view(after_).substr(new_.headerLength);
        for (std::size_t r = 0; r < new_.records; ++r) {
            const auto record = records.substr(r * new_.recordLength, new_.recordLength);
            const std::string_view old = oldRecord(r);
            require(record.substr(0, old.size()) == old && isBlank(record.substr(old.size())), [&] {
                return "record " + std::to_string(r + 1) + " has changed where it should not";
            });
        }
    }

    const std::string& before_;
    std::string after_;  // in whose records the changes are taken back in the end
    const DbaseChanges& asked_;
    const std::string& encoding_;
    DbaseLayout old_;
    DbaseLayout new_;
};

}  // namespace

void requireOnlyChanges(const std::string& before, std::string after, const DbaseChanges& asked,
                        const std::string& encoding) {
    Comparison(before, std::move(after), asked, encoding).run();
}

}  // namespace velmora::platform
