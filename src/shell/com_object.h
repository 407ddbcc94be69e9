// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "shell/com.h"

namespace velmora {

// Objects and locks that keep the library from being unloaded.
std::atomic<long>& moduleReferences();

// An object with the given interfaces. It starts with one reference and ends with its last.
template <class First, class... Others>
class ComObject : public First, public Others... {
  public:
    ComObject() { ++moduleReferences(); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HResult QueryInterface(const Guid& interfaceId, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (interfaceId == IUnknown::iid) {
            *object = static_cast<IUnknown*>(static_cast<First*>(this));
        } else {
            offer<First>(interfaceId, object);
            (offer<Others>(interfaceId, object), ...);
        }
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override {
        const std::uint32_t left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    virtual ~ComObject() { --moduleReferences(); }

  private:
    template <class Interface>
    void offer(const Guid& interfaceId, void** object) {
        if (interfaceId == Interface::iid) *object = static_cast<Interface*>(this);
    }
    std::atomic<std::uint32_t> references_{1};
};

}  // namespace velmora
