// SPDX-License-Identifier: MIT
// The extension library through its four entry points, as a host sees it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "gis/errors.h"
#include "hosts/components/class_registry.h"
#include "hosts/components/component_loader.h"
#include "shell/com_object.h"
#include "shell/interfaces.h"
#include "tests/support/temp_folder.h"

namespace velmora {
namespace {

struct Components : testing::Test {
    test::TempFolder config;
    Components() { setenv("XDG_CONFIG_HOME", config.path().c_str(), 1); }
    ~Components() override { unsetenv("XDG_CONFIG_HOME"); }

    template <class Function>
    Function entry(const char* name) {
        void* library = dlopen(VELMORA_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
        return reinterpret_cast<Function>(dlsym(library, name));
    }
    HResult canUnload() { return entry<HResult (*)()>("DllCanUnloadNow")(); }
};

class RecordedItem : public IItemDef {
  public:
    void putID(const std::string& progId) override { id = progId; }
    void putGroup(bool beginsGroup) override { group = beginsGroup ? 1 : 0; }
    std::string id;
    int group = -1;  // not set
};

template <class Definition>
RecordedItem item(Definition& definition, int position) {
    RecordedItem recorded;
    definition.GetItemInfo(position, recorded);
    return recorded;
}

TEST_F(Components, LiveObjectsAndLocksKeepTheLibrary) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    EXPECT_EQ(canUnload(), S_OK);
    {
        const auto command = loader.create<ICommand>("Tarnwick.clsPPT");
        EXPECT_EQ(canUnload(), S_FALSE);
        EXPECT_EQ(command->AddRef(), 2U);
        EXPECT_EQ(command->Release(), 1U);
    }
    EXPECT_EQ(canUnload(), S_OK);
    {
        const auto getClass =
            entry<HResult (*)(const Guid&, const Guid&, void**)>("DllGetClassObject");
        ComPtr<IClassFactory> factory;
        const auto clsid = findRegisteredClass("Tarnwick.clsPPT")->clsid;
        ASSERT_EQ(getClass(clsid, IClassFactory::iid, factory.receive()), S_OK);
        EXPECT_EQ(canUnload(), S_FALSE);
        factory->LockServer(true);
        void* object = nullptr;
        EXPECT_EQ(factory->CreateInstance(factory.get(), IUnknown::iid, &object),
                  CLASS_E_NOAGGREGATION);
        EXPECT_EQ(factory->CreateInstance(nullptr, IMenuDef::iid, &object), E_NOINTERFACE);
        EXPECT_EQ(object, nullptr);
        EXPECT_EQ(factory->CreateInstance(nullptr, IUnknown::iid, nullptr), E_POINTER);
        EXPECT_EQ(getClass(Guid{}, IClassFactory::iid, &object), CLASS_E_CLASSNOTAVAILABLE);
        ComPtr<IClassFactory> other;
        ASSERT_EQ(getClass(clsid, IClassFactory::iid, other.receive()), S_OK);
        other->LockServer(false);
        factory->LockServer(true);
    }
    EXPECT_EQ(canUnload(), S_FALSE);  // still locked
    const auto getClass = entry<HResult (*)(const Guid&, const Guid&, void**)>("DllGetClassObject");
    ComPtr<IClassFactory> factory;
    getClass(findRegisteredClass("Tarnwick.clsPPT")->clsid, IClassFactory::iid, factory.receive());
    factory->LockServer(false);
    factory = ComPtr<IClassFactory>();
    EXPECT_EQ(canUnload(), S_OK);
}

TEST_F(Components, OneObjectAnswersForAllItsInterfaces) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    const auto extension = loader.create<IExtension>("Tarnwick.clsWaterUseEstimation");
    ComPtr<IExtensionConfig> configuration;
    ASSERT_EQ(extension->QueryInterface(IExtensionConfig::iid, configuration.receive()), S_OK);
    ComPtr<IUnknown> one;
    ComPtr<IUnknown> two;
    extension->QueryInterface(IUnknown::iid, one.receive());
    configuration->QueryInterface(IUnknown::iid, two.receive());
    EXPECT_EQ(one.get(), two.get());
    EXPECT_EQ(extension->QueryInterface(IUnknown::iid, nullptr), E_POINTER);

