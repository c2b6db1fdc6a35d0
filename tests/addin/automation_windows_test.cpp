// Automation objects that a companion hands over: counted, asked for the calling formula, never
// more.
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oleauto.h>

#include <doctest/doctest.h>

#include <map>
#include <string>

#include "addin/calling_cell.h"
#include "addin/fake_excel.h"
#include "addin/session.h"

namespace zavrel::tests {
namespace {

// The system's own interfaces have no virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object with properties by name, each an object or a text.
class FakeObject : public IDispatch {
 public:
  std::map<std::wstring, IDispatch*> objects;
  std::map<std::wstring, std::wstring> texts;
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
    asked_ = names[0];
    *id = 1;
    return objects.count(asked_) + texts.count(asked_) > 0 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (const auto object = objects.find(asked_); object != objects.end()) {
      result->vt = VT_DISPATCH;
      result->pdispVal = object->second;
      if (object->second != nullptr) object->second->AddRef();
    } else {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(texts[asked_].c_str());
    }
    return S_OK;
  }

 private:
  std::wstring asked_;
};

#pragma GCC diagnostic pop

}  // namespace

TEST_CASE("the calling cell's formula, and nothing where there is none") {
  FakeObject cell;
  cell.texts[L"Formula"] = L"=ZavMean(16384)";
  FakeObject application;
  application.objects[L"Caller"] = &cell;
  CHECK(CallingCellFormula(&application) == u"=ZavMean(16384)");
  CHECK((application.references == 1 && cell.references == 1));

  CHECK_FALSE(CallingCellFormula(nullptr));
  application.objects[L"Caller"] = nullptr;
  CHECK_FALSE(CallingCellFormula(&application));
  application.objects.clear();
  application.texts[L"Caller"] = L"called from a menu";
  CHECK_FALSE(CallingCellFormula(&application));
  application.texts.clear();
  CHECK_FALSE(CallingCellFormula(&application));
}

TEST_CASE("announced objects are held as long as they are announced, and never called") {
  FakeObject application;
  FakeObject companion;
  const FakeExcel excel;
  Session::Open(QuietServices());
  Announcement announcement;
  announcement.application_id = 5;
  announcement.excel_application = &application;
  announcement.companion = &companion;
  Session::Current()->Announce(announcement);
  Session::Current()->Announce(announcement);
  CHECK((application.references == 2 && companion.references == 2));
  Session::Current()->Withdraw(5);
  CHECK(companion.references == 1);
  Session::Current()->Announce(announcement);
  Session::Close();
  CHECK((application.references == 1 && companion.references == 1));
  CHECK((application.calls == 0 && companion.calls == 0));
}

}  // namespace zavrel::tests
