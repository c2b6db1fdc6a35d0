#include "host/capi/excel_api.h"

#include <fmt/format.h>

#include <cstring>

#include "host/capi/callback.h"
#include "host/capi/excel_record.h"

namespace zavhost {
namespace {

constexpr int kArgumentLimit = 255;

struct KnownFunction {
  int number;
  const char* name;
  int least;
  int most;
};

// All functions that an add-in can call, with their numbers of arguments.
constexpr KnownFunction kFunctions[] = {
    {xlFree, "xlFree", 0, 30},
    {xlStack, "xlStack", 0, 0},
    {xlCoerce, "xlCoerce", 1, 2},
    {xlSet, "xlSet", 1, 2},
    {xlSheetId, "xlSheetId", 0, 1},
    {xlSheetNm, "xlSheetNm", 1, 1},
    {xlAbort, "xlAbort", 0, 1},
    {xlGetInst, "xlGetInst", 0, 0},
    {xlGetHwnd, "xlGetHwnd", 0, 0},
    {xlGetName, "xlGetName", 0, 0},
    {xlEnableXLMsgs, "xlEnableXLMsgs", 0, 0},
    {xlDisableXLMsgs, "xlDisableXLMsgs", 0, 0},
    {xlGetInstPtr, "xlGetInstPtr", 0, 0},
    {xlfSetName, "xlfSetName", 1, 2},
    {xlfCaller, "xlfCaller", 0, 0},
    {xlfCounta, "xlfCounta", 1, kArgumentLimit},
    {xlfRegister, "xlfRegister", 3, kArgumentLimit},
    {xlfGetWorkspace, "xlfGetWorkspace", 1, 1},
    {xlfUnregister, "xlfUnregister", 1, 1},
};

const KnownFunction* FindFunction(int number) {
  for (const KnownFunction& known : kFunctions) {
    if (known.number == number) return &known;
  }
  return nullptr;
}

int Give(double number, XLOPER12& result) {
  result.xltype = xltypeNum;
  result.val.num = number;
  return xlretSuccess;
}

int GiveBoolean(bool boolean, XLOPER12& result) {
  result.xltype = xltypeBool;
  result.val.xbool = boolean ? 1 : 0;
  return xlretSuccess;
}

/// The handle of the running program.
void* Program() { return zavrel::LoadedModule::HostExecutable().handle(); }

int GiveInteger(std::int32_t integer, XLOPER12& result) {
  result.xltype = xltypeInt;
  result.val.w = integer;
  return xlretSuccess;
}

}  // namespace

ExcelApi::ExcelApi(HostCells& cells, Judge& judge, ExcelBehaviour behaviour)
    : cells_(cells), judge_(judge), behaviour_(std::move(behaviour)), memory_(judge) {}

ExcelApi::~ExcelApi() {
  if (ActiveApi() == this) SetActiveApi(nullptr);
}

std::uint32_t ExcelApi::current_sheet() const {
  const std::optional<CallingCells> calling = cells_.calling_cells();
  return calling ? calling->sheet : 0;
}

// Entering and leaving the add-in.

ExcelApi::Entry::Entry(ExcelApi& api, CallContext context, const LoadedAddIn& add_in)
    : api_(api), outer_context_(api.context_) {
  api_.JudgeReturn();  // for what was called outside any entry
  api_.context_ = context;
  api_.add_in_ = &add_in;
  api_.thread_ = std::this_thread::get_id();
  api_.met_uncalculated_ = false;
  SetActiveApi(&api_);
}

// API and add-in stay active: later calls that the add-in makes on its own are attributed to them.
ExcelApi::Entry::~Entry() {
  api_.JudgeReturn();
  api_.context_ = outer_context_;
}

void ExcelApi::JudgeReturn() {
  if (messages_enabled_) {
    judge_.Report(ViolationKind::kUnbalancedBracket, "messages were left enabled");
    messages_enabled_ = false;
  }
  for (const std::u16string& name : registry_.TakeNamesLeft()) {
    judge_.Report(ViolationKind::kNameLeft,
                  "the name " + Utf8FromUtf16(name) + " was left behind by its function");
  }
  if (const std::uint64_t calls = calls_from_other_threads_.exchange(0); calls != 0) {
    judge_.Report(ViolationKind::kMalformedCall,
                  fmt::format("{} calls came from a thread of the add-in's own", calls));
  }
}

bool ExcelApi::JudgeBracket(int function) {
  if (function == xlEnableXLMsgs) {
    if (messages_enabled_)
      judge_.Report(ViolationKind::kUnbalancedBracket, "messages were enabled twice");
    messages_enabled_ = true;
    bracket_used_ = false;
    return true;
  }
  if (function == xlDisableXLMsgs) {
    if (!messages_enabled_) {
      judge_.Report(ViolationKind::kUnbalancedBracket,
                    "messages were disabled without having been enabled");
    }
    messages_enabled_ = false;
    return true;
  }
  if (!messages_enabled_) {
    judge_.Report(ViolationKind::kMissingBracket,
                  fmt::format("{} was called without messages enabled", function_name_));
  } else if (bracket_used_) {
    judge_.Report(ViolationKind::kMissingBracket,
                  fmt::format("{} was called within the bracket of another call", function_name_));
  }
  bracket_used_ = true;
  return false;
}

bool ExcelApi::JudgeArguments(int function, int count, XLOPER12** arguments) {
  const auto report = [&](int index, const std::string& problem) {
    judge_.Report(ViolationKind::kMalformedCall, fmt::format("{} was given {} as argument {}",
                                                             function_name_, problem, index + 1));
    return false;
  };
  if (count > 0 && arguments == nullptr) return report(0, "a null pointer");
  for (int i = 0; i < count; ++i) {
    if (arguments[i] == nullptr) return report(i, "a null pointer");
    // A freed record may be incomplete; only its pointer counts.
    if (function == xlFree) continue;
    if (const auto problem = CheckRecord(*arguments[i], true)) return report(i, *problem);
  }
  return true;
}

// Calling back.

int ExcelApi::Call(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  if (std::this_thread::get_id() != thread_) {
    ++calls_from_other_threads_;
    if (result != nullptr) WriteError(xlerrValue, *result);
    return xlretNotThreadSafe;
  }
  XLOPER12 unwanted;
  XLOPER12& answer = result == nullptr ? unwanted : *result;
  XLOPER12 fresh;
  std::memset(&fresh, 0, sizeof fresh);
  fresh.xltype = xltypeNil;
  int code = xlretFailed;
  try {
    code = CallInOrder(function, count, arguments, &fresh);
  } catch (const std::bad_alloc&) {  // nothing is thrown into an add-in
  }
  if (code != xlretSuccess) WriteError(xlerrValue, fresh);
  // xlFree does not touch its result, which may be the freed record itself.
  if (function != xlFree) answer = fresh;
  if (result == nullptr) {  // nothing would free it
    XLOPER12* own = &fresh;
    Free({1, &own});
  }
  return code;
}

int ExcelApi::CallInOrder(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  const KnownFunction* known = FindFunction(function);
  function_name_ = known == nullptr ? "a function that the host does not offer" : known->name;
  if (JudgeBracket(function)) return xlretSuccess;
  if (known == nullptr) return xlretInvXlfn;
  if (count < known->least || count > known->most) return xlretInvCount;
  if (!JudgeArguments(function, count, arguments)) return xlretInvXloper;
  const Arguments given{count, arguments};
  if (function == xlFree) {
    Free(given);
    return xlretSuccess;
  }
  // After an add-in was told that a cell is not calculated, it must return. It may only find out
  // about further such cells.
  if (met_uncalculated_ && function != xlCoerce && function != xlfCounta) return xlretUncalced;
  const int code = Dispatch(function, given, *result);
  if (code == xlretUncalced) met_uncalculated_ = true;
  return code;
}

int ExcelApi::Dispatch(int function, const Arguments& arguments, XLOPER12& result) {
  switch (function) {
    case xlStack:
      return GiveInteger(64 << 10, result);
    case xlCoerce:
      return Coerce(arguments, result);
    case xlfCounta:
      return CountUsed(arguments, result);
    case xlSheetId:
      return SheetIdOf(arguments, result);
    case xlSheetNm:
      return SheetNameOf(arguments, result);
    case xlAbort:
      return GiveBoolean(false, result);
    case xlGetInst:  // only the low half of the handle fits
      return GiveInteger(
          static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(Program()) & 0x7FFFFFFF),
          result);
    case xlGetInstPtr:
      result.xltype = xltypeBigData;
      result.val.bigdata.h.hdata = Program();
      return xlretSuccess;
    case xlGetHwnd:  // there is no window
      return GiveInteger(0, result);
    case xlGetName:
      if (add_in_ == nullptr) return xlretFailed;
      GiveText(zavrel::Utf16FromPath(add_in_->file), result);
      return xlretSuccess;
    case xlfCaller:
      return Caller(result);
    default:
      return DispatchCommand(function, arguments, result);
  }
}

