// OLE automation on Windows: objects are created from their program identifier and every
// call goes through IDispatch::Invoke by dispatch identifier, without type libraries or
// name look-ups. Arguments travel in reverse order in DISPPARAMS; a property write names
// its value with DISPID_PROPERTYPUT; every VARIANT this file fills or receives is cleared,
// which frees its strings and releases its objects.

#ifdef _WIN32

#include "io/Automation.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#include <objbase.h>
#include <oleauto.h>

#include <climits>
#include <cstdio>
#include <new>
#include <string>
#include <vector>

namespace ba {
namespace {

constexpr VARIANT_BOOL kVariantTrue = static_cast<VARIANT_BOOL>(-1);
constexpr VARIANT_BOOL kVariantFalse = 0;
// The locale passed to Invoke; the calls made here carry no locale-dependent text.
constexpr LCID kInvokeLocale = 0;

bool Failed(HRESULT hr) { return hr < 0; }

std::wstring Widen(std::string_view utf8)
{
    if (utf8.empty()) return {};
    if (utf8.size() > static_cast<std::size_t>(INT_MAX)) throw AutomationError("a text argument is too long");
    const int length = static_cast<int>(utf8.size());
    const int wideLength = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    if (wideLength <= 0) throw AutomationError("a text argument cannot be converted to UTF-16");
    std::wstring wide(static_cast<std::size_t>(wideLength), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), wideLength);
    return wide;
}

std::string Narrow(const wchar_t* text, UINT length)
{
    if (text == nullptr || length == 0 || length > static_cast<UINT>(INT_MAX)) return {};
    const int wideLength = static_cast<int>(length);
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, wideLength, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, wideLength, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::string Hex(HRESULT hr)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(static_cast<ULONG>(hr)));
    return text;
}