    EXPECT_EQ(extension->Name(), "Tarnwick");
    EXPECT_EQ(configuration->ProductName(), "Regional Evapotranspiration");
    EXPECT_EQ(configuration->Description(),
              "This is a ArcGIS extension for estimating regional Irrigation water use.");
    EXPECT_EQ(configuration->State(), 0);
    configuration->putState(2);
    EXPECT_EQ(configuration->State(), 2);
}

TEST_F(Components, ToolbarHoldsTheRootMenu) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    const auto toolbar = loader.create<IToolBarDef>("Tarnwick.clsToolBar_Zav");
    EXPECT_EQ(toolbar->Name(), "Zav Toolbar");
    EXPECT_EQ(toolbar->Caption(), "Velmora:  Water Use Estimation");
    EXPECT_EQ(toolbar->ItemCount(), 1);
    EXPECT_EQ(item(*toolbar.get(), 0).id, "Tarnwick.clsMenu_Zav_IR");
    EXPECT_EQ(item(*toolbar.get(), 0).group, -1);
    EXPECT_EQ(item(*toolbar.get(), 1).id, "");
    EXPECT_EQ(item(*toolbar.get(), -1).id, "");
}

struct MenuItemCase {
    const char* menu;
    int position;
    const char* id;
    int group;
};

TEST_F(Components, MenusHoldTheCommands) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    const MenuItemCase cases[] = {
        {"Tarnwick.clsMenu_Zav_IR", 0, "Tarnwick.clsSettings", 0},
        {"Tarnwick.clsMenu_Zav_IR", 1, "Tarnwick.clsMenu_Zav_IR_ET", 1},
        {"Tarnwick.clsMenu_Zav_IR", 2, "Tarnwick.clsPPT", 1},
        {"Tarnwick.clsMenu_Zav_IR", 3, "Tarnwick.clsMenu_Zav_IR_IRR", 1},
        {"Tarnwick.clsMenu_Zav_IR", 4, "", -1},
        {"Tarnwick.clsMenu_Zav_IR_ET", 0, "Tarnwick.clsET_ReferenceET", -1},
        {"Tarnwick.clsMenu_Zav_IR_ET", 1, "Tarnwick.clsET_CropCoefficient", 1},
        {"Tarnwick.clsMenu_Zav_IR_ET", 2, "Tarnwick.clsET_CropET", 1},
        {"Tarnwick.clsMenu_Zav_IR_IRR", 0, "Tarnwick.clsIR_NIR", 1},
        {"Tarnwick.clsMenu_Zav_IR_IRR", 1, "Tarnwick.clsIR_EFF", 1},
        {"Tarnwick.clsMenu_Zav_IR_IRR", 2, "Tarnwick.clsIR_IRR", 1},
    };
    for (const auto& c : cases) {
        const auto menu = loader.create<IMenuDef>(c.menu);
        EXPECT_EQ(item(*menu.get(), c.position).id, c.id) << c.menu << c.position;
        EXPECT_EQ(item(*menu.get(), c.position).group, c.group) << c.menu << c.position;
    }
    const auto root = loader.create<IMenuDef>("Tarnwick.clsMenu_Zav_IR");
    EXPECT_EQ(root->ItemCount(), 4);
    EXPECT_EQ(root->Name(), "Irrigation Water Use Estimation");
    EXPECT_EQ(root->Caption(), "Irrigation Water Use Estimation");
    ComPtr<IRootLevelMenu> marker;
    EXPECT_EQ(root->QueryInterface(IRootLevelMenu::iid, marker.receive()), S_OK);
    const auto et = loader.create<IMenuDef>("Tarnwick.clsMenu_Zav_IR_ET");
    EXPECT_EQ(et->ItemCount(), 3);
    EXPECT_EQ(et->Name(), "");
    EXPECT_EQ(et->Caption(), "Evapotranspiration Estimation");
    ComPtr<IRootLevelMenu> none;
    EXPECT_EQ(et->QueryInterface(IRootLevelMenu::iid, none.receive()), E_NOINTERFACE);
    const auto irr = loader.create<IMenuDef>("Tarnwick.clsMenu_Zav_IR_IRR");
    EXPECT_EQ(irr->Name(), "");
    EXPECT_EQ(irr->Caption(), "Crop Irrigation Water Requirement");
}

