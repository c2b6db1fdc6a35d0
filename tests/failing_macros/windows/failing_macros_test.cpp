// One request for memory after another fails in the entry points for macros of the add-in as it
// ships, or all from one on. An entry point then does what it is for, or says that it failed and
// leaves what its caller has as it was; nothing stays locked or behind.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

#include "failing_macros/windows/macro_arguments.h"
#include "failing_memory/library_memory.h"
#include "host/calc/engine.h"

namespace zavrel::tests {
namespace {

using Shortage = LibraryMemory::Shortage;

constexpr std::int32_t kUnrecorded = -1;  // a failure that could not be recorded

/// The add-in as it ships, open in the host with a workbook that has the name of the emulated
/// Excel's.
class OpenLibrary {
 public:
  OpenLibrary() : engine_(BookOfOneSheet()) {
    const auto path = std::filesystem::absolute(ZAVREL_ADD_IN).make_preferred();
    engine_.LoadAddIn(path);
    engine_.Announce(5);
    library_ = LoadedModule::ByName(path.u16string());
    REQUIRE(library_);
    LibraryMemory::Watch(*library_);
  }

  void* Export(const std::string& name) const {
    void* const found = library_->FindExport(name.c_str());
    REQUIRE_MESSAGE(found != nullptr, name);
    return found;
  }
  /// The class of the failure with this number, if it is the number of one.
  std::string Class(std::int32_t number) const {
    using Explain = std::int32_t(std::int32_t, BSTR*, BSTR*, BSTR*);
    BSTR name = nullptr;
    AsFunction<Explain>(Export("ZavrelGetExceptionInfoVB"))(number, &name, nullptr, nullptr);
    if (name == nullptr) return number == kUnrecorded ? "unrecorded" : std::to_string(number);
    const std::string shown = Utf8FromUtf16(BstrView(name));
    SysFreeString(name);
    return shown;
  }

 private:
  static zavhost::Workbook BookOfOneSheet() {
    zavhost::Workbook book;
    book.file_name = u"Book1";
    book.sheets.emplace_back(u"Sheet1");
    return book;
  }

  zavhost::Engine engine_;
  std::optional<LoadedModule> library_;
};

/// What a macro has after a call.
struct Outcome {
  std::string result;
  bool is_failure = false;
  std::string before;  // what the places for results held
  std::string after;

  bool operator==(const Outcome&) const = default;
  /// Whether the places hold what they did, or the code of a missing number.
  bool is_untouched() const {
    const bool has_code = after.starts_with("nan|") && before.starts_with("17.000000|");
    return after == before || (has_code && before.substr(before.find('|')) == after.substr(3));
  }
};

class EntryPoint {
 public:
  EntryPoint(const OpenLibrary& add_in, const MacroDeclaration& declaration, MacroExcel& excel)
      : add_in_(add_in),
        declaration_(declaration),
        excel_(excel),
        address_(add_in.Export(declaration.export_name)) {}

  const std::string& name() const { return declaration_.name; }

  /// `around` is told when the entry point itself begins and ends.
  template <class Around>
  Outcome Call(std::size_t shape, Around around) const {
    Prepare();
    const MacroArguments arguments(declaration_, shape, excel_);
    Outcome outcome;
    outcome.before = arguments.Held();
    std::uint64_t word = 0;
    double number = 0;
    around(true);
    if (declaration_.result == "Double") {
      number = arguments.words().CallForDouble(address_);
    } else {
      word = arguments.words().CallForInteger(address_);
    }
    around(false);
    Read(word, number, arguments.result(), outcome);
    outcome.after = arguments.Held();
    TakeAsDocumented(outcome);
    return outcome;
  }

 private:
  /// What some entry points need in Excel.
  void Prepare() const;
  /// What some entry points leave behind after a failure.
  void TakeAsDocumented(Outcome& outcome) const;
  void Read(std::uint64_t word, double number, const VARIANT& variant, Outcome& outcome) const;

  const OpenLibrary& add_in_;
  const MacroDeclaration& declaration_;
  MacroExcel& excel_;
  void* address_;
};

void EntryPoint::Prepare() const {
  constexpr std::u16string_view kPassword = u"secret";
  const bool lifts = name() == "ZavrelLiftProtectionVB";
  const bool puts_back = name() == "ZavrelPutBackProtectionVB";
  const MsExcel::Worksheet sheet = excel_.data_sheet();
  const bool is_protected = sheet.CurrentProtection().is_protected();
  if ((lifts || puts_back) && !is_protected) sheet.Protect(kPassword);
  if (!lifts && !puts_back && is_protected) sheet.Unprotect(kPassword);
  if (puts_back) {
    using Lift = std::uint32_t(IDispatch*, BSTR, VARIANT*);
    MacroVariant number;
    const MsExcel::Variant object(sheet);
    const MacroVariant password(L"secret");
    AsFunction<Lift>(add_in_.Export("ZavrelLiftProtectionVB"))(object.get().pdispVal,
                                                               password.variant.bstrVal, number);
    excel_.protection = static_cast<std::int32_t>(number.variant.dblVal);
  }
  if (name() == "ZavrelAskForAnalysisVB") excel_.session.QueueInput(u"Sheet1!$A$1:$C$9");
}

void EntryPoint::TakeAsDocumented(Outcome& outcome) const {
  // The number of a protection is another one each time, and 0 where none was lifted.
  if (name() == "ZavrelLiftProtectionVB") outcome.after = outcome.before;
  // A cell that cannot be read has no name.
  if (name() == "ZavrelGetCellValueCategory" && outcome.result.empty()) outcome.is_failure = true;
  if (name() == "ZavrelGetCellValueCategoryW" && outcome.after == "|") {
    outcome.is_failure = true;
    outcome.after = outcome.before;
  }
}

void EntryPoint::Read(std::uint64_t word, double number, const VARIANT& variant,
                      Outcome& outcome) const {
  const std::string& type = declaration_.result;
  if (type == "Double") {
    outcome.result = std::to_string(number);
    outcome.is_failure = std::isnan(number);
  } else if (type == "Integer") {
    outcome.result = std::to_string(static_cast<std::int16_t>(word));
    outcome.is_failure = static_cast<std::int16_t>(word) != 0;
  } else if (type == "Long") {
    const auto status = static_cast<std::int32_t>(word);
    outcome.result = status == 0 ? "0" : add_in_.Class(status);
    outcome.is_failure = status != 0;
  } else if (type == "Variant") {
    outcome.is_failure = variant.vt == VT_ERROR;
    outcome.result = outcome.is_failure ? add_in_.Class(variant.scode) : ShownVariant(variant);
  } else if (type == "String") {
    const auto text = reinterpret_cast<BSTR>(word);
    outcome.is_failure = text == nullptr;
    outcome.result = ShownString(text);
    SysFreeString(text);
  }
}

/// Calls an entry point without memory, with one shape of arguments.
class Trial {
 public:
  Trial(const EntryPoint& entry_point, std::size_t shape)
      : entry_point_(entry_point),
        shape_(shape),
        right_(Call()),
        is_repeatable_(Call() == right_) {}

