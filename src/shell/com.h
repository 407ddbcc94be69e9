// SPDX-License-Identifier: MIT
// The component model by which hosts meet the extension: objects with interfaces found by
// identifier and counted by reference, made by class objects.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>

namespace velmora {

using HResult = std::int32_t;
constexpr HResult S_OK = 0;
constexpr HResult S_FALSE = 1;
constexpr HResult E_NOINTERFACE = static_cast<HResult>(0x80004002U);
constexpr HResult E_POINTER = static_cast<HResult>(0x80004003U);
constexpr HResult E_FAIL = static_cast<HResult>(0x80004005U);
constexpr HResult CLASS_E_NOAGGREGATION = static_cast<HResult>(0x80040110U);
constexpr HResult CLASS_E_CLASSNOTAVAILABLE = static_cast<HResult>(0x80040111U);

struct Guid {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::array<std::uint8_t, 8> data4{};
    bool operator==(const Guid&) const = default;
};

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}"
std::string guidText(const Guid& guid);
// False when the text is no identifier of that form.
bool parseGuid(const std::string& text, Guid& guid);

class IUnknown {
  public:
    static constexpr Guid iid{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    virtual HResult QueryInterface(const Guid& interfaceId, void** object) = 0;
    virtual std::uint32_t AddRef() = 0;
    virtual std::uint32_t Release() = 0;

  protected:
    ~IUnknown() = default;  // objects end by Release
};

class IClassFactory : public IUnknown {
  public:
    static constexpr Guid iid{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    virtual HResult CreateInstance(IUnknown* outer, const Guid& interfaceId, void** object) = 0;
    virtual HResult LockServer(bool lock) = 0;

  protected:
    ~IClassFactory() = default;
};

// Holds a reference and lets it go at the end.
template <class Interface>
class ComPtr {
  public:
    ComPtr() = default;
    ~ComPtr() {
        if (object_) object_->Release();
    }
    ComPtr(ComPtr&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    ComPtr& operator=(ComPtr&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    Interface* operator->() const { return object_; }
    Interface* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    void** receive() { return reinterpret_cast<void**>(&object_); }

  private:
    Interface* object_ = nullptr;
};

}  // namespace velmora