// Keeps COM initialised on this thread for as long as any object created through it lives.
// A thread that already runs COM in another apartment model keeps it (the call answers
// RPC_E_CHANGED_MODE and must not be balanced by CoUninitialize).
class CComApartment {
public:
    CComApartment() : m_initialised(!Failed(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~CComApartment()
    {
        if (m_initialised) CoUninitialize();
    }
    CComApartment(const CComApartment&) = delete;
    CComApartment& operator=(const CComApartment&) = delete;

private:
    bool m_initialised;
};

// A VARIANT that is cleared when it goes out of scope.
class CVariant {
public:
    CVariant() { VariantInit(&m_value); }
    ~CVariant() { VariantClear(&m_value); }
    CVariant(const CVariant&) = delete;
    CVariant& operator=(const CVariant&) = delete;
    VARIANT* Get() { return &m_value; }

private:
    VARIANT m_value;
};

// The argument array of one call; every element is cleared afterwards, whether or not it
// was filled.
class CArgumentArray {
public:
    explicit CArgumentArray(std::size_t count) : m_args(count)
    {
        for (auto& arg : m_args) VariantInit(&arg);
    }
    ~CArgumentArray()
    {
        for (auto& arg : m_args) VariantClear(&arg);
    }
    CArgumentArray(const CArgumentArray&) = delete;
    CArgumentArray& operator=(const CArgumentArray&) = delete;
    VARIANTARG& operator[](std::size_t i) { return m_args[i]; }
    VARIANTARG* Data() { return m_args.empty() ? nullptr : m_args.data(); }
    UINT Count() const { return static_cast<UINT>(m_args.size()); }

private:
    std::vector<VARIANTARG> m_args;
};

class CDispatchObject final : public IAutomationObject {
public:
    // Takes over one reference of `dispatch`.
    CDispatchObject(IDispatch* dispatch, std::shared_ptr<CComApartment> apartment)
        : m_apartment(std::move(apartment)), m_dispatch(dispatch)
    {
    }
    ~CDispatchObject() override
    {
        if (m_dispatch != nullptr) m_dispatch->Release();
    }
    CDispatchObject(const CDispatchObject&) = delete;
    CDispatchObject& operator=(const CDispatchObject&) = delete;

    IDispatch* Dispatch() const { return m_dispatch; }

    AutomationValue PropertyGet(DispatchId id) override
    {
        return Invoke(id, DISPATCH_PROPERTYGET, {}, false, "property get");
    }

    void PropertyPut(DispatchId id, const AutomationValue& value) override
    {
        const bool isObject = std::holds_alternative<AutomationObjectPtr>(value);
        const WORD flags = static_cast<WORD>(isObject ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT);
        Invoke(id, flags, std::span(&value, 1), true, "property put");
    }

    AutomationValue Method(DispatchId id, std::span<const AutomationValue> args) override
    {
        return Invoke(id, DISPATCH_METHOD, args, false, "method");
    }

private:
    void ToVariant(const AutomationValue& value, VARIANTARG& out) const;
    AutomationValue FromVariant(const VARIANT& value) const;
    AutomationValue Invoke(DispatchId id, WORD flags, std::span<const AutomationValue> args, bool isPut,
                           const char* what);

    std::shared_ptr<CComApartment> m_apartment; // released after the object
    IDispatch* m_dispatch;
};

void CDispatchObject::ToVariant(const AutomationValue& value, VARIANTARG& out) const
{
    if (const auto* v = std::get_if<std::int16_t>(&value)) {
        out.vt = VT_I2;
        out.iVal = *v;
    } else if (const auto* v32 = std::get_if<std::int32_t>(&value)) {
        out.vt = VT_I4;
        out.lVal = *v32;
    } else if (const auto* f = std::get_if<float>(&value)) {
        out.vt = VT_R4;
        out.fltVal = *f;
    } else if (const auto* b = std::get_if<bool>(&value)) {
        out.vt = VT_BOOL;
        out.boolVal = *b ? kVariantTrue : kVariantFalse;
    } else if (const auto* s = std::get_if<std::string>(&value)) {
        const std::wstring wide = Widen(*s);
        BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
        if (text == nullptr) throw std::bad_alloc();
        out.vt = VT_BSTR;
        out.bstrVal = text; // freed by VariantClear
    } else if (const auto* o = std::get_if<AutomationObjectPtr>(&value)) {
        const auto* object = dynamic_cast<const CDispatchObject*>(o->get());
        if (object == nullptr) throw AutomationError("an object argument does not belong to this automation backend");
        object->Dispatch()->AddRef(); // released by VariantClear
        out.vt = VT_DISPATCH;
        out.pdispVal = object->Dispatch();
    } else {
        out.vt = VT_EMPTY;
    }
}

// Results of other VARIANT types read as empty; a caller that needs a value says which
// call gave none.
AutomationValue CDispatchObject::FromVariant(const VARIANT& value) const
{
    switch (value.vt) {
    case VT_I2: return static_cast<std::int16_t>(value.iVal);
    case VT_UI1: return static_cast<std::int16_t>(value.bVal);
    case VT_I1: return static_cast<std::int16_t>(value.cVal);
    case VT_UI2: return static_cast<std::int32_t>(value.uiVal);
    case VT_I4: return static_cast<std::int32_t>(value.lVal);
    case VT_INT: return static_cast<std::int32_t>(value.intVal);
    case VT_R4: return value.fltVal;
    case VT_R8: return static_cast<float>(value.dblVal);
    case VT_BOOL: return value.boolVal != kVariantFalse;
    case VT_BSTR: return Narrow(value.bstrVal, SysStringLen(value.bstrVal));
    case VT_DISPATCH:
        if (value.pdispVal == nullptr) return std::monostate{};
        value.pdispVal->AddRef(); // the result VARIANT releases its own reference when cleared
        return AutomationObjectPtr(std::make_shared<CDispatchObject>(value.pdispVal, m_apartment));
    default: return std::monostate{};
    }
}

AutomationValue CDispatchObject::Invoke(DispatchId id, WORD flags, std::span<const AutomationValue> args,
                                        bool isPut, const char* what)
{
    CArgumentArray rgvarg(args.size());
    // DISPPARAMS holds the arguments last to first.
    for (std::size_t i = 0; i < args.size(); ++i) ToVariant(args[i], rgvarg[args.size() - 1 - i]);

    DISPID namedPut = DISPID_PROPERTYPUT;
    DISPPARAMS params{};
    params.rgvarg = rgvarg.Data();
    params.cArgs = rgvarg.Count();
    if (isPut) {
        params.rgdispidNamedArgs = &namedPut;
        params.cNamedArgs = 1;
    }

    CVariant result;
    EXCEPINFO exception{};
    UINT argumentError = 0;
    const HRESULT hr = m_dispatch->Invoke(static_cast<DISPID>(id), IID_NULL, kInvokeLocale, flags, &params,
                                          isPut ? nullptr : result.Get(), &exception, &argumentError);

    std::string description;
    if (hr == DISP_E_EXCEPTION) {
        if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
        description = Narrow(exception.bstrDescription, SysStringLen(exception.bstrDescription));
    }
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);

    if (Failed(hr)) {
        std::string message = std::string(what) + " " + std::to_string(id) + " failed with " + Hex(hr);
        if (hr == DISP_E_TYPEMISMATCH || hr == DISP_E_PARAMNOTFOUND) {
            // puArgErr counts in DISPPARAMS order, which is the reverse of the declaration.
            message += " at argument " + std::to_string(args.size() - argumentError);
        }
        if (!description.empty()) message += " (" + description + ")";
        throw AutomationError(message);
    }
    return isPut ? AutomationValue{} : FromVariant(*result.Get());
}

class CDispatchFactory final : public IAutomationFactory {
public:
    CDispatchFactory() : m_apartment(std::make_shared<CComApartment>()) {}

    AutomationObjectPtr Create(std::string_view progId) override
    {
        const std::wstring wide = Widen(progId);
        CLSID clsid{};
        if (Failed(CLSIDFromProgID(wide.c_str(), &clsid))) return nullptr;
        IDispatch* dispatch = nullptr;
        const HRESULT hr = CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER, IID_IDispatch,
                                            reinterpret_cast<void**>(&dispatch));
        if (Failed(hr) || dispatch == nullptr) return nullptr;
        return std::make_shared<CDispatchObject>(dispatch, m_apartment);
    }

private:
    std::shared_ptr<CComApartment> m_apartment;
};

} // namespace

std::unique_ptr<IAutomationFactory> MakePlatformAutomationFactory()
{
    return std::make_unique<CDispatchFactory>();
}

} // namespace ba

#endif // _WIN32
