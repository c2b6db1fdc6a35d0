#include "host/automation/windows/object.h"

#include <algorithm>
#include <optional>

#include "host/automation/windows/excel.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

// Of our own objects: no object of another maker answers to it.
constexpr IID kOwnObject = {
    0x6D0D1A5E, 0x6A55, 0x4E0B, {0x9A, 0x3B, 0x5C, 0x1E, 0x77, 0x20, 0x4F, 0xD1}};
constexpr std::size_t kNoMember = static_cast<std::size_t>(-1);

struct Parameter {
  std::string_view name;
  bool is_optional;
  char type;
};

std::vector<Parameter> ParametersOf(std::string_view text) {
  std::vector<Parameter> parameters;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    const std::size_t name = word.size() - 2;
    parameters.push_back({word.substr(0, name), word[name] == '?', word[name + 1]});
  }
  return parameters;
}

bool IsNamed(const wchar_t* given, std::u16string_view name) {
  return EqualIgnoringCase(reinterpret_cast<const char16_t*>(given), name);
}

/// The argument as the type of a letter; nothing if it cannot be that.
std::optional<Variant> Converted(const VARIANT& given, char letter) {
  Variant value(given);
  if (letter == 'v') return value;
  if (letter == 'o') return value.type() == VT_DISPATCH ? std::optional(value) : std::nullopt;
  const VARTYPE type = letter == 'i'   ? VT_I4
                       : letter == 'n' ? VT_R8
                       : letter == 'b' ? VT_BOOL
                                       : VT_BSTR;
  constexpr LCID kEnglish = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  // An object would be asked for its default value.
  if (value.type() == VT_DISPATCH) return std::nullopt;
  if (FAILED(VariantChangeTypeEx(value.address(), value.address(), kEnglish,
                                 type == VT_BSTR ? VARIANT_ALPHABOOL : 0, type)))
    return std::nullopt;
  return value;
}

bool IsMissing(const VARIANT& given) {
  return given.vt == VT_ERROR && given.scode == DISP_E_PARAMNOTFOUND;
}

BSTR NewText(std::u16string_view text) { return Variant(text).Release().bstrVal; }

/// An exception as Excel words it.
HRESULT Raise(HRESULT status, std::u16string_view text, EXCEPINFO* exception) {
  if (exception != nullptr) {
    *exception = {};
    exception->scode = status;
    exception->bstrSource = NewText(u"Microsoft Excel");
    exception->bstrDescription = NewText(text);
  }
  return DISP_E_EXCEPTION;
}

std::u16string Wording(const MemberShape& member, bool is_put, std::u16string_view class_name) {
  const std::u16string name(member.name), of = u" of " + std::u16string(class_name) + u" class";
  if (member.kind != kProperty) return name + u" method" + of + u" failed";
  return (is_put ? u"Unable to set the " : u"Unable to get the ") + name + u" property of the " +
         std::u16string(class_name) + u" class";
}

}  // namespace

/// One Invoke.
struct Object::Call {
  DISPID id;
  WORD flags;
  DISPPARAMS given;
  VARIANT* result;
  EXCEPINFO* exception;
  UINT* wrong;

  bool IsPut() const { return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0; }
  bool Fits(const MemberShape& member) const {
    if (IsPut()) return member.put != 0;
    if (member.kind == kProperty) return (flags & DISPATCH_PROPERTYGET) != 0;
    return (flags & DISPATCH_METHOD) != 0 || member.kind == kAccessor;
  }
  HRESULT FailAt(HRESULT status, UINT place) const {
    if (wrong != nullptr) *wrong = place;
    return status;
  }

  /// The arguments by parameter, with the value of a put behind them.
  HRESULT Read(const MemberShape& member, std::vector<Variant>& values) const {
    std::vector<Parameter> parameters = ParametersOf(member.parameters);
    const UINT named = given.cNamedArgs;
    if (IsPut()) {
      if (named == 0 || given.rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
        return DISP_E_PARAMNOTOPTIONAL;
    }
    if (given.cArgs > parameters.size() + (IsPut() ? 1 : 0) || named > given.cArgs)
      return DISP_E_BADPARAMCOUNT;
    values.assign(parameters.size(), Variant::Missing());
    if (IsPut()) {
      parameters.push_back({"", false, member.put});
      values.push_back(Variant::Missing());
    }
    for (UINT i = 0; i < given.cArgs; ++i) {
      std::size_t place = given.cArgs - 1 - i;
      if (i < named) {
        const DISPID parameter = given.rgdispidNamedArgs[i];
        place = parameter == DISPID_PROPERTYPUT ? parameters.size() - 1
                                                : static_cast<std::size_t>(parameter);
      }
      if (place >= parameters.size()) return FailAt(DISP_E_PARAMNOTFOUND, i);
      if (IsMissing(given.rgvarg[i])) continue;
      std::optional<Variant> value = Converted(given.rgvarg[i], parameters[place].type);
      if (!value) return FailAt(DISP_E_TYPEMISMATCH, i);
      values[place] = std::move(*value);
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      if (values[i].IsMissing() && !parameters[i].is_optional)
        return FailAt(DISP_E_PARAMNOTOPTIONAL, static_cast<UINT>(i));
    }
    return S_OK;
  }
};

Object::Object(ExcelPtr excel) : excel_(std::move(excel)) { ++excel_->live_objects; }
Object::~Object() { --excel_->live_objects; }

HRESULT Object::QueryInterface(REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  const bool is_known =
      IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, kOwnObject);
  *result = is_known ? this : nullptr;
  if (!is_known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG Object::AddRef() { return ++references_; }

ULONG Object::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Object::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT Object::GetTypeInfo(UINT, LCID, ITypeInfo**) { return DISP_E_BADINDEX; }

HRESULT Object::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (count == 0) return S_OK;
  std::fill(ids, ids + count, DISPID_UNKNOWN);
  std::size_t member = 0;
  while (member < member_count() && !IsNamed(names[0], shape(member).name)) ++member;
  if (member == member_count()) return DISP_E_UNKNOWNNAME;
  ids[0] = static_cast<DISPID>(member) + 1;
  HRESULT status = S_OK;
  const std::vector<Parameter> parameters = ParametersOf(shape(member).parameters);
  for (UINT i = 1; i < count; ++i) {
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [&](const Parameter& parameter) {
          return IsNamed(names[i], Utf16FromUtf8(parameter.name));
        });
    if (found == parameters.end()) {
      status = DISP_E_UNKNOWNNAME;
    } else {
      ids[i] = static_cast<DISPID>(found - parameters.begin());
    }
  }
  return status;
}

