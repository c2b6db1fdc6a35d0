#pragma once
// Arguments for an entry point as a macro passes them, made by its declaration.

#include <deque>
#include <string>

#include "failing_macros/windows/macro_declarations.h"
#include "host/capi/native_call.h"
#include "services/windows/excel_books.h"
#include "support/macro_array.h"
#include "support/macro_variant.h"

namespace zavrel::tests {

/// An emulated Excel as macros have it, with a table of data on the first sheet.
struct MacroExcel : services::tests::OpenExcel {
  MacroExcel();
  MsExcel::Worksheet data_sheet() const { return book().Worksheets().At(1); }

  std::int32_t protection = 0;  // the number of the one that was lifted last
};

/// The arguments of one call. Arrays must be unlocked in the end.
class MacroArguments {
 public:
  /// 0: what the entry point is made for; 1: the same with other contents in the places that it
  /// fills; 2: arrays of another type and rank, and no objects; 3: no arrays, and no places.
  static constexpr std::size_t kShapes = 4;
  /// Nothing is at the addresses of arrays and places; arrays claim far more elements than they
  /// have.
  static constexpr std::size_t kNowhere = 4, kClaiming = 5;

  /// A parameter whose name says nothing here is a fault: what such an argument is like has to be
  /// added.
  MacroArguments(const MacroDeclaration& declaration, std::size_t shape, const MacroExcel& excel);
  ~MacroArguments();
  MacroArguments(const MacroArguments&) = delete;
  MacroArguments& operator=(const MacroArguments&) = delete;

  const zavhost::MachineArguments& words() const { return words_; }
  /// The result of an entry point that returns a VARIANT.
  const VARIANT& result() const { return result_.variant; }
  /// What the places that the entry point may write to hold.
  std::string Held() const;

 private:
  void Add(const MacroParameter& parameter);
  void AddObject(const MacroParameter& parameter);
  void AddText(const std::string& name);
  void AddVariant(const std::string& name);
  void AddNumbers(const std::string& name);
  void AddVariants();
  void AddBstrPlace(BSTR text);
  bool IsRightKind() const { return shape_ < 2 || shape_ == kClaiming; }

  std::size_t shape_;
  const MacroExcel& excel_;
  zavhost::MachineArguments words_;
  MacroVariant result_;
  // Other elements of these do not move when one is added.
  std::deque<double> numbers_;
  std::deque<MacroVariant> variants_;
  std::deque<BSTR> texts_;
  std::deque<BSTR> text_places_;
  std::deque<MacroArray> arrays_;
  std::deque<MsExcel::Variant> objects_;
};

/// "Double 1..2,1..2: 1;2;3;4;" of an array, "none" without one.
std::string ShownArray(const SAFEARRAY* array);
/// What a VARIANT of a macro's holds, and what a string, of bytes or wide, does. What the clock
/// says in an id is left out.
std::string ShownVariant(const VARIANT& variant);
std::string ShownString(BSTR text);

}  // namespace zavrel::tests
