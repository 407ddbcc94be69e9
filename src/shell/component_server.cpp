// SPDX-License-Identifier: MIT
#include "shell/component_server.h"

#include <algorithm>
#include <vector>

#include "shell/com_object.h"
#include "shell/commands.h"
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

constexpr Guid classId(std::uint8_t number) {
    return {0x5C1E9A40, 0x8D36, 0x4B7F, {0xA2, 0xE4, 0x61, 0x0F, 0xB3, 0x9C, 0x57, number}};
}

// Makes objects of one class.
class ClassObject : public ComObject<IClassFactory> {
  public:
    explicit ClassObject(const ComponentClass& served) : served_(served) {}

    HResult CreateInstance(IUnknown* outer, const Guid& interfaceId, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        IUnknown* made = served_.create();
        const HResult result = made->QueryInterface(interfaceId, object);
        made->Release();
        return result;
    }
    HResult LockServer(bool lock) override {
        moduleReferences() += lock ? 1 : -1;
        return S_OK;
    }

  private:
    const ComponentClass& served_;
};

}  // namespace

std::span<const ComponentClass> componentClasses() {
    static const std::vector<ComponentClass> classes = {
        {"Tarnwick.clsWaterUseEstimation", classId(1), make<clsWaterUseEstimation, IExtension>},
        {"Tarnwick.clsToolBar_Zav", classId(2), make<clsToolBar_Zav, IToolBarDef>},
        {"Tarnwick.clsMenu_Zav_IR", classId(3), make<clsMenu_Zav_IR, IMenuDef>},
        {"Tarnwick.clsMenu_Zav_IR_ET", classId(4), make<clsMenu_Zav_IR_ET, IMenuDef>},
        {"Tarnwick.clsMenu_Zav_IR_IRR", classId(5), make<clsMenu_Zav_IR_IRR, IMenuDef>},
        {"Tarnwick.clsSettings", classId(6), make<clsSettings, ICommand>},
        {"Tarnwick.clsET_ReferenceET", classId(7), make<clsET_ReferenceET, ICommand>},
        {"Tarnwick.clsET_CropCoefficient", classId(8), make<clsET_CropCoefficient, ICommand>},
        {"Tarnwick.clsET_CropET", classId(9), make<clsET_CropET, ICommand>},
        {"Tarnwick.clsPPT", classId(10), make<clsPPT, ICommand>},
        {"Tarnwick.clsIR_NIR", classId(11), make<clsIR_NIR, ICommand>},
        {"Tarnwick.clsIR_EFF", classId(12), make<clsIR_EFF, ICommand>},
        {"Tarnwick.clsIR_IRR", classId(13), make<clsIR_IRR, ICommand>},
    };
    return classes;
}

HResult getClassObject(const Guid& clsid, const Guid& interfaceId, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const auto classes = componentClasses();
    const auto served = std::find_if(classes.begin(), classes.end(),
                                     [&](const ComponentClass& c) { return c.clsid == clsid; });
    if (served == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new ClassObject(*served);
    const HResult result = factory->QueryInterface(interfaceId, object);
    factory->Release();
    return result;
}

HResult canUnloadNow() { return moduleReferences() == 0 ? S_OK : S_FALSE; }

}  // namespace velmora
