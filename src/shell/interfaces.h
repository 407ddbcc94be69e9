// SPDX-License-Identifier: MIT
// What the host asks of the extension, its toolbar, menus and commands.
#pragma once

#include <string>

#include "gis/application.h"
#include "shell/com.h"

namespace velmora {

class IExtension : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C01, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x01}};
    virtual std::string Name() = 0;
    virtual void Startup(void* initialisationData) = 0;
    virtual void Shutdown() = 0;

  protected:
    ~IExtension() = default;
};

class IExtensionConfig : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C02, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x02}};
    virtual std::string ProductName() = 0;
    virtual std::string Description() = 0;
    virtual std::int32_t State() = 0;
    virtual void putState(std::int32_t state) = 0;

  protected:
    ~IExtensionConfig() = default;
};

// An item that the host draws on a toolbar or menu.
class IItemDef {
  public:
    virtual ~IItemDef() = default;
    virtual void putID(const std::string& progId) = 0;
    virtual void putGroup(bool beginsGroup) = 0;
};

class IToolBarDef : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C03, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x03}};
    virtual std::int32_t ItemCount() = 0;
    virtual void GetItemInfo(std::int32_t position, IItemDef& item) = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;

  protected:
    ~IToolBarDef() = default;
};

class IMenuDef : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C04, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x04}};
    virtual std::int32_t ItemCount() = 0;
    virtual void GetItemInfo(std::int32_t position, IItemDef& item) = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;

  protected:
    ~IMenuDef() = default;
};

// A menu that the host may offer as a menu of its own.
class IRootLevelMenu : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C05, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x05}};

  protected:
    ~IRootLevelMenu() = default;
};

class ICommand : public IUnknown {
  public:
    static constexpr Guid iid{
        0x7A8F1C06, 0x52B7, 0x4E0B, {0x9D, 0x11, 0x3A, 0x60, 0x0C, 0x7E, 0x21, 0x06}};
    virtual bool Enabled() = 0;
    virtual bool Checked() = 0;
    virtual std::string Name() = 0;
    virtual std::string Caption() = 0;
    virtual std::string Tooltip() = 0;
    virtual std::string Message() = 0;
    virtual std::string HelpFile() = 0;
    virtual std::int32_t HelpContextID() = 0;
    virtual std::intptr_t Bitmap() = 0;
    virtual std::string Category() = 0;
    virtual void OnCreate(IApplication* hook) = 0;
    virtual void OnClick() = 0;

  protected:
    ~ICommand() = default;
};

}  // namespace velmora