TEST_F(Components, CommandsHaveTheirTexts) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    const char* const cases[][4] = {
        {"clsSettings", "", "General Settings", "Make settings for model running"},
        {"clsET_ReferenceET", "Velmora_RefET", "Calculate Reference ET", "Estimate Regional RefET"},
        {"clsET_CropCoefficient", "Velmora_KcMaker", "Make Kc Maps",
         "Edit Crop Coefficients Curve and Make Kc Map"},
        {"clsET_CropET", "", "Estimate Crop ET", ""},
        {"clsPPT", "PPTInter", "Precipitation Estimation",
         "Estimate spatially distributed precipitation"},
        {"clsIR_NIR", "", "Estimate Crop Water Requirement",
         "Estimate Irrigation Water Requirement"},
        {"clsIR_EFF", "WaterUseRst", "Estimate Irrigation Efficiency", "Show the Results"},
        {"clsIR_IRR", "WaterUseRst", "Estimate Irrigation Water Requirement",
         "Estimate Irrigation Water Requirement"}};
    for (const auto& c : cases) {
        const auto command = loader.create<ICommand>(std::string("Tarnwick.") + c[0]);
        EXPECT_EQ(command->Name(), c[1]);
        EXPECT_EQ(command->Caption(), c[2]);
        EXPECT_EQ(command->Message(), c[3]);
        EXPECT_TRUE(command->Enabled());
        EXPECT_FALSE(command->Checked());
        EXPECT_EQ(command->Tooltip(), "");
        EXPECT_EQ(command->HelpFile(), "");
        EXPECT_EQ(command->HelpContextID(), 0);
        EXPECT_EQ(command->Bitmap(), 0);
        EXPECT_EQ(command->Category(), "Tarnwick");
    }
}

TEST_F(Components, UnregisteringRemovesExactlyItsOwn) {
    const std::string foreign = "Other.Thing\t{00000000-0000-0000-0000-000000000000}\t/other.so\n";
    std::filesystem::create_directory(config.file("velmora"));
    test::write(classRegistryPath(), foreign);
    ASSERT_EQ(entry<HResult (*)()>("DllRegisterServer")(), S_OK);
    EXPECT_EQ(findRegisteredClass("Tarnwick.clsPPT")->module,
              std::filesystem::canonical(VELMORA_LIBRARY_FILE).string());
    EXPECT_EQ(test::contentOf(classRegistryPath()).find(foreign), 0U);
    ASSERT_EQ(entry<HResult (*)()>("DllUnregisterServer")(), S_OK);
    EXPECT_EQ(test::contentOf(classRegistryPath()), foreign);
}

TEST_F(Components, AnUnknownClassIsTold) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    EXPECT_THROW(loader.create<ICommand>("Tarnwick.clsNone"), PlatformError);
    EXPECT_THROW(loader.create<ICommand>("Tarnwick.clsToolBar_Zav"), PlatformError);
    EXPECT_THROW(ComponentLoader("/none/libVelmora.so"), PlatformError);
}

TEST_F(Components, ARegistryThatCannotBeWrittenDoesNotStopTheHost) {
    test::write(config.file("velmora"), "a file where the folder should be");
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    EXPECT_FALSE(findRegisteredClass("Tarnwick.clsPPT"));
    EXPECT_EQ(loader.create<ICommand>("Tarnwick.clsPPT")->Name(), "PPTInter");
}

// What the library counts and what its host counts is one number: they share the code.
TEST_F(Components, AHostSharesTheLibrarysState) {
    const ComponentLoader loader(VELMORA_LIBRARY_FILE);
    const long before = moduleReferences();
    const auto object = loader.create<ICommand>("Tarnwick.clsSettings");
    EXPECT_EQ(moduleReferences(), before + 1);
}

}  // namespace
}  // namespace velmora
