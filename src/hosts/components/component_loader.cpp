// SPDX-License-Identifier: MIT
#include "hosts/components/component_loader.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <optional>

#include "gis/errors.h"
#include "hosts/components/class_registry.h"
#include "shell/component_ids.h"

namespace velmora {

namespace fs = std::filesystem;

namespace {

// Loaded once and kept: objects of a library may outlive the loader.
void* loaded(const std::string& library) {
    void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        throw PlatformError("Cannot load the extension library: " + std::string(dlerror()));
    return handle;
}

template <class Function>
Function entryPoint(const std::string& library, const char* name) {
    void* address = dlsym(loaded(library), name);
    if (!address) throw PlatformError(library + " has no entry point " + name);
    return reinterpret_cast<Function>(address);
}

// The identifier of a class: from the registry when it names this library, else (a read-only home,
// or another copy that has just taken the registry over) from the library's own list.
std::optional<Guid> classIdOf(const std::string& progId, const std::string& library) {
    const auto registered = findRegisteredClass(progId);
    if (registered && registered->module == library) return registered->clsid;
    for (const ComponentId& served : componentIds()) {
        if (served.progId == progId) return served.clsid;
    }
    return std::nullopt;
}

// The file that holds this code: a program, or the plugin of one.
fs::path ownModule() {
    Dl_info info{};
    static const char here = 0;
    std::error_code error;
    if (dladdr(&here, &info) != 0 && info.dli_fname) {
        fs::path file = fs::canonical(info.dli_fname, error);
        if (!error && file.extension() == ".so") return file;
    }
    return fs::canonical("/proc/self/exe", error);
}

}  // namespace

ComponentLoader::ComponentLoader(const std::string& library)
    : library_(fs::weakly_canonical(library).string()) {
    const auto registerServer = entryPoint<HResult (*)()>(library_, "DllRegisterServer");
    const auto known = findRegisteredClass("Tarnwick.clsWaterUseEstimation");
    if (!known || known->module != library_) registerServer();
}

void ComponentLoader::createObject(const std::string& progId, const Guid& interfaceId,
                                   void** object) const {
    const auto clsid = classIdOf(progId, library_);
    if (!clsid) throw PlatformError("The class " + progId + " is not registered");
    const auto getClass =
        entryPoint<HResult (*)(const Guid&, const Guid&, void**)>(library_, "DllGetClassObject");
    ComPtr<IClassFactory> factory;
    if (getClass(*clsid, IClassFactory::iid, factory.receive()) != S_OK ||
        factory->CreateInstance(nullptr, interfaceId, object) != S_OK) {
        throw PlatformError(library_ + " makes no object of the class " + progId);
    }
}

std::string extensionLibrary() {
    if (const char* named = std::getenv("VELMORA_LIBRARY"); named && *named) return named;
    const fs::path module = ownModule();
    std::string triplet = "x86_64-linux-gnu";
#if defined(__aarch64__)
    triplet = "aarch64-linux-gnu";
#endif
    const fs::path near = module.parent_path().parent_path();
    for (const fs::path& folder :
         {near, near / "lib", near / "lib" / "velmora", near / "lib" / triplet / "velmora",
          near.parent_path() / "velmora", near.parent_path() / triplet / "velmora"}) {
        if (fs::exists(folder / "libVelmora.so")) return (folder / "libVelmora.so").string();
    }
    throw PlatformError("libVelmora.so is not where " + module.string() +
                        " looks for it: install it in ../lib/velmora");
}

}  // namespace velmora
