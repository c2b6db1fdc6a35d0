#include "faults/function_calls.h"

#include <doctest/doctest.h>

#include <cmath>
#include <memory>
#include <utility>
#include <variant>

#include "host/capi/native_call.h"
#include "platform/utf.h"

namespace zavrel::tests {
namespace {

using zavhost::MachineArguments;
using zavhost::TypeLetter;

constexpr std::int32_t kRows = 12;
constexpr std::uint64_t kOtherSheet = 12;
constexpr XLREF12 kHandle = Area(0, 0, 4, 4);
constexpr std::size_t kMostGiven = 5;  // arguments; the further ones are left out

/// Arguments of one kind. A function gets one after another of them; how, depends on the shape.
class Pool {
 public:
  Pool& Add(const Cell& cell) { return Add(values_, std::make_unique<Argument>(cell)); }
  Pool& Add(std::unique_ptr<Argument> value) { return Add(values_, std::move(value)); }
  Pool& Add(std::unique_ptr<Reference> area) { return Add(references_, std::move(area)); }
  Pool& Add(const XLREF12& area) { return Add(std::make_unique<Reference>(area)); }

  const XLOPER12* At(std::size_t shape, std::size_t position) const {
    const std::size_t stride = shape / records_.size();
    return records_[(shape + position * stride) % records_.size()];
  }

 private:
  template <class Owner>
  Pool& Add(std::vector<std::unique_ptr<Owner>>& owners, std::unique_ptr<Owner> owner) {
    records_.push_back(*owner);
    owners.push_back(std::move(owner));
    return *this;
  }

