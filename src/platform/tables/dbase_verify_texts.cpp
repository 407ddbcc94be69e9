// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string_view>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/tables/dbase_encoding.h"
#include "platform/tables/dbase_layout.h"
#include "platform/tables/dbase_verify.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kNameField = 11;     // bytes of a name in a descriptor
constexpr std::size_t kLanguageMark = 29;  // its place in the header

void require(bool holds, const std::string& what) {
    if (!holds)
        throw PlatformError("rewritten in UTF-8, " + what + ", so the table stays as it was");
}

bool isAscii(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return (c & 0x80) == 0; });
}

class TextComparison {
  public:
    TextComparison(const std::string& before, const std::string& after, const std::string& encoding)
        : before_(before),
          after_(after),
          encoding_(encoding),
          layout_(dbaseLayout(before, "to be rewritten")) {}

    void run() const {
        require(before_.size() == after_.size() &&
                    after_.size() >= std::max(layout_.recordsEnd(), kDbaseHeaderBytes),
                "the file has another length");
        require(same(0, kLanguageMark) && same(kLanguageMark + 1, kDbaseHeaderBytes) &&
                    after_[kLanguageMark] == '\0',
                "the header is another one");
        for (std::size_t c = 0; c < layout_.columns.size(); ++c) compareDescriptor(c);
        require(same(layout_.descriptorsEnd, layout_.headerLength), "the header is another one");
        for (std::size_t r = 0; r < layout_.records; ++r) compareRecord(r);
        require(same(layout_.recordsEnd(), before_.size()), "what follows the records is another");
    }

  private:
    bool same(std::size_t begin, std::size_t end) const {
        return before_.compare(begin, end - begin, after_, begin, end - begin) == 0;
    }

    void compareDescriptor(std::size_t c) const {
        const std::size_t at = kDbaseHeaderBytes + c * kDbaseDescriptorBytes;
        const std::string name = after_.substr(at, kNameField);
        require(
            fromEncoding(encoding_, layout_.columns[c].name) == name.substr(0, name.find('\0')) &&
                same(at + kNameField, at + kDbaseDescriptorBytes),
            "field " + std::to_string(c + 1) + " is another one");
    }

    void compareRecord(std::size_t r) const {
        const std::size_t begin = layout_.headerLength + r * layout_.recordLength;
        std::size_t checked = begin;  // all bytes before it
        for (const DbaseColumn& column : layout_.columns) {
            const std::size_t at = begin + column.offset;
            const bool kept =
                same(checked, at) &&
                (column.type == 'C' ? sameText(at, column.width) : same(at, at + column.width));
            require(kept, "record " + std::to_string(r + 1) + " has another value in " +
                              fromEncoding(encoding_, column.name));
            checked = at + column.width;
        }
        require(same(checked, begin + layout_.recordLength),
                "record " + std::to_string(r + 1) + " has another end");
    }

    bool sameText(std::size_t at, std::size_t width) const {
        const std::string old = before_.substr(at, width);
        if (isAscii(old)) return same(at, at + width);
        return trimmedRight(fromEncoding(encoding_, old)) == trimmedRight(after_.substr(at, width));
    }

    const std::string& before_;
    const std::string& after_;
    const std::string& encoding_;
    DbaseLayout layout_;
};

}  // namespace

void requireSameTexts(const std::string& before, const std::string& after,
                      const std::string& encoding) {
    TextComparison(before, after, encoding).run();
}

}  // namespace velmora::platform
