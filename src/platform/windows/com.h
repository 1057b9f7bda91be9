// What COM hands out, with owners. The caller of the library initialises COM; without it nothing can be created, and
// that is a failure like any other.
#pragma once

#include <windows.h>
#include <new>
#include <objbase.h>
#include <oleauto.h>
#include <string>
#include <string_view>

#include <wrl/client.h>

#include "platform/windows/wide_text.h"

namespace captionfx {

/// Whether a call was done. Memory that ran out is thrown.
[[nodiscard]] inline bool Done(HRESULT result) {
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    return SUCCEEDED(result);
}

/// The identifier of an interface; each file specialises it for those that it asks for.
template <class Interface>
inline constexpr GUID kInterfaceId{};

using Microsoft::WRL::ComPtr;

/// An object under another of its interfaces; empty if it has none of that kind.
template <class Interface>
[[nodiscard]] ComPtr<Interface> Query(IUnknown* object) {
    ComPtr<Interface> other;
    void* found = nullptr;
    if (object != nullptr && Done(object->QueryInterface(kInterfaceId<Interface>, &found)))
        other.Attach(static_cast<Interface*>(found));
    return other;
}

/// A new object of a class in this process; empty where the system has no such class, or no COM on this thread.
template <class Interface>
[[nodiscard]] ComPtr<Interface> CreateComObject(const GUID& classId) {
    ComPtr<Interface> object;
    void* created = nullptr;
    if (Done(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, kInterfaceId<Interface>, &created)))
        object.Attach(static_cast<Interface*>(created));
    return object;
}

/// A text as COM passes it.
class ComText {
public:
    explicit ComText(std::wstring_view text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
        if (text_ == nullptr) throw std::bad_alloc();
    }
    explicit ComText(const char* text) : ComText(WideOf(std::string_view(text))) {}
    ComText(const ComText&) = delete;
    ComText& operator=(const ComText&) = delete;
    ~ComText() { SysFreeString(text_); }

    [[nodiscard]] BSTR Get() const { return text_; }

private:
    BSTR text_;
};

/// A value as COM passes it.
class ComValue {
public:
    ComValue() { VariantInit(&value_); }
    /// A reference to an object.
    explicit ComValue(IUnknown* object) : ComValue() {
        value_.vt = VT_UNKNOWN;
        value_.punkVal = object;
        object->AddRef();
    }
    explicit ComValue(std::wstring_view text) : ComValue() {
        value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (value_.bstrVal == nullptr) throw std::bad_alloc();
        value_.vt = VT_BSTR;
    }
    ComValue(const ComValue&) = delete;
    ComValue& operator=(const ComValue&) = delete;
    ~ComValue() { VariantClear(&value_); }

    [[nodiscard]] const VARIANT& Get() const { return value_; }
    [[nodiscard]] VARIANT* Out() { return &value_; }
    [[nodiscard]] bool IsText() const { return value_.vt == VT_BSTR; }
    [[nodiscard]] std::wstring_view Text() const { return {value_.bstrVal, SysStringLen(value_.bstrVal)}; }

private:
    VARIANT value_;
};

}  // namespace captionfx
