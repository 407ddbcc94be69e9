// SPDX-License-Identifier: MIT
#include "shell/component_server.h"

#include <algorithm>
#include <array>

#include "shell/com_object.h"
#include "shell/commands.h"
#include "shell/component_ids.h"
#include "shell/extension.h"
#include "shell/menus.h"

namespace velmora {

std::atomic<long>& moduleReferences() {
    static std::atomic<long> references{0};
    return references;
}

namespace {

template <class Class, class Interface>
IUnknown* make() {
    return static_cast<Interface*>(new Class);
}

using Maker = IUnknown* (*)();  // a new object with one reference

// What makes the objects of the classes, in the order of their identifiers.
constexpr std::array<Maker, 13> kMakers = {
    make<clsWaterUseEstimation, IExtension>,
    make<clsToolBar_Zav, IToolBarDef>,
    make<clsMenu_Zav_IR, IMenuDef>,
    make<clsMenu_Zav_IR_ET, IMenuDef>,
    make<clsMenu_Zav_IR_IRR, IMenuDef>,
    make<clsSettings, ICommand>,
    make<clsET_ReferenceET, ICommand>,
    make<clsET_CropCoefficient, ICommand>,
    make<clsET_CropET, ICommand>,
    make<clsPPT, ICommand>,
    make<clsIR_NIR, ICommand>,
    make<clsIR_EFF, ICommand>,
    make<clsIR_IRR, ICommand>,
};

// Makes objects of one class.
class ClassObject : public ComObject<IClassFactory> {
  public:
    explicit ClassObject(Maker create) : create_(create) {}

    HResult CreateInstance(IUnknown* outer, const Guid& interfaceId, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        IUnknown* made = create_();
        const HResult result = made->QueryInterface(interfaceId, object);
        made->Release();
        return result;
    }
    HResult LockServer(bool lock) override {
        moduleReferences() += lock ? 1 : -1;
        return S_OK;
    }

  private:
    Maker create_;
};

}  // namespace

HResult getClassObject(const Guid& clsid, const Guid& interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const auto ids = componentIds();
    const auto served = std::find_if(ids.begin(), ids.end(),
                                     [&](const ComponentId& id) { return id.clsid == clsid; });
    if (served == ids.end()) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new ClassObject(kMakers[static_cast<std::size_t>(served - ids.begin())]);
    const HResult result = factory->QueryInterface(interfaceId, object);
    factory->Release();
    return result;
}

HResult canUnloadNow() { return moduleReferences() == 0 ? S_OK : S_FALSE; }

}  // namespace velmora
