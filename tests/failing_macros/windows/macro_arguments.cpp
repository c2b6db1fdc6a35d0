#include "failing_macros/windows/macro_arguments.h"

#include <map>
#include <optional>
#include <set>

namespace zavrel::tests {
namespace {

constexpr std::u16string_view kTable = u"A1:C9";

const std::map<std::string, int> kIntegers = {
    {"applicationId", 5}, {"discrete", -1}, {"method", -1},       {"degreesOfFreedom", 7},
    {"numeratorDf", 3},   {"trials", 9},    {"denominatorDf", 8}, {"failureNumber", 1},
    {"languageId", 9},    {"selector", 8},  {"style", 1},         {"listwiseDeletion", 1},
    {"sampleDivisor", 1}, {"useRanks", 0}};
const std::map<std::string, double> kNumbers = {
    {"forNonNumbers", -1},    {"mean", 1},   {"p", 0.3}, {"quartile", 1}, {"x", 2},
    {"standardDeviation", 2}, {"share", 0.5}};
const std::map<std::string, const wchar_t*> kTexts = {{"analysis", L"summary"},
                                                      {"by", nullptr},
                                                      {"formula", L"=SUM(A1:A3)*ROUND(2.5,0)"},
                                                      {"fromLanguage", L"en"},
                                                      {"helpLocation", L"h.chm"},
                                                      {"name", L"no page"},
                                                      {"password", L"secret"},
                                                      {"text", L"a step"},
                                                      {"title", L"a title"},
                                                      {"toLanguage", L"de"},
                                                      {"version", L"8.1"},
                                                      {"workbookFile", L"C:\\Add-ins\\book.xlam"}};
const std::set<std::string> kTextPlaces = {"categoryName", "className", "id",        "menu",
                                           "message",      "place",     "translated"};
const std::set<std::string> kVariantPlaces = {"eigenvalues", "eigenvectors", "filled", "indices",
                                              "names",       "number",       "result", "scores",
                                              "value",       "values"};
const std::set<std::string> kSeries = {"numbers", "x", "y"};
const std::set<std::string> kMatrices = {"a", "b", "data", "matrix", "values"};

template <class Value>
Value Known(const std::map<std::string, Value>& values, const std::string& name) {
  const auto found = values.find(name);
  REQUIRE_MESSAGE(found != values.end(), "what is an argument like that is called ", name, "?");
  return found->second;
}

MacroArray FormulaBlock() {
  MacroArray block(VT_VARIANT, {2, 2});
  auto* const cells = block.elements<VARIANT>();
  cells[0] = VariantOf(VT_BSTR, SysAllocString(L"=SUM(1,2)"));
  cells[1] = VariantOf(VT_BSTR, SysAllocString(L"a text that is longer than a short string"));
  cells[2].vt = VT_R8;
  cells[2].dblVal = 2.5;
  cells[3].vt = VT_BOOL;
  return block;
}

}  // namespace

MacroExcel::MacroExcel() {
  MsExcel::Block table(9, 3);
  const char16_t* const headings[] = {u"x", u"y", u"z"};
  for (std::size_t i = 0; i < table.values.size(); ++i)
    table.values[i] = i < 3 ? MsExcel::CellValue(std::u16string(headings[i]))
                            : MsExcel::CellValue(static_cast<double>(i * i % 17));
  data_sheet().Range(kTable).SetValues(table);
}

MacroArguments::MacroArguments(const MacroDeclaration& declaration, std::size_t shape,
                               const MacroExcel& excel)
    : shape_(shape), excel_(excel) {
  if (declaration.result == "Variant") words_.AddPointer(&result_.variant);
  for (const MacroParameter& parameter : declaration.parameters) Add(parameter);
}

MacroArguments::~MacroArguments() {
  if (shape_ == kClaiming) {
    for (const MacroArray& array : arrays_) array.array->rgsabound[0].cElements = 1;
  }
  for (const BSTR text : texts_) SysFreeString(text);
  for (const BSTR text : text_places_) SysFreeString(text);
}

void MacroArguments::Add(const MacroParameter& parameter) {
  const auto& [name, type] = parameter;
  const bool is_address = type.starts_with("ByRef") || kTextPlaces.count(name) == 1;
  if (shape_ == kNowhere && is_address) return words_.AddPointer(reinterpret_cast<void*>(8));
  if (type == "ByVal Object") return AddObject(parameter);
  if (name == "number" && type == "ByVal Long")
    return words_.AddInteger(static_cast<std::uint64_t>(excel_.protection));
  if (type == "ByVal Integer" || type == "ByVal Long")
    return words_.AddInteger(static_cast<std::uint64_t>(Known(kIntegers, name)));
  if (type == "ByVal Double") return words_.AddDouble(Known(kNumbers, name));
  if (type == "ByVal LongPtr") return AddText(name);
  if (type == "ByRef String")
    return AddBstrPlace(shape_ == 1 ? SysAllocStringByteLen("old", 3) : nullptr);
  if (type == "ByRef Variant") return AddVariant(name);
  if (type == "ByRef Double()") return AddNumbers(name);
  if (type == "ByRef Variant()") return AddVariants();
  REQUIRE_MESSAGE(type == "ByRef Double", type);
  words_.AddPointer(shape_ == 3 ? nullptr : &numbers_.emplace_back(17));
}

void MacroArguments::AddObject(const MacroParameter& parameter) {
  static const std::set<std::string> known = {"companion", "excelApplication", "sheet", "workbook"};
  REQUIRE_MESSAGE(known.count(parameter.name) == 1, parameter.name);
  if (!IsRightKind() || parameter.name == "companion") return words_.AddPointer(nullptr);
  if (parameter.name == "excelApplication") return words_.AddPointer(excel_.session.application());
  objects_.push_back(parameter.name == "sheet" ? MsExcel::Variant(excel_.data_sheet())
                                               : MsExcel::Variant(excel_.book()));
  words_.AddPointer(objects_.back().get().pdispVal);
}

void MacroArguments::AddText(const std::string& name) {
  if (kTextPlaces.count(name) == 1)
    return AddBstrPlace(shape_ == 1 ? SysAllocString(L"old") : nullptr);
  const wchar_t* const text = Known(kTexts, name);
  if (text == nullptr || shape_ == 3) return words_.AddPointer(nullptr);
  words_.AddPointer(texts_.emplace_back(SysAllocString(text)));
}

void MacroArguments::AddBstrPlace(BSTR text) {
  text_places_.push_back(text);
  words_.AddPointer(shape_ == 3 ? nullptr : static_cast<const void*>(&text_places_.back()));
}

void MacroArguments::AddVariant(const std::string& name) {
  if (shape_ == 3) return words_.AddPointer(nullptr);
  if (name == "target" || name == "data") {
    objects_.push_back(IsRightKind() ? MsExcel::Variant(excel_.data_sheet().Range(
                                           name == "data" ? kTable : u"E1:F2"))
                                     : MsExcel::Variant(u"no range"));
    return words_.AddPointer(objects_.back().address());
  }
  const bool is_known = name == "blankName" || kVariantPlaces.count(name) == 1;
  REQUIRE_MESSAGE(is_known, "what is an argument like that is called ", name, "?");
  if (shape_ == 1 && name != "blankName") {
    MacroArray matrix(VT_R8, {4, 1});
    MacroVariant& place = variants_.emplace_back(VariantOf(VT_ARRAY | VT_R8, matrix.array));
    matrix.array = nullptr;
    return words_.AddPointer(&place.variant);
  }
  words_.AddPointer(&variants_.emplace_back(L"a text that is longer than a short string").variant);
}

void MacroArguments::AddNumbers(const std::string& name) {
  const bool is_series = kSeries.count(name) == 1;
  REQUIRE_MESSAGE((is_series || kMatrices.count(name) == 1), name);
  if (shape_ == 3) {
    arrays_.emplace_back();
  } else if (!IsRightKind()) {
    arrays_.emplace_back(VT_I4, std::vector<ULONG>{3, 2, 2});
  } else if (is_series) {
    arrays_.push_back(MacroArray{1, 2.5, 3, 3, name == "y" ? 9.0 : 4.0, 5, 8, 13});
  } else {
    arrays_.emplace_back(DoubleMatrix{{4, 1, 2, 0.5}, {1, 3, 0, 1}, {2, 0, 5, 1}, {0.5, 1, 1, 2}});
  }
  if (shape_ == kClaiming) arrays_.back().array->rgsabound[0].cElements = 0x0FFF'FFFF;
  words_.AddPointer(static_cast<const void*>(&arrays_.back().array));
}

void MacroArguments::AddVariants() {
  if (shape_ == 3) {
    arrays_.emplace_back();
  } else if (shape_ > 1) {
    arrays_.emplace_back(VT_DISPATCH, std::vector<ULONG>{2, 2});
  } else {
    arrays_.push_back(FormulaBlock());
  }
  words_.AddPointer(static_cast<const void*>(&arrays_.back().array));
}

std::string MacroArguments::Held() const {
  std::string shown;
  for (const double number : numbers_) shown += std::to_string(number) + "|";
  for (const MacroVariant& variant : variants_) shown += ShownVariant(variant.variant) + "|";
  for (const BSTR text : text_places_) shown += ShownString(text) + "|";
  if (shape_ == kClaiming) return shown;
  for (const MacroArray& array : arrays_) shown += ShownArray(array.array) + "|";
  return shown;
}

std::string ShownArray(const SAFEARRAY* array) {
  if (array == nullptr) return "none";
  std::string shown = std::to_string(array->fFeatures & FADF_VARIANT) + " of";
  ULONG count = 1;
  for (USHORT d = 0; d < array->cDims; ++d) {
    const SAFEARRAYBOUND& bound = array->rgsabound[d];
    count *= bound.cElements;
    shown += ' ' + std::to_string(bound.lLbound) + ".." + std::to_string(bound.cElements);
  }
  if (array->cbElements != sizeof(double)) return shown;
  for (ULONG i = 0; i < count; ++i)
    shown += ' ' + std::to_string(static_cast<const double*>(array->pvData)[i]);
  return shown;
}

std::string ShownVariant(const VARIANT& variant) {
  if (variant.vt == VT_DISPATCH) return "an object";
  if ((variant.vt & VT_ARRAY) != 0) return ShownArray(variant.parray);
  return Held(variant);
}

std::string ShownString(BSTR text) {
  if (text == nullptr) return "none";
  std::string bytes(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  std::erase(bytes, '\0');
  return bytes.starts_with("Time=") ? "an id" : bytes;
}

}  // namespace zavrel::tests
