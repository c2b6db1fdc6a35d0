#include "host/calc/engine.h"

#include <chrono>
#include <ctime>
#include <list>
#include <utility>

#include "host/calc/calculation.h"
#include "host/calc/formula_text.h"
#include "host/calc/formula_use.h"
#include "host/calc/recalculation.h"
#include "host/capi/crash_guard.h"
#include "platform/clock.h"
#include "platform/message_box.h"
#include "platform/module.h"

namespace zavhost {
namespace {

/// Throws WorkbookError with one clear line.
zavrel::Module Load(const std::filesystem::path& file) {
  // Nobody reads a message box that an add-in opens in the middle of a formula.
  zavrel::SuppressErrorBoxes();
  std::error_code ignored;
  std::string problem;
  auto module = zavrel::Module::Load(std::filesystem::absolute(file, ignored), &problem);
  if (!module)
    throw WorkbookError("the add-in " + Utf8FromPath(file) + " cannot be loaded: " + problem);
  return std::move(*module);
}

std::u16string_view WithoutEqualsSign(std::u16string_view formula) {
  if (formula.starts_with(u'=')) formula.remove_prefix(1);
  return formula;
}

/// The local date and time as a serial number.
double LocalNow(bool date1904) {
  const auto local = zavrel::LocalTime(std::time(nullptr));
  if (!local) return 0.0;
  const std::chrono::sys_days day =
      std::chrono::year(local->tm_year + 1900) / (local->tm_mon + 1) / local->tm_mday;
  const std::chrono::sys_days first =
      date1904 ? std::chrono::year(1904) / 1 / 1 : std::chrono::year(1899) / 12 / 30;
  const double seconds = local->tm_hour * 3600 + local->tm_min * 60 + local->tm_sec;
  return static_cast<double>((day - first).count()) + seconds / 86'400;
}

}  // namespace

class Engine::State {
 public:
  State(Workbook given_workbook, EngineOptions given_options)
      : workbook(std::move(given_workbook)),
        options(std::move(given_options)),
        calculation(workbook, judge, options.behaviour) {}

  ExcelApi& api() { return calculation.api(); }

  void Begin() {
    calculation.Begin(options.now.value_or(LocalNow(workbook.date1904)), options.random_seed);
  }

  struct AddIn {
    zavrel::Module module;
    LoadedAddIn loaded;
    bool is_open = false;
  };

  void CallInAll(const std::string& name, const MachineArguments& arguments) {
    if (add_ins.empty()) throw WorkbookError("there is no add-in");
    for (const AddIn& add_in : add_ins) CallCommand(add_in, name, arguments);
  }

  std::int32_t CallCommand(const AddIn& add_in, const std::string& name,
                           const MachineArguments& arguments) {
    void* const function = add_in.module.FindExport(name.c_str());
    if (function == nullptr)
      throw WorkbookError("the add-in " + Utf8FromPath(add_in.loaded.file.filename()) +
                          " has no export " + name);
    return CallFunction(add_in, function, arguments);
  }

  std::int32_t CallFunction(const AddIn& add_in, void* function,
                            const MachineArguments& arguments) {
    judge.SetPlace({}, {});
    try {
      const ExcelApi::Entry entry(api(), CallContext::kCommand, add_in.loaded);
      return static_cast<std::int32_t>(arguments.CallForInteger(function));
    } catch (...) {
      judge.Report(ViolationKind::kCrash, "an exception left an entry point");
      return 0;
    }
  }

  /// Throws if it did not open; it is closed then.
  void Open(AddIn& add_in, const std::filesystem::path& file) {
    if (add_in.module.FindExport("xlAutoOpen") == nullptr)
      throw WorkbookError(Utf8FromPath(file) + " is not an add-in: it has no export xlAutoOpen");
    add_in.is_open = true;
    if (CallCommand(add_in, "xlAutoOpen", {}) == 1) return;
    Close(add_in);
    throw WorkbookError("the add-in " + Utf8FromPath(file) + " did not open (xlAutoOpen failed)");
  }

  void Close(AddIn& add_in) {
    if (!std::exchange(add_in.is_open, false)) return;
    if (void* const close = add_in.module.FindExport("xlAutoClose"))
      CallFunction(add_in, close, {});
  }

