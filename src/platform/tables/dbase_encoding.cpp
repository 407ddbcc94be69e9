// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_encoding.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_string.h>
#include <ogrsf_frmts.h>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/gdal_library.h"

namespace velmora::platform {

namespace {

std::string recoded(const std::string& text, const char* from, const char* to) {
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    char* bytes = CPLRecode(text.c_str(), from, to);
    std::string result = bytes;
    CPLFree(bytes);
    return result;
}

}  // namespace

std::string dbaseEncoding(const std::string& path) {
    const DatasetPtr dataset(
        GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, kVectorDrivers.data()));
    OGRLayer* layer = dataset && dataset->GetLayerCount() > 0 ? dataset->GetLayer(0) : nullptr;
    const char* encoding = layer ? layer->GetMetadataItem("SOURCE_ENCODING", "SHAPEFILE") : nullptr;
    return encoding ? encoding : "";
}

bool isUtf8(const std::string& encoding) {
    return encoding.empty() || sameIgnoringCase(encoding, kUtf8);
}

bool encodes(const std::string& encoding, const std::string& text) {
    if (isUtf8(encoding)) return true;
    // What cannot be said becomes another character, and does not come back.
    const std::string bytes = recoded(text, kUtf8, encoding.c_str());
    return recoded(bytes, encoding.c_str(), kUtf8) == text;
}

std::string fromEncoding(const std::string& encoding, const std::string& bytes) {
    return isUtf8(encoding) ? bytes : recoded(bytes, encoding.c_str(), kUtf8);
}

std::string encodedIn(const std::string& encoding, const std::string& text) {
    if (isUtf8(encoding)) return text;
    if (!encodes(encoding, text)) {
        throw PlatformError("\"" + text + "\" cannot be written in the table's encoding " +
                            encoding);
    }
    return recoded(text, kUtf8, encoding.c_str());
}

}  // namespace velmora::platform
