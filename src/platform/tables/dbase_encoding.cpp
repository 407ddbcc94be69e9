// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_encoding.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/vector_dataset.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kDescriptorBytes = 32;
constexpr std::size_t kNameBytes = 10;
constexpr std::size_t kLanguageMark = 29;  // its place in the header
constexpr std::size_t kLargestFile = 2147483648UL;
constexpr const char* kUtf8 = "UTF-8";

bool isUtf8(const std::string& encoding) {
    return encoding.empty() || sameIgnoringCase(encoding, kUtf8);
}

std::string recoded(const std::string& text, const char* from, const char* to) {
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    char* bytes = CPLRecode(text.c_str(), from, to);
    std::string result = bytes;
    CPLFree(bytes);
    return result;
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
    Utf8Table(std::string path, std::string encoding)
        : path_(std::move(path)),
          encoding_(std::move(encoding)),
          bytes_(readWholeFile(path_, kLargestFile)) {}

    void store() {
        rewrite();
        const std::string unfinished = unfinishedPath(path_);
        const std::string says = withoutExtension(path_) + ".cpg";
        const std::string unfinishedSays = unfinishedPath(says);
        try {
            writeWholeFile(unfinished, bytes_);
            std::filesystem::permissions(unfinished, std::filesystem::status(path_).permissions());
            writeWholeFile(unfinishedSays, kUtf8);
            removeTree(withoutExtension(path_) + ".CPG");
            replaceDurably(unfinishedSays, says);
            replaceDurably(unfinished, path_);
        } catch (const std::exception& e) {
            removeTree(unfinished);
            removeTree(unfinishedSays);
            throw PlatformError("Cannot store " + path_ + " in UTF-8: " + e.what());
        }
    }

  private:
    [[noreturn]] void refuse(const std::string& why) const {
        throw PlatformError("The table " + path_ + " cannot be stored in UTF-8: " + why);
    }

    void rewrite() {
        const std::size_t header = bytes_.size() < 33 ? 0 : numberAt(bytes_, 8, 2);
        const std::size_t length = header == 0 ? 0 : numberAt(bytes_, 10, 2);
        if (length == 0 || header > bytes_.size() ||
            (bytes_.size() - header) / length < numberAt(bytes_, 4, 4)) {
            refuse("it is shorter than its header says");
        }
        std::size_t offset = 1;  // behind the deletion mark
        for (std::size_t at = kDescriptorBytes;
             at + kDescriptorBytes <= header && bytes_[at] != '\r'; at += kDescriptorBytes) {
            const std::size_t width = static_cast<unsigned char>(bytes_[at + 16]);
            if (offset + width > length) refuse("its fields do not fit into its records");
            if (bytes_[at + 11] == 'M') refuse("its memo texts are in " + encoding_);
            rewriteName(at);
            if (bytes_[at + 11] == 'C') rewriteField(header + offset, length, width);
            offset += width;
        }
        bytes_[kLanguageMark] = '\0';
    }

    void rewriteName(std::size_t at) {
        const std::string old = bytes_.substr(at, strnlen(bytes_.data() + at, kNameBytes + 1));
        const std::string name = recoded(old, encoding_.c_str(), kUtf8);
        if (name == old) return;
        if (name.size() > kNameBytes) refuse("the name of its field " + name + " is too long then");
        bytes_.replace(at, kNameBytes + 1, name + std::string(kNameBytes + 1 - name.size(), '\0'));
    }

    void rewriteField(std::size_t at, std::size_t step, std::size_t width) {
        for (std::size_t r = numberAt(bytes_, 4, 4); r > 0; --r, at += step) {
            const std::string old = trimmedRight(std::string_view(bytes_).substr(at, width));
            if (std::ranges::all_of(old, [](char c) { return (c & 0x80) == 0; })) continue;
            const std::string text = recoded(old, encoding_.c_str(), kUtf8);
            if (text.size() > width) {
                refuse("\"" + text + "\" is longer than the " + std::to_string(width) +
                       " bytes of its field then");
            }
            bytes_.replace(at, width, text + std::string(width - text.size(), ' '));
        }
    }

    std::string path_;
    std::string encoding_;
    std::string bytes_;
};

}  // namespace

std::string dbaseEncoding(const std::string& path) {
    const VectorDatasetPtr dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, kVectorDrivers.data()));
    OGRLayer* layer = dataset && dataset->GetLayerCount() > 0 ? dataset->GetLayer(0) : nullptr;
    const char* encoding = layer ? layer->GetMetadataItem("SOURCE_ENCODING", "SHAPEFILE") : nullptr;
    return encoding ? encoding : "";
}

bool encodes(const std::string& encoding, const std::string& text) {
    if (isUtf8(encoding)) return true;
    // What cannot be said becomes another character, and does not come back.
    const std::string bytes = recoded(text, kUtf8, encoding.c_str());
    return recoded(bytes, encoding.c_str(), kUtf8) == text;
}

std::string encodedIn(const std::string& encoding, const std::string& text) {
    if (isUtf8(encoding)) return text;
    if (!encodes(encoding, text)) {
        throw PlatformError("\"" + text + "\" cannot be written in the table's encoding " +
                            encoding);
    }
    return recoded(text, kUtf8, encoding.c_str());
}

std::string encodingForTexts(const std::string& path, const std::vector<std::string>& texts) {
    std::string encoding = dbaseEncoding(path);
    const bool fit = std::ranges::all_of(
        texts, [&](const std::string& text) { return encodes(encoding, text); });
    if (fit) return encoding;
    Utf8Table(path, encoding).store();
    return kUtf8;
}

}  // namespace velmora::platform
