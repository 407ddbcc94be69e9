// SPDX-License-Identifier: MIT
#include "platform/files/gdal_library.h"

#include <mutex>
#include <string_view>

namespace velmora::platform {

void initialiseGdal() {
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

std::string gdalMessage(const std::string& otherwise) {
    const char* message = CPLGetLastErrorMsg();
    return message && *message ? message : otherwise;
}

GdalFailures::GdalFailures() { CPLPushErrorHandlerEx(hear, this); }
GdalFailures::~GdalFailures() { CPLPopErrorHandler(); }

void CPL_STDCALL GdalFailures::hear(CPLErr kind, CPLErrorNum, const char* text) {
    auto* self = static_cast<GdalFailures*>(CPLGetErrorHandlerUserData());
    if (kind < CE_Failure) return;
    const std::string_view said = text;
    const bool database = said.find("SQLite") != said.npos || said.find("proj.db") != said.npos;
    if (database && self->database_.empty()) self->database_ = said;
    if (self->any_) return;
    self->any_ = true;
    self->first_ = said;
}

}  // namespace velmora::platform
