#pragma once
// Excel's side of the C API for tests: sheets of cells, registrations, answers that a test scripts.

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "data/session_caches.h"
#include "excel/excel_call.h"
#include "support/records.h"

namespace zavrel::tests {

/// A fault that a host would not forgive. Who links the fake host says what becomes of it.
void ReportFault(const std::string& fault);  // NOLINT(readability-redundant-declaration)

/// A function as the add-in registered it.
struct Registered {
  std::vector<std::u16string> texts;  // one per argument, empty for what is no text
  std::vector<std::uint32_t> types;   // of the arguments
  double macro_type = -1;

  const std::u16string& export_name() const { return texts[1]; }
};

/// The one host at a time, in place as the add-in's callback while it lives; session caches are
/// open. Strict: each call stands in a bracket of its own, and what was given comes back once.
class FakeExcel {
 public:
  using Arguments = std::span<XLOPER12* const>;
  /// Answers a call by filling the result; gives the return code.
  using Answer = std::function<int(Arguments arguments, XLOPER12& result)>;
  static constexpr std::uint64_t kCallingSheet = 11;

  FakeExcel();
  /// Reports what was not freed.
  ~FakeExcel();
  FakeExcel(const FakeExcel&) = delete;
  FakeExcel& operator=(const FakeExcel&) = delete;

  void OpenCaches() { SetSessionCaches(data_cache_, parm_cache_); }

  /// From now on calls of this function are answered so.
  void On(int function, Answer given) { answers_[function] = std::move(given); }
  /// Before each call that is answered this says whether it is answered otherwise, and how: it
  /// fills the result and gives the return code.
  std::function<std::optional<int>(int function, Arguments arguments, XLOPER12& result)> fault;
  int free_code = xlretSuccess;  // of xlFree
  /// Single values are converted by the host, "2,5" among them; every reference gives `cell`.
  void AnswerCoercions(const XXloper& cell = XXloper::Nil());

  void Set(std::int32_t row, std::int32_t column, Cell cell, std::uint64_t sheet = kCallingSheet);
  /// Downwards from the cell.
  void SetColumn(std::int32_t row, std::int32_t column, const std::vector<Cell>& cells,
                 std::uint64_t sheet = kCallingSheet);

  std::uint64_t calling_sheet = kCallingSheet;  // of the formula that calls
  std::function<int(const XLREF12&)> answer;  // a return code other than 0 ends a look-up
  int conversion_code = xlretSuccess;         // of what is asked for the calling sheet
  int text_code = xlretSuccess;               // of conversions to text
  std::map<double, std::u16string> texts_of_numbers;  // what a number can be converted to
  std::optional<XLREF12> caller;                      // nothing: called from no cell
  int caller_code = xlretSuccess;
  int lookups = 0;
  int conversions = 0;  // to text, asked for

  /// Fills a result with memory of the host's, which has to come back through xlFree.
  void Give(std::shared_ptr<const Argument> value, XLOPER12& result);
  void Give(XLOPER12& result, std::shared_ptr<const void> owner);
  void GiveText(std::u16string_view text, XLOPER12& result);
  void GiveArray(std::int32_t rows, std::int32_t columns, XLOPER12& result);
  std::size_t unfreed() const { return given_.size(); }
  /// What is out need not come back.
  void ForgetGiven() { given_.clear(); }

  /// What is registered now, by export name.
  const std::map<std::u16string, Registered>& functions() const { return by_name_; }
  bool Has(const char16_t* export_name) const { return by_name_.count(export_name) == 1; }
  std::u16string refused_export;  // xlfRegister of this one fails
  int registrations = 0;          // ever
  bool registers_twice = false;   // the same function, as after an unregistering that failed
  /// The names that Excel knows: of registered functions, and those that were not deleted.
  const std::set<std::u16string>& names() const { return known_; }

  std::vector<int> calls;           // every call, brackets and frees among them
  std::vector<std::string> faults;  // those that were reported
  std::ptrdiff_t CountOf(int function) const;

  static inline FakeExcel* current = nullptr;
  static inline int inside = 0;  // calls that are running

 private:
  using Sheet = std::map<std::pair<std::int32_t, std::int32_t>, Cell>;

  static int Callback(int function, int count, XLOPER12** arguments, XLOPER12* result);
  int Call(int function, Arguments arguments, XLOPER12* result);
  void Require(bool holds, const std::string& otherwise);
  void Bracket(bool enable);
  void Free(XLOPER12& record);
  int Convert(const XLOPER12& value, std::uint32_t type, XLOPER12& result);
  int ConvertToText(const XLOPER12& value, XLOPER12& result);
  std::pair<const Sheet&, XLREF12> CellsOf(const XLOPER12& reference);
  int LookUp(const XLOPER12& reference, XLOPER12& result);
  int CountUsed(const XLOPER12& reference, XLOPER12& result);
  int GiveCells(const Sheet& sheet, const XLREF12& area, XLOPER12& result);
  int TellCaller(XLOPER12& result) const;
  int Register(Arguments arguments, XLOPER12& result);
  int Unregister(double id, XLOPER12& result);
  int DeleteName(const XLOPER12& name, XLOPER12& result);

  std::map<std::uint64_t, Sheet> sheets_;
  std::map<int, Answer> answers_;
  std::map<const void*, std::shared_ptr<const void>> given_;
  std::map<std::u16string, Registered> by_name_;
  std::map<double, std::u16string> names_;
  std::set<std::u16string> known_;
  std::set<std::u16string> hidden_;  // of them, registered last by a hidden function
  double next_id_ = -3;              // ids may be negative, and zero
  bool messages_enabled_ = false;
  int calls_in_bracket_ = 0;
  std::shared_ptr<ExcelDataCache> data_cache_ = std::make_shared<ExcelDataCache>();
  std::shared_ptr<DatasetParmCache> parm_cache_ = std::make_shared<DatasetParmCache>();
};

/// No session caches while it lives.
class WithoutCaches {
 public:
  WithoutCaches() { SetSessionCaches(nullptr, nullptr); }
  ~WithoutCaches() { FakeExcel::current->OpenCaches(); }
  WithoutCaches(const WithoutCaches&) = delete;
  WithoutCaches& operator=(const WithoutCaches&) = delete;
};

}  // namespace zavrel::tests
