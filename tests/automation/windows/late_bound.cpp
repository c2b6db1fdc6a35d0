#include "automation/windows/late_bound.h"

#include <fmt/format.h>

#include "host/automation/windows/cell_values.h"
#include "host/workbook/text.h"

namespace zavhost::tests {
namespace {

std::string Hex(HRESULT status) {
  return fmt::format("{:08X}", static_cast<std::uint32_t>(status));
}

std::string TextIn(BSTR text) {
  Variant owner;
  owner.address()->vt = VT_BSTR;
  owner.address()->bstrVal = text;
  return Utf8FromUtf16(owner.text());
}

std::string Description(const Outcome& outcome) {
  if (outcome.status != DISP_E_EXCEPTION)
    return FAILED(outcome.status) ? Hex(outcome.status) : Shown(outcome.result);
  return Hex(outcome.code) + " " + outcome.text;
}

/// The ids of a member and of the parameters of named arguments.
std::vector<DISPID> IdsOf(IDispatch* object, const char16_t* name, const std::vector<Named>& named,
                          HRESULT& status) {
  std::vector<LPOLESTR> names{reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(name))};
  for (const Named& argument : named)
    names.push_back(reinterpret_cast<LPOLESTR>(const_cast<char16_t*>(argument.name)));
  std::vector<DISPID> ids(names.size());
  status =
      object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), 0, ids.data());
  return ids;
}

}  // namespace

std::string Shown(const Variant& value) {
  const VARIANT& held = value.get();
  if ((held.vt & VT_ARRAY) != 0) {
    const VariantBlock block = BlockIn(held);
    std::string text;
    for (std::int32_t row = 0; row < block.rows; ++row) {
      for (std::int32_t column = 0; column < block.columns; ++column)
        text += (column > 0 ? "," : "") + Shown(*block.At(row, column));
      text += ";";
    }
    return text;
  }
  switch (held.vt) {
    case VT_EMPTY:
      return "empty";
    case VT_NULL:
      return "null";
    case VT_BOOL:
      return held.boolVal != VARIANT_FALSE ? "TRUE" : "FALSE";
    case VT_BSTR:
      return "\"" + Utf8FromUtf16(value.text()) + "\"";
    case VT_ERROR:
      return fmt::format("#{}", static_cast<std::uint32_t>(held.scode) & 0xFFFF);
    case VT_DISPATCH:
      return held.pdispVal == nullptr ? "nothing" : "object";
    case VT_DATE:
      return fmt::format("date {:.10g}", held.date);
    case VT_R8:
      return fmt::format("{:.15g}", held.dblVal);
    default:
      return fmt::format("{}", held.lVal);
  }
}

Outcome LateBound::Invoke(const char16_t* name, WORD flags, const std::vector<Variant>& arguments,
                          const std::vector<tests::Named>& named) const {
  Outcome outcome;
  std::vector<DISPID> ids = IdsOf(get(), name, named, outcome.status);
  if (FAILED(outcome.status)) return outcome;
  const DISPID member = ids.front();
  ids.erase(ids.begin());
  const bool is_put = (flags & DISPATCH_PROPERTYPUT) != 0;
  if (is_put) ids.insert(ids.begin(), DISPID_PROPERTYPUT);
  // In reverse: the value of a put, the named ones, the others.
  std::vector<VARIANT> given;
  std::vector<Variant> copies(arguments.rbegin(), arguments.rend());
  copies.insert(copies.begin() + (is_put ? 1 : 0), named.size(), Variant());
  for (std::size_t i = 0; i < named.size(); ++i) copies[i + (is_put ? 1 : 0)] = named[i].value;
  given.reserve(copies.size());
  for (const Variant& copy : copies) given.push_back(copy.get());
  DISPPARAMS parameters{given.data(), ids.data(), static_cast<UINT>(given.size()),
                        static_cast<UINT>(ids.size())};
  EXCEPINFO exception{};
  outcome.status = object_->Invoke(member, IID_NULL, 0, flags, &parameters,
                                   outcome.result.address(), &exception, nullptr);
  outcome.code = exception.scode;
  outcome.text = TextIn(exception.bstrDescription);
  if (outcome.status == DISP_E_EXCEPTION) CHECK(TextIn(exception.bstrSource) == "Microsoft Excel");
  return outcome;
}

Variant LateBound::Get(const char16_t* name, const std::vector<Variant>& arguments) const {
  const Outcome outcome = Invoke(name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
  INFO(Utf8FromUtf16(name), ": ", Description(outcome));
  REQUIRE(SUCCEEDED(outcome.status));
  return outcome.result;
}

LateBound LateBound::At(const char16_t* name, const std::vector<Variant>& arguments) const {
  const Variant found = Get(name, arguments);
  REQUIRE(Shown(found) == "object");
  return LateBound(found.get().pdispVal);
}

void LateBound::Put(const char16_t* name, const Variant& value) const {
  const Outcome outcome = Invoke(name, DISPATCH_PROPERTYPUT, {value});
  INFO(Utf8FromUtf16(name), ": ", Description(outcome));
  REQUIRE(SUCCEEDED(outcome.status));
}

std::string LateBound::Named(const char16_t* name, const std::vector<tests::Named>& named) const {
  return Description(Invoke(name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}, named));
}

std::string LateBound::Fails(const char16_t* name, const std::vector<Variant>& arguments) const {
  return Description(Invoke(name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments));
}

std::string LateBound::PutFails(const char16_t* name, const Variant& value) const {
  return Description(Invoke(name, DISPATCH_PROPERTYPUT, {value}));
}

Variant Block(std::initializer_list<std::initializer_list<Variant>> rows) {
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows.size()), 0},
                             {static_cast<ULONG>(rows.begin()->size()), 0}};
  Variant block = Variant::Array(SafeArrayCreate(VT_VARIANT, 2, bounds));
  LONG indices[2] = {0, 0};
  for (const auto& row : rows) {
    indices[1] = 0;
    for (Variant element : row) {
      SafeArrayPutElement(block.get().parray, indices, element.address());
      ++indices[1];
    }
    ++indices[0];
  }
  return block;
}

}  // namespace zavhost::tests
