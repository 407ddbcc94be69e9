// SPDX-License-Identifier: MIT
// Changes values in a dBASE file and appends records to it. Every byte that does not belong to a
// changed value stays as it is: other columns, deleted records, the language mark, trailing memo
// references. Only a text with characters that the table's encoding lacks has the table rewritten
// in UTF-8 with the same values (dbase_utf8.h). (A rewrite through a general library would reformat
// the other numbers and recode the texts.) Before the changed file takes the table's name it is
// read again and compared with the old one.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gis/features.h"
#include "platform/tables/dbase_verify.h"

namespace velmora::platform {

constexpr std::size_t kLargestDbase = 2147483648UL;  // bytes

class DbaseEdit : public IEditSession {
  public:
    // Throws PlatformError when the table is neither a dBASE file nor a shapefile.
    explicit DbaseEdit(std::shared_ptr<ITable> table);
    void addNumericField(const std::string& field) override;
    void setValue(std::size_t record, const std::string& field, const FieldValue& value) override;
    void appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) override;
    void save() override;

  protected:
    // Writes the changed file beside the table. A test damages it here.
    virtual void write(const std::string& unfinished, const std::string& bytes);
    // Throws unless the file beside the table holds `before` with the changes.
    virtual void requireRight(const std::string& unfinished, const std::string& before,
                              const std::string& encoding) const;
    // The table's bytes in UTF-8. A test damages them here.
    virtual std::string inUtf8(const std::string& before, const std::string& encoding) const;
    // Called whenever a file has taken a name or lost it. A test looks at the table then.
    virtual void namesChanged() {}

  private:
    void store(
        const std::string& before, const std::string& encoding,
        const std::function<void()>& ready = [] {});
    std::string changed(const std::string& before, const std::string& encoding) const;
    void requireRecord(std::size_t record, std::size_t records) const;
    std::vector<std::string> newTexts() const;

    std::shared_ptr<ITable> table_;
    std::string target_;
    DbaseChanges asked_;
};

// The dBASE file of a table or of a shapefile's attributes, "" for any other path: a file of that
// name beside a data set of another kind is not the data set's.
std::string attributeTable(const std::string& path);

// The number as a dBASE field of that width holds it: as many decimals as fit, right-aligned.
// Throws PlatformError when it does not fit at all.
std::string dbaseNumber(double value, int width);

}  // namespace velmora::platform