  void CloseAll() {
    if (add_ins.empty()) return;
    for (AddIn& add_in : add_ins) Close(add_in);
    judge.SetPlace({}, {});
    api().memory().ReportHeld();
    api().registry().Clear();
  }

  void Unload() {
    api().ForgetAddIns();
    add_ins.clear();
    call_library.reset();
    EndCrashGuard(judge);
  }

  Workbook workbook;
  EngineOptions options;
  Judge judge;
  Calculation calculation;
  std::optional<zavrel::Module> call_library;
  std::list<AddIn> add_ins;
};

Engine::Engine(Workbook workbook, EngineOptions options)
    : state_(std::make_unique<State>(std::move(workbook), std::move(options))) {}

Engine::~Engine() {
  state_->CloseAll();
  state_->Unload();
}

Workbook& Engine::workbook() { return state_->workbook; }
const Judge& Engine::judge() const { return state_->judge; }
const std::vector<RegisteredFunction>& Engine::functions() const {
  return state_->api().registry().functions();
}
const std::vector<std::string>& Engine::refused_registrations() const {
  return state_->api().refused_registrations();
}

void Engine::LoadAddIn(const std::filesystem::path& file) {
  State& state = *state_;
  if (!state.options.call_library.empty() && !state.call_library)
    state.call_library = Load(state.options.call_library);
  GuardAgainstCrashes(state.judge);
  const std::filesystem::path full_path = std::filesystem::absolute(file);
  // One that is not unloaded opens again.
  state.add_ins.remove_if([&](State::AddIn& known) {
    const bool same = known.loaded.file == full_path;
    if (same) state.Close(known);
    return same;
  });
  // An add-in may look up the callback while it is loaded, but must not call it yet.
  State::AddIn& add_in = state.add_ins.emplace_back(Load(file));
  add_in.loaded = {&add_in.module, full_path};
  try {
    state.Open(add_in, file);
  } catch (...) {
    state.add_ins.pop_back();
    throw;
  }
}

void Engine::Announce(std::uint16_t id) {
  MachineArguments arguments;
  arguments.AddPointer(nullptr);  // the application's automation object
  arguments.AddPointer(nullptr);  // the companion's
  arguments.AddInteger(id);
  arguments.AddPointer(nullptr);  // the companion's workbook
  arguments.AddInteger(state_->options.language);
  arguments.AddPointer(nullptr);  // its version
  arguments.AddPointer(nullptr);  // its help
  state_->CallInAll("InitializeXlaInformationW", arguments);
}

void Engine::Withdraw(std::uint16_t id) {
  MachineArguments arguments;
  arguments.AddInteger(id);
  state_->CallInAll("UninitializeXlaInformation", arguments);
}

void Engine::CloseAddIns(bool unload) {
  state_->CloseAll();
  if (unload) state_->Unload();
}

RecalculationReport Engine::Recalculate() {
  state_->Begin();
  return Recalculation(state_->calculation, state_->judge, state_->options).Run();
}

std::u16string Engine::NotComputed(std::u16string_view formula) const {
  return FormulaUses(state_->workbook, state_->api().registry())
      .OfText(WithoutEqualsSign(formula))
      .foreign;
}

std::optional<Reference> Engine::FindReference(std::u16string_view formula) {
  state_->Begin();  // the workbook's names may be others by now
  try {
    return state_->calculation.FindReference(*ParseFormula(WithoutEqualsSign(formula)));
  } catch (const FormulaError&) {
    return std::nullopt;
  }
}

Operand Engine::Evaluate(std::u16string_view formula, CellAddress cell) {
  State& state = *state_;
  formula = WithoutEqualsSign(formula);
  if (cell.sheet >= state.workbook.sheets.size())
    throw WorkbookError("the workbook has no sheet for the formula");
  const FormulaPtr parsed = ParseFormula(formula);
  state.judge.SetPlace(CellText(state.workbook, cell), "=" + Utf8FromUtf16(formula));
  state.Begin();
  Operand result = state.calculation.Evaluate(*parsed, cell, cell, std::nullopt, true);
  state.judge.SetPlace({}, {});
  return result;
}

}  // namespace zavhost