int ExcelApi::DispatchCommand(int function, const Arguments& arguments, XLOPER12& result) {
  if (function == xlfGetWorkspace && context_ != CallContext::kWorksheetFunction)
    return Workspace(arguments, result);
  if (context_ != CallContext::kCommand) return xlretFailed;
  switch (function) {
    case xlSet:
      return Set(arguments, result);
    case xlfRegister:
      return Register(arguments, result);
    case xlfUnregister:
      return Unregister(arguments, result);
    default:  // xlfSetName
      return SetName(arguments, result);
  }
}

void ExcelApi::Free(const Arguments& arguments) {
  for (int i = 0; i < arguments.count; ++i) {
    XLOPER12& record = *arguments.records[i];
    switch (TypeOf(record)) {
      case xltypeStr:
        memory_.Free(record.val.str);
        record.val.str = nullptr;
        break;
      case xltypeMulti:
        memory_.Free(record.val.array.lparray);
        record.val.array.lparray = nullptr;
        break;
      case xltypeRef:
        memory_.Free(record.val.mref.lpmref);
        record.val.mref.lpmref = nullptr;
        break;
      default:  // holds nothing
        break;
    }
  }
}

int ExcelApi::Workspace(const Arguments& arguments, XLOPER12& result) {
  const Value what = ToValue(arguments[0]);
  const double* number = what.number();
  if (number == nullptr) return xlretFailed;
  if (*number == 1) {
    GiveText(u"Headless host, version " + behaviour_.version, result);
  } else if (*number == 2) {
    GiveText(behaviour_.version, result);
  } else {
    return xlretFailed;
  }
  return xlretSuccess;
}