  std::vector<std::unique_ptr<Argument>> values_;
  std::vector<std::unique_ptr<Reference>> references_;
  std::vector<const XLOPER12*> records_;
};

const Pool& References() {
  static const Pool pool = [] {
    Pool made;
    const std::vector<Cell> numbers = {1.0, 2.0, 4.0, 3.0, 9.0, 5.0};
    const std::vector<XLREF12> areas = {Area(0, 5, 0, 0), Area(6, kRows - 1, 0, 0)};
    made.Add(Area(0, kRows - 1, 0, 0))
        .Add(Area(0, kRows - 1, 1, 1))
        .Add(Area(0, kRows - 1, 2, 2))
        .Add(Area(0, kRows - 1, 0, 1))
        .Add(WholeRows(0, 1))
        .Add(std::make_unique<Reference>(kOtherSheet, areas))
        .Add(Area(0, 0, 0, 0))
        .Add(kHandle)
        .Add(std::make_unique<Argument>(3, 2, numbers));
    return made;
  }();
  return pool;
}

const Pool& Values() {
  static const Pool pool = [] {
    Pool made;
    made.Add(1.0).Add(0.5).Add(2.0).Add(12.0).Add(u"b").Add(u"2,5").Add(true).Add(0.0);
    made.Add(std::make_unique<Argument>(xltypeMissing)).Add(3.0).Add(20.0).Add(u"mean");
    return made;
  }();
  return pool;
}

void Add(MachineArguments& arguments, TypeLetter letter, std::size_t shape, std::size_t position) {
  static const Argument missing(xltypeMissing);
  const bool given = position < kMostGiven;
  switch (letter) {
    case TypeLetter::kValue:
      return arguments.AddPointer(given ? Values().At(shape, position) : missing);
    case TypeLetter::kValueOrReference:
      return arguments.AddPointer(given ? References().At(shape, position) : missing);
    case TypeLetter::kNumber:
      return arguments.AddDouble(4.5);
    case TypeLetter::kNarrowText:
      return arguments.AddPointer("");
    case TypeLetter::kWideText:
      return arguments.AddPointer(u"none");
    default:
      return arguments.AddInteger(shape % 3);
  }
}

Outcome OfRecord(const XLOPER12* record) {
  if (record == nullptr) return {"no record", false};
  const std::uint32_t type = TypeOf(*record);
  std::string shown = Shown(*record);
  const bool is_failure = type == xltypeErr || (type == xltypeStr && shown.empty());
  return {std::move(shown), is_failure};
}

Outcome OfNumber(double number) {
  return {std::to_string(number), number == -1 || number == 0 || std::isnan(number)};
}

}  // namespace

void FillSheet(FakeExcel& excel) {
  const std::vector<Cell> x = {2.5, 3.5, 1.25, 4.0, 6.5, 5.25, 2.0, 8.0, 7.5, 9.0, 3.0, 5.75};
  const std::vector<Cell> y = {1.0, 2.0, 3.5, 3.0, 7.0, 4.0, 2.0, 7.0, 8.5, 8.0, 4.0, 6.0};
  const std::vector<Cell> groups = {1.0,  u"b", 2.0,  1.0, true, u"b",
                                    u"b", 2.0,  true, 1.0, 2.0,  u"c"};
  for (const std::uint64_t sheet : {FakeExcel::kCallingSheet, kOtherSheet}) {
    excel.SetColumn(0, 0, x, sheet);
    excel.SetColumn(0, 1, y, sheet);
    excel.SetColumn(0, 2, groups, sheet);
  }
  excel.texts_of_numbers = {{1, u"1"}, {2, u"2"}, {0.5, u"0,5"}, {12, u"12"}, {0, u"0"}};
  excel.caller = Area(20, 25, 0, 1);
}

void EnterHandle(FakeExcel& excel, const LoadedModule& add_in) {
  // A handle stands in its cell as long as the selection that it names is kept.
  using Destack = const char*(const XLOPER12*, const XLOPER12*, const XLOPER12*, const XLOPER12*,
                              const XLOPER12*);
  auto* const destack = AsFunction<Destack>(add_in.FindExport("ZavrelDestack"));
  if (destack == nullptr) return;
  static const Argument name{Cell(u"b")};
  static const Reference values(Area(0, kRows - 1, 0, 0));
  static const Reference categories(Area(0, kRows - 1, 2, 2));
  const char* const handle = destack(values, categories, name, nullptr, nullptr);
  excel.Set(kHandle.rwFirst, kHandle.colFirst, Utf16FromUtf8(handle));
}

RegisteredFunction::RegisteredFunction(const Registered& registered, const LoadedModule& add_in)
    : name_(Utf8FromUtf16(registered.export_name())),
      type_(std::get<zavhost::TypeText>(zavhost::ParseTypeText(registered.texts[2]))),
      address_(add_in.FindExport(name_.c_str())) {
  REQUIRE_MESSAGE(address_ != nullptr, name_);
}

Outcome RegisteredFunction::Call(std::size_t shape,
                                 const std::function<void(bool begins)>& around) const {
  MachineArguments arguments;
  for (std::size_t i = 0; i < type_.arguments.size(); ++i)
    Add(arguments, type_.arguments[i], shape, i);
  const bool gives_double = type_.result == TypeLetter::kNumber;
  std::uint64_t word = 0;
  double number = 0;
  if (around) around(true);
  if (gives_double) {
    number = arguments.CallForDouble(address_);
  } else {
    word = arguments.CallForInteger(address_);
  }
  if (around) around(false);
  if (gives_double) return OfNumber(number);
  switch (type_.result) {
    case TypeLetter::kInteger:
      return OfNumber(static_cast<std::int32_t>(word));
    case TypeLetter::kNarrowText: {
      const char* const text = reinterpret_cast<const char*>(word);
      return {text != nullptr ? text : "", text == nullptr};
    }
    default:
      return OfRecord(reinterpret_cast<const XLOPER12*>(word));
  }
}

std::vector<RegisteredFunction> FunctionsOf(const FakeExcel& excel, const LoadedModule& add_in) {
  std::vector<RegisteredFunction> functions;
  for (const auto& [name, registered] : excel.functions())
    functions.emplace_back(registered, add_in);
  return functions;
}

}  // namespace zavrel::tests
