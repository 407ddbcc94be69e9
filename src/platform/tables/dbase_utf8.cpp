// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_utf8.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/tables/dbase_edit.h"
#include "platform/tables/dbase_encoding.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kDescriptorBytes = 32;
constexpr std::size_t kNameBytes = 10;
constexpr std::size_t kLanguageMark = 29;  // its place in the header

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
    throw PlatformError("The table " + path + " cannot be stored in UTF-8: " + why, {.file = path});
}

std::size_t numberAt(const std::string& bytes, std::size_t at, int count) {
    std::size_t value = 0;
    for (int i = count; i > 0; --i) {
        value =
            value << 8U | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i) - 1]);
    }
    return value;
}

// Rewrites the texts and the names of the fields of a whole dBASE file.
class Utf8Table {
  public:
    Utf8Table(std::string bytes, std::string encoding, const std::string& path)
        : bytes_(std::move(bytes)), encoding_(std::move(encoding)), path_(path) {}

    std::string rewritten() {
        const std::size_t header = bytes_.size() < 33 ? 0 : numberAt(bytes_, 8, 2);
        const std::size_t length = header == 0 ? 0 : numberAt(bytes_, 10, 2);
        if (length == 0 || header > bytes_.size() ||
            (bytes_.size() - header) / length < numberAt(bytes_, 4, 4)) {
            refuse(path_, "it is shorter than its header says");
        }
        std::size_t offset = 1;  // behind the deletion mark
        for (std::size_t at = kDescriptorBytes;
             at + kDescriptorBytes <= header && bytes_[at] != '\r'; at += kDescriptorBytes) {
            const std::size_t width = static_cast<unsigned char>(bytes_[at + 16]);
            if (offset + width > length) refuse(path_, "its fields do not fit into its records");
            if (bytes_[at + 11] == 'M') refuse(path_, "its memo texts are in " + encoding_);
            rewriteName(at);
            if (bytes_[at + 11] == 'C') rewriteField(header + offset, length, width);
            offset += width;
        }
        bytes_[kLanguageMark] = '\0';
        return std::move(bytes_);
    }

  private:
    void rewriteName(std::size_t at) {
        const std::string old = bytes_.substr(at, strnlen(bytes_.data() + at, kNameBytes + 1));
        const std::string name = fromEncoding(encoding_, old);
        if (name == old) return;
        if (name.size() > kNameBytes) {
            refuse(path_, "the name of its field " + name + " is too long then");
        }
        bytes_.replace(at, kNameBytes + 1, name + std::string(kNameBytes + 1 - name.size(), '\0'));
    }

    void rewriteField(std::size_t at, std::size_t step, std::size_t width) {
        for (std::size_t r = numberAt(bytes_, 4, 4); r > 0; --r, at += step) {
            const std::string old = trimmedRight(std::string_view(bytes_).substr(at, width));
            if (std::ranges::all_of(old, [](char c) { return (c & 0x80) == 0; })) continue;
            const std::string text = fromEncoding(encoding_, old);
            if (text.size() > width) {
                refuse(path_, "\"" + text + "\" is longer than the " + std::to_string(width) +
                                  " bytes of its field then");
            }
            bytes_.replace(at, width, text + std::string(width - text.size(), ' '));
        }
    }

    std::string bytes_;
    std::string encoding_;
    const std::string& path_;
};

// The language mark that stands for an encoding, 0 for none.
char markOf(const std::string& encoding) {
    struct Mark {
        std::string_view page;
        int mark;
    };
    constexpr std::array kMarks = {
        Mark{"ISO-8859-1", 87}, Mark{"CP437", 1},    Mark{"CP737", 106}, Mark{"CP850", 2},
        Mark{"CP852", 31},      Mark{"CP857", 107},  Mark{"CP860", 36},  Mark{"CP861", 103},
        Mark{"CP863", 28},      Mark{"CP865", 8},    Mark{"CP866", 38},  Mark{"CP874", 80},
        Mark{"CP932", 19},      Mark{"CP936", 77},   Mark{"CP949", 78},  Mark{"CP950", 79},
        Mark{"CP1250", 200},    Mark{"CP1251", 201}, Mark{"CP1252", 3},  Mark{"CP1253", 203},
        Mark{"CP1254", 202},    Mark{"CP1257", 204},
    };
    constexpr std::string_view kWindows = "windows-";
    const bool windows =
        sameIgnoringCase(std::string_view(encoding).substr(0, kWindows.size()), kWindows);
    const std::string page = windows ? "CP" + encoding.substr(kWindows.size()) : encoding;
    const auto found =
        std::ranges::find_if(kMarks, [&](const Mark& m) { return sameIgnoringCase(m.page, page); });
    return found == kMarks.end() ? '\0' : static_cast<char>(found->mark);
}

std::vector<std::string> notesOf(const std::string& table) {
    std::vector<std::string> notes;
    for (const char* extension : {".cpg", ".CPG"}) {
        const std::string note = withoutExtension(table) + extension;
        if (fs::exists(note)) notes.push_back(note);
    }
    return notes;
}

}  // namespace

std::string inUtf8(const std::string& bytes, const std::string& encoding, const std::string& path) {
    return Utf8Table(bytes, encoding, path).rewritten();
}

EncodingChange::EncodingChange(std::string table, const std::string& encoding,
                               std::function<void()> changed)
    : table_(std::move(table)),
      changed_(std::move(changed)),
      newNote_(withoutExtension(table_) + ".cpg"),
      markedTable_(withoutExtension(table_) + "-marked.dbf", Leftovers::left),
      noted_(!notesOf(table_).empty()) {
    if (noted_) writeMarked(encoding);
    writeWholeFile(newNote_.path(), kUtf8);
}

void EncodingChange::writeMarked(const std::string& encoding) const {
    const std::string& path = markedTable_.path();
    std::string marked = readWholeFile(table_, kLargestDbase);
    const char mark = markOf(encoding);
    if (marked.size() > kLanguageMark) marked[kLanguageMark] = mark;
    writeWholeFile(path, marked);
    if (mark == '\0' || readWholeFile(path, kLargestDbase) != marked ||
        markOf(dbaseEncoding(path)) != mark) {
        refuse(table_, "its .cpg tells the encoding " + encoding +
                           ", which the table alone cannot tell meanwhile. Store it in "
                           "UTF-8 with the program that made it");
    }
    fs::permissions(path, fs::status(table_).permissions());
}

void EncodingChange::tellByMark() {
    if (!noted_) return;
    markedTable_.finishAs(table_);
    changed_();
    for (const std::string& note : notesOf(table_)) {
        fs::remove(note);
        changed_();
    }
    const std::string folder = parentFolderName(table_);
    syncToDisk(folder.empty() ? "." : folder);
}

void EncodingChange::tellUtf8() {
    newNote_.finish();
    changed_();
}

}  // namespace velmora::platform