  void Run(Shortage shortage) {
    // An analysis makes thousands of requests, and takes a second.
    for (std::int64_t k = 0;; k += k < 16 ? 1 : k / 2, ++failures_) {
      bool failed = false;
      const Outcome outcome = entry_point_.Call(shape_, [&](bool begins) {
        if (begins) {
          LibraryMemory::RunOut(k, shortage);
        } else {
          failed = LibraryMemory::Return();
        }
      });
      if (!failed) break;
      Require(outcome, k);
      const Outcome next = Call();
      if (is_repeatable_ && next != right_)
        FAIL_CHECK(name(), ", request ", k, ", afterwards: ", next.result, " ", next.after);
    }
  }

  static int failures() { return failures_; }

 private:
  Outcome Call() const {
    return entry_point_.Call(shape_, [](bool) {});
  }
  std::string name() const { return entry_point_.name() + ", shape " + std::to_string(shape_); }
  void Require(const Outcome& outcome, std::int64_t k) const {
    if (outcome == right_) return;
    if (!outcome.is_failure || !outcome.is_untouched())
      FAIL_CHECK(name(), ", request ", k, ": ", outcome.result, " ", outcome.after,
                 " in the place of ", right_.result, " ", right_.after);
  }

  inline static int failures_ = 0;

  const EntryPoint& entry_point_;
  std::size_t shape_;
  Outcome right_;
  bool is_repeatable_;
};

/// What is held of the heap in which the automation has its strings and arrays.
std::size_t HeldBytes() {
  PROCESS_HEAP_ENTRY entry{};
  std::size_t bytes = 0;
  const HANDLE heap = GetProcessHeap();
  HeapLock(heap);
  while (HeapWalk(heap, &entry))
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
  HeapUnlock(heap);
  return bytes;
}

/// Whether nothing is left of all the failures, once what is kept for good is there.
bool LeavesNothing(Trial& trial) {
  for (int round = 0; round < 3; ++round) {
    const std::size_t before = HeldBytes();
    trial.Run(Shortage::kOneRequest);
    trial.Run(Shortage::kLasting);
    if (HeldBytes() <= before) return true;
  }
  return false;
}

}  // namespace

TEST_CASE("whichever memory an entry point for macros does not get, it does its work or says so") {
  MacroExcel excel;
  const OpenLibrary add_in;
  for (const MacroDeclaration& declaration : MacroDeclarations()) {
    const EntryPoint entry_point(add_in, declaration, excel);
    for (std::size_t shape = 0; shape < MacroArguments::kShapes; ++shape) {
      Trial trial(entry_point, shape);
      CHECK_MESSAGE(LeavesNothing(trial), declaration.name, ", shape ", shape);
    }
  }
  CHECK(Trial::failures() > 1'000);
}

TEST_CASE("addresses where nothing is, and arrays that claim too much, are failures") {
  MacroExcel excel;
  const OpenLibrary add_in;
  for (const MacroDeclaration& declaration : MacroDeclarations()) {
    const EntryPoint entry_point(add_in, declaration, excel);
    const auto call = [&](std::size_t shape) { return entry_point.Call(shape, [](bool) {}); };
    call(MacroArguments::kNowhere);
    const bool has_array =
        std::any_of(declaration.parameters.begin(), declaration.parameters.end(),
                    [](const MacroParameter& parameter) { return parameter.type.ends_with("()"); });
    const Outcome claiming = call(MacroArguments::kClaiming);
    CHECK_MESSAGE((!has_array || claiming.is_failure), declaration.name);
  }
}

TEST_CASE("a thread that begins without memory ends by itself") {
  const OpenLibrary add_in;
  const MacroVariant title(L"a title");
  LibraryMemory::RunOut(0, Shortage::kOtherThreads);
  CHECK(AsFunction<std::uint32_t(BSTR)>(add_in.Export("ZavrelBeginProgressVB"))(
            title.variant.bstrVal) == 0);
  Sleep(100);
  CHECK(AsFunction<std::uint32_t()>(add_in.Export("ZavrelEndProgressVB"))() == 0);
  LibraryMemory::Return();
}

}  // namespace zavrel::tests