void ExcelApi::GiveText(std::u16string_view text, XLOPER12& result) {
  const std::size_t units = std::min(text.size(), kExcelTextLimit) + 1;
  auto* block = static_cast<char16_t*>(memory_.Give(units * sizeof(char16_t), function_name_));
  WriteText(text, result, block);
}

void ExcelApi::GiveValue(const Value& value, XLOPER12& result) {
  char16_t* block = nullptr;
  if (const std::size_t units = TextUnits(value); units != 0)
    block = static_cast<char16_t*>(memory_.Give(units * sizeof(char16_t), function_name_));
  WriteValue(value, result, block);
}

int ExcelApi::Unregister(const Arguments& arguments, XLOPER12& result) {
  const Value id = ToValue(arguments[0]);
  return GiveBoolean(id.number() != nullptr && registry_.Remove(*id.number()), result);
}

int ExcelApi::SetName(const Arguments& arguments, XLOPER12& result) {
  const Value name = ToValue(arguments[0]);
  if (name.text() == nullptr) return xlretInvXloper;
  if (arguments.Has(1)) return xlretFailed;  // workbooks come with their names
  registry_.DeleteName(*name.text());
  return GiveBoolean(true, result);
}

int ExcelApi::Register(const Arguments& arguments, XLOPER12& result) {
  double register_id = 0;
  const std::string refusal = TryRegister(arguments, register_id);
  if (refusal.empty()) return Give(register_id, result);
  if (refused_.size() < 1000) refused_.push_back(refusal);
  WriteError(xlerrValue, result);
  return xlretSuccess;
}

}  // namespace zavhost
