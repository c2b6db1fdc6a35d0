#pragma once
// An automation object as far as the library asks one.

#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oaidl.h>
#include <oleauto.h>

#include <map>
#include <string>

namespace zavrel::tests {

// The system's own interfaces have no virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object with properties by name, each an object, a text or a number.
class FakeObject final : public IDispatch {
 public:
  std::map<std::wstring, IDispatch*> objects;
  std::map<std::wstring, std::wstring> texts;
  std::map<std::wstring, long> numbers;
  ULONG references = 1;
  int calls = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** result) override {
    *result = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* id) override {
    ++calls;
    // Like Excel's, a number that holds for all objects.
    static std::map<std::wstring, DISPID> ids;
    const std::wstring name = names[0];
    *id = ids.emplace(name, static_cast<DISPID>(ids.size() + 1)).first->second;
    names_[*id] = name;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    const std::wstring& asked = names_[id];
    if (objects.count(asked) + texts.count(asked) + numbers.count(asked) == 0)
      return DISP_E_MEMBERNOTFOUND;
    if (const auto object = objects.find(asked); object != objects.end()) {
      result->vt = VT_DISPATCH;
      result->pdispVal = object->second;
      if (object->second != nullptr) object->second->AddRef();
    } else if (const auto number = numbers.find(asked); number != numbers.end()) {
      result->vt = VT_I4;
      result->lVal = number->second;
    } else {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(texts[asked].c_str());
    }
    return S_OK;
  }

 private:
  static inline std::map<DISPID, std::wstring> names_;
};

#pragma GCC diagnostic pop

}  // namespace zavrel::tests