/// The member of an id; the one named "_Default" for the id of the default member.
std::size_t Object::MemberOf(DISPID id) const {
  const std::size_t count = member_count();
  if (id > 0 && static_cast<std::size_t>(id) <= count) return static_cast<std::size_t>(id) - 1;
  for (std::size_t member = 0; id == DISPID_VALUE && member < count; ++member) {
    if (shape(member).name == u"_Default") return member;
  }
  return kNoMember;
}

HRESULT Object::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* given, VARIANT* result,
                       EXCEPINFO* exception, UINT* wrong) {
  if (result != nullptr) VariantInit(result);
  if (given == nullptr) return E_POINTER;
  const ObjectPtr held(this);  // a member may let the last reference go
  const ExcelPtr excel = excel_;
  const std::size_t index = MemberOf(id);
  if (index == kNoMember) return DISP_E_MEMBERNOTFOUND;
  try {
    const Call call{id, flags, *given, result, exception, wrong};
    const MemberShape member = shape(index);
    if (std::optional<Fault> fault = excel->faults.Next(class_name(), member.name)) {
      if (fault->status == kExcelError) {
        return Raise(
            kExcelError,
            fault->text.empty() ? Wording(member, call.IsPut(), class_name()) : fault->text,
            exception);
      }
      if (SUCCEEDED(fault->status) && result != nullptr) *result = fault->value.Release();
      return fault->status;
    }
    return Execute(call);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT Object::Execute(const Call& call) {
  const std::size_t index = MemberOf(call.id);
  if (index == kNoMember) return DISP_E_MEMBERNOTFOUND;
  const MemberShape member = shape(index);
  if (excel_->is_closed) return RPC_E_DISCONNECTED;
  if (!call.Fits(member)) return DISP_E_MEMBERNOTFOUND;
  try {
    CheckAlive();
    if (!call.IsPut() && member.parameters.empty() && call.given.cArgs > 0)
      return InvokeDefault(call, member, index);
    std::vector<Variant> values;
    if (const HRESULT status = call.Read(member, values); FAILED(status)) return status;
    const Arguments arguments(std::move(values));
    if (call.IsPut()) {
      Put(index, arguments);
      return S_OK;
    }
    Variant result = Get(index, arguments);
    if (call.result != nullptr) *call.result = result.Release();
    return S_OK;
  } catch (const AutomationError& error) {
    if (error.status != kExcelError && error.status != DISP_E_BADINDEX) return error.status;
    return Raise(error.status,
                 error.text != nullptr ? error.text : Wording(member, call.IsPut(), class_name()),
                 call.exception);
  } catch (const WorkbookError& error) {
    return Raise(kExcelError, Utf16FromUtf8(error.what()), call.exception);
  }
}

/// Arguments behind a property without parameters go to the object that it holds: Worksheets(1).
HRESULT Object::InvokeDefault(const Call& call, const MemberShape& member, std::size_t index) {
  if (member.kind == kMethod) return DISP_E_BADPARAMCOUNT;
  const Variant value = Get(index, Arguments({}));
  Object* const object = ObjectIn(value.get());
  if (object == nullptr) return DISP_E_BADPARAMCOUNT;
  Call forwarded = call;
  forwarded.id = DISPID_VALUE;
  forwarded.flags = DISPATCH_PROPERTYGET | DISPATCH_METHOD;
  return object->Execute(forwarded);
}

Object* ObjectIn(const VARIANT& variant) {
  if (variant.vt != VT_DISPATCH || variant.pdispVal == nullptr) return nullptr;
  void* own = nullptr;
  if (FAILED(variant.pdispVal->QueryInterface(kOwnObject, &own))) return nullptr;
  auto* const object = static_cast<Object*>(own);
  object->Release();  // the variant holds it
  return object;
}

}  // namespace zavhost
