// SPDX-License-Identifier: MIT
// The entry points of libVelmora.so.
#include <dlfcn.h>

#include <filesystem>

#include "hosts/components/class_registration.h"
#include "shell/component_server.h"

namespace {

// The path of the library that holds this code.
std::string modulePath() {
    Dl_info info{};
    static const char here = 0;
    if (dladdr(&here, &info) == 0 || !info.dli_fname) return {};
    std::error_code error;
    const auto path = std::filesystem::canonical(info.dli_fname, error);
    return error ? std::string(info.dli_fname) : path.string();
}

}  // namespace

extern "C" {

velmora::HResult DllGetClassObject(const velmora::Guid& clsid, const velmora::Guid& interfaceId,
                                   void** object) {
    return velmora::getClassObject(clsid, interfaceId, object);
}

velmora::HResult DllCanUnloadNow() { return velmora::canUnloadNow(); }

velmora::HResult DllRegisterServer() {
    return velmora::registerClasses(modulePath()) ? velmora::S_OK : velmora::E_FAIL;
}

velmora::HResult DllUnregisterServer() {
    return velmora::unregisterClasses(modulePath()) ? velmora::S_OK : velmora::E_FAIL;
}
}
