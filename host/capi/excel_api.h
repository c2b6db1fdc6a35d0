#pragma once
// The C API that Excel offers to add-ins: the implementation of the callback.

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "excel/xloper12.h"
#include "host/capi/excel_behaviour.h"
#include "host/capi/function_registry.h"
#include "host/capi/host_cells.h"
#include "host/capi/host_memory.h"
#include "host/capi/judge.h"
#include "host/capi/loaded_add_in.h"

namespace zavhost {

/// What the host has called in the add-in; this decides which calls the add-in may make.
enum class CallContext : std::uint8_t {
  kCommand,            // xlAutoOpen and its like, macros
  kMacroTypeFunction,  // registered with "#"
  kWorksheetFunction,
};

class ExcelApi {
 public:
  ExcelApi(HostCells& cells, Judge& judge, ExcelBehaviour behaviour);
  ~ExcelApi();
  ExcelApi(const ExcelApi&) = delete;
  ExcelApi& operator=(const ExcelApi&) = delete;

  /// Performs a callback: judges the call and executes it. Returns the API's return code.
  int Call(int function, int count, XLOPER12** arguments, XLOPER12* result);

  FunctionRegistry& registry() { return registry_; }
  HostMemory& memory() { return memory_; }
  HostCells& cells() { return cells_; }
  Judge& judge() { return judge_; }
  const ExcelBehaviour& behaviour() const { return behaviour_; }
  /// Registrations that were answered with #VALUE!, and the reasons.
  const std::vector<std::string>& refused_registrations() const { return refused_; }
  /// The add-ins are unloaded.
  void ForgetAddIns() {
    refused_.clear();
    add_in_ = nullptr;
  }
  /// True if the current call of the add-in was told that a cell is not calculated yet.
  bool met_uncalculated() const { return met_uncalculated_; }
  std::uint32_t current_sheet() const;

  /// The scope in which the host runs code of an add-in. Callbacks go to the API that entered
  /// last. When the add-in returns, its message brackets must be closed.
  class Entry {
   public:
    Entry(ExcelApi& api, CallContext context, const LoadedAddIn& add_in);
    ~Entry();
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

   private:
    ExcelApi& api_;
    CallContext outer_context_;
  };

 private:
  struct Arguments {
    int count;
    XLOPER12** records;
    const XLOPER12& operator[](int index) const { return *records[index]; }
    /// True if the argument is present and not empty.
    bool Has(int index) const { return index < count && TypeOf(*records[index]) != xltypeMissing; }
  };

  int CallInOrder(int function, int count, XLOPER12** arguments, XLOPER12* result);
  bool JudgeBracket(int function);
  void JudgeReturn();
  bool JudgeArguments(int function, int count, XLOPER12** arguments);
  int Dispatch(int function, const Arguments& arguments, XLOPER12& result);
  int DispatchCommand(int function, const Arguments& arguments, XLOPER12& result);
  void Free(const Arguments& arguments);

  /// Whether the add-in has to be told of a cell that is not calculated: macros get its old value.
  bool MeetsUncalculated(std::uint32_t sheet, const CellRange& range);
  int Coerce(const Arguments& arguments, XLOPER12& result);
  int CoerceReference(const XLOPER12& source, std::uint32_t types, XLOPER12& result);
  int CoerceRange(const Reference& reference, XLOPER12& result);
  int CoerceValue(const Value& value, std::uint32_t types, XLOPER12& result);
  int CountUsed(const Arguments& arguments, XLOPER12& result);
  int CopyArray(const XLOPER12& source, XLOPER12& result);
  int CopyReference(const XLOPER12& source, XLOPER12& result);
  int Caller(XLOPER12& result);
  int Set(const Arguments& arguments, XLOPER12& result);
  int SheetIdOf(const Arguments& arguments, XLOPER12& result);
  int SheetNameOf(const Arguments& arguments, XLOPER12& result);
  int Workspace(const Arguments& arguments, XLOPER12& result);
  int Register(const Arguments& arguments, XLOPER12& result);
  int Unregister(const Arguments& arguments, XLOPER12& result);
  int SetName(const Arguments& arguments, XLOPER12& result);
  /// Registers a function, or returns the reason for a refusal.
  std::string TryRegister(const Arguments& arguments, double& register_id);
  void* FindProcedure(const XLOPER12& procedure) const;

  void GiveText(std::u16string_view text, XLOPER12& result);
  void GiveValue(const Value& value, XLOPER12& result);

  HostCells& cells_;
  Judge& judge_;
  ExcelBehaviour behaviour_;
  HostMemory memory_;
  FunctionRegistry registry_;
  std::vector<std::string> refused_;

  CallContext context_ = CallContext::kCommand;
  const LoadedAddIn* add_in_ = nullptr;  // entered last
  const char* function_name_ = "";       // of the current call
  bool messages_enabled_ = false;
  bool bracket_used_ = false;
  bool met_uncalculated_ = false;
  std::atomic<std::thread::id> thread_ = std::this_thread::get_id();  // entered the add-in last
  std::atomic<std::uint64_t> calls_from_other_threads_ = 0;
};

}  // namespace zavhost
