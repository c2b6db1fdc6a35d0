#include "msexcel/windows/object.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/utf.h"

namespace MsExcel {
namespace {

using zavrel::OwnedVariant;
using zavrel::Utf16FromUtf8;

/// Excel while a cell is edited or a dialog is open.
constexpr HRESULT kExcelIgnoresCalls = static_cast<HRESULT>(0x800AC472);
/// How often a call is repeated while Excel is busy, and the pauses between: 1.5 s in all, as long
/// as a person takes a delay for the computer's.
constexpr int kMostAttempts = 16;
constexpr DWORD kPause = 100;  // milliseconds

bool IsBusy(HRESULT result) {
  return result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER ||
         result == kExcelIgnoresCalls;
}

/// Owns the texts of a failed call.
struct CallFailure : EXCEPINFO {
  CallFailure() : EXCEPINFO{} {}
  CallFailure(const CallFailure&) = delete;
  CallFailure& operator=(const CallFailure&) = delete;
  ~CallFailure() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }

  /// What a failed call is about: DISP_E_EXCEPTION only says that the rest stands here.
  HRESULT Code(HRESULT result) const {
    return result == DISP_E_EXCEPTION && scode != 0 ? scode : result;
  }
  std::u16string Reason(HRESULT result) const {
    if (SysStringLen(bstrDescription) > 0) return std::u16string(zavrel::BstrView(bstrDescription));
    return Utf16FromUtf8(fmt::format("0x{:08X}", static_cast<unsigned>(Code(result))));
  }
};

[[noreturn]] void ThrowFailed(const Member& member, std::u16string reason) {
  throw zavrel::VekExcelCallFailed(member.Text(), zavrel::messages::kMessageExcelCallFailed,
                                   {Utf16FromUtf8(member.Text()), std::move(reason)});
}

[[noreturn]] void ThrowUnsupported(const Member& member) {
  throw zavrel::VekExcelUnsupportedMethodCall(member.Text(),
                                              zavrel::messages::kMessageExcelUnsupportedMethodCall,
                                              {Utf16FromUtf8(member.Text())});
}

/// The member's number at this object.
DISPID IdOf(IDispatch* object, Member& member) {
  const void* const implementation = *reinterpret_cast<void* const*>(object);
  if (member.asked == implementation) return member.id;
  std::u16string name = Utf16FromUtf8(member.name);
  auto* names = reinterpret_cast<LPOLESTR>(name.data());
  if (FAILED(object->GetIDsOfNames(IID_NULL, &names, 1, zavrel::kCallLocale, &member.id)))
    ThrowUnsupported(member);
  member.asked = implementation;
  return member.id;
}

Variant InvokeWith(IDispatch* object, Member& member, WORD flags, DISPPARAMS& parameters) {
  if (object == nullptr) ThrowFailed(member, u"there is no object");
  const DISPID id = IdOf(object, member);
  for (int attempt = 1;; ++attempt) {
    Variant result;
    CallFailure failure;
    const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
    const HRESULT code = object->Invoke(id, IID_NULL, zavrel::kCallLocale, flags, &parameters,
                                        is_put ? nullptr : result.address(), &failure, nullptr);
    if (SUCCEEDED(code)) return result;
    if (failure.pfnDeferredFillIn != nullptr) failure.pfnDeferredFillIn(&failure);
    if (IsBusy(failure.Code(code))) {
      if (attempt == kMostAttempts)
        throw zavrel::VekExcelBusy(member.Text(), zavrel::messages::kMessageExcelBusy);
      Sleep(kPause);
      continue;
    }
    if (code == DISP_E_MEMBERNOTFOUND) ThrowUnsupported(member);
    ThrowFailed(member, failure.Reason(code));
  }
}

}  // namespace

Answer Object::Invoke(Member& member, WORD flags, std::initializer_list<Variant> arguments) const {
  // Last argument first; the call reads them and leaves them alone.
  std::vector<VARIANT> reversed;
  reversed.reserve(arguments.size());
  for (auto next = std::rbegin(arguments); next != std::rend(arguments); ++next)
    reversed.push_back(next->get());
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  return {InvokeWith(object_, member, flags, parameters), member};
}

void Object::PutValue(Member& member, const Variant& value) const {
  VARIANT argument = value.get();
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&argument, &put, 1, 1};
  InvokeWith(object_, member, DISPATCH_PROPERTYPUT, parameters);
}

void Answer::Refuse() const { ThrowFailed(*member_, u"the answer has another type"); }

OwnedVariant Answer::Changed(VARTYPE type) const {
  OwnedVariant changed;
  const bool is_single = (value_.get().vt & VT_ARRAY) == 0 && !HasObject();
  if (!is_single || FAILED(VariantChangeType(changed.address(), zavrel::Unconst(value_.get()),
                                             VARIANT_ALPHABOOL, type)))
    Refuse();
  return changed;
}

std::u16string Answer::Text() const {
  if (value_.get().vt != VT_BSTR) Refuse();
  return std::u16string(zavrel::BstrView(value_.get().bstrVal));
}

double Answer::Number() const { return Changed(VT_R8).get().dblVal; }
long Answer::Integer() const { return Changed(VT_I4).get().lVal; }
bool Answer::Flag() const { return Changed(VT_BOOL).get().boolVal != VARIANT_FALSE; }

IDispatch* Answer::NeededObject() const {
  if (!HasObject()) Refuse();
  return value_.get().pdispVal;
}

Block Answer::Values() const {
  Block block = BlockIn(value_.get());
  if (block.rows == 0) Refuse();
  return block;
}

}  // namespace MsExcel
