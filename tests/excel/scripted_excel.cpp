#include "excel/scripted_excel.h"

#include <algorithm>
#include <charconv>

#include "excel/excel_call.h"
#include "excel/wide_text.h"

namespace zavrel::tests {
namespace {

ScriptedExcel* current = nullptr;

int GiveScalar(const XXloper& value, XLOPER12& result) {
  result = value.record();
  return xlretSuccess;
}

}  // namespace

ScriptedExcel::ScriptedExcel() {
  current = this;
  SetExcelCallback(&ScriptedExcel::Callback);
}

ScriptedExcel::~ScriptedExcel() {
  SetExcelCallback(nullptr);
  current = nullptr;
}

std::ptrdiff_t ScriptedExcel::CountOf(int function) const {
  return std::count(calls.begin(), calls.end(), function);
}

int ScriptedExcel::Callback(int function, int count, XLOPER12** arguments, XLOPER12* result) {
  return current->Call(function, {arguments, static_cast<std::size_t>(count)}, result);
}

int ScriptedExcel::Call(int function, Arguments arguments, XLOPER12* result) {
  calls.push_back(function);
  if (function == xlEnableXLMsgs || function == xlDisableXLMsgs) {
    const bool enable = function == xlEnableXLMsgs;
    if (messages_enabled_ == enable) faults.push_back("unbalanced bracket");
    if (!enable && calls_in_bracket_ != 1) faults.push_back("a bracket not around one call");
    messages_enabled_ = enable;
    calls_in_bracket_ = 0;
    return xlretSuccess;
  }
  if (!messages_enabled_) faults.push_back("a call without a bracket");
  ++calls_in_bracket_;
  if (function == xlFree) {
    for (XLOPER12* record : arguments) Free(*record);
    return xlretSuccess;
  }
  const auto answer = answers_.find(function);
  return answer == answers_.end() ? xlretInvXlfn : answer->second(arguments, *result);
}

void ScriptedExcel::Free(XLOPER12& record) {
  const bool holds = TypeOf(record) == xltypeStr || TypeOf(record) == xltypeMulti;
  if (!holds) return;
  if (given_.erase(record.val.str) == 0) faults.push_back("freed twice or foreign");
  record.val.str = nullptr;
}

void ScriptedExcel::GiveText(std::u16string_view text, XLOPER12& result) {
  auto memory = std::make_unique<char[]>((text.size() + 1) * sizeof(XCHAR));
  auto* units = reinterpret_cast<XCHAR*>(memory.get());
  units[0] = static_cast<XCHAR>(text.size());
  std::copy(text.begin(), text.end(), units + 1);
  given_.emplace(units, std::move(memory));
  result.xltype = xltypeStr;
  result.val.str = units;
}

void ScriptedExcel::GiveArray(std::int32_t rows, std::int32_t columns, XLOPER12& result) {
  const auto size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  auto memory = std::make_unique<char[]>(size * sizeof(XLOPER12));
  auto* elements = reinterpret_cast<XLOPER12*>(memory.get());
  std::fill_n(elements, size, XXloper::Nil().record());
  given_.emplace(elements, std::move(memory));
  result.xltype = xltypeMulti;
  result.val.array = {elements, rows, columns};
}

void ScriptedExcel::AnswerCoercions(XXloper cell) {
  On(xlCoerce, [this, cell](Arguments arguments, XLOPER12& result) {
    const XXloper source = XXloper::FromArgument(arguments[0]);
    if (source.Is(xltypeSRef | xltypeRef)) return GiveScalar(cell, result);
    const std::string text = Utf8FromUtf16(source.text());
    switch (arguments.size() == 2 ? arguments[1]->val.w : 0) {
      case xltypeNum: {
        double number = 0;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
        if (text.empty() || parsed.ptr != text.data() + text.size()) return xlretFailed;
        return GiveScalar(XXloper::Number(number), result);
      }
      case xltypeStr:
        GiveText(source.Is(xltypeBool) ? u"WAHR" : u"2,5", result);
        return xlretSuccess;
      case xltypeBool:
        if (text != "WAHR" && text != "FALSCH") return xlretFailed;
        return GiveScalar(XXloper::Boolean(text == "WAHR"), result);
      default:
        return xlretFailed;
    }
  });
}

}  // namespace zavrel::tests
