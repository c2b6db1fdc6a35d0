#include "excel/excel_call.h"

#include <atomic>
#include <cstring>

namespace zavrel {
namespace {

constinit std::atomic<Excel12Callback> excel_callback{nullptr};

/// Enables Excel's messages during its lifetime. A bracket spans exactly one call.
class MessageBracket {
 public:
  explicit MessageBracket(Excel12Callback callback) : callback_(callback) {
    callback_(xlEnableXLMsgs, 0, nullptr, nullptr);
  }
  ~MessageBracket() { callback_(xlDisableXLMsgs, 0, nullptr, nullptr); }
  MessageBracket(const MessageBracket&) = delete;
  MessageBracket& operator=(const MessageBracket&) = delete;

 private:
  Excel12Callback callback_;
};

void WriteFailure(int return_code, XLOPER12& record) {
  record = {};
  const std::int32_t words[] = {xlerrValue, return_code};
  std::memcpy(&record.val, words, sizeof words);
  record.xltype = xltypeErr;
}

/// False for a text or an array that claims to be there but is not.
bool IsReadable(const XXloper& value) {
  if (value.Is(xltypeStr)) return value.record().val.str != nullptr;
  return !value.Is(xltypeMulti) || !value.elements().empty();
}

int CallBack(int function, std::span<const XXloper> arguments, XLOPER12& result) {
  const Excel12Callback callback = ExcelCallback();
  if (callback == nullptr) return xlretFailed;
  if (arguments.size() > kMostCallArguments) return xlretInvCount;
  XLOPER12* records[kMostCallArguments];
  // The API takes non-const pointers but only reads the arguments.
  for (std::size_t i = 0; i < arguments.size(); ++i)
    records[i] = const_cast<XLOPER12*>(&arguments[i].record());
  const MessageBracket bracket(callback);
  return callback(function, static_cast<int>(arguments.size()), records, &result);
}

}  // namespace

void SetExcelCallback(Excel12Callback callback) {
  excel_callback.store(callback, std::memory_order_relaxed);
}

Excel12Callback ExcelCallback() { return excel_callback.load(std::memory_order_relaxed); }

ExcelResult CallExcel(int function, std::span<const XXloper> arguments) {
  std::shared_ptr<XLOPER12> record = NewExcelResult();
  const int return_code = CallBack(function, arguments, *record);
  if (return_code != xlretSuccess) WriteFailure(return_code, *record);
  ExcelResult result{XXloper::FromExcelResult(std::move(record)), return_code};
  if (!IsReadable(result.value)) result = {XXloper::Error(ExcelError::kValue), xlretFailed};
  return result;
}

ExcelResult CallExcel(int function, std::initializer_list<XXloper> arguments) {
  return CallExcel(function, std::span(arguments.begin(), arguments.size()));
}

void CallExcelForNothing(int function, const XXloper& argument) noexcept {
  XLOPER12 result{};
  if (CallBack(function, {&argument, 1}, result) == xlretSuccess) FreeThroughExcel(&result);
}

void FreeThroughExcel(XLOPER12* record) noexcept {
  const Excel12Callback callback = ExcelCallback();
  if (callback == nullptr) return;
  const MessageBracket bracket(callback);
  callback(xlFree, 1, &record, nullptr);
}

}  // namespace zavrel
