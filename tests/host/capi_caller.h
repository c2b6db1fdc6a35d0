#pragma once
// Calls the host as an add-in calls it: from commands here, where everything is allowed.

#include <doctest/doctest.h>

#include <deque>
#include <string>
#include <vector>

#include "host/capi/callback.h"
#include "host/capi/excel_record.h"
#include "host/planted_add_in.h"
#include "support/records.h"

namespace zavhost::tests {

using zavrel::tests::Argument;
using zavrel::tests::Cell;

struct Answer {
  int code = 0;
  XLOPER12 value{};
};

class Caller {
 public:
  using Arguments = std::vector<const XLOPER12*>;

  explicit Caller(Workbook workbook = SmallWorkbook(), EngineOptions options = {})
      : engine_(PlantedEngine(std::move(workbook), std::move(options))) {}
  ~Caller() {
    for (const XLOPER12& value : to_free_) Call(xlFree, {&value});
    engine_->CloseAddIns();
    std::vector<std::string> found;
    for (const Violation& violation : engine_->judge().violations())
      found.push_back(DescribeViolation(violation));
    CHECK(found == expected);
  }

  std::vector<std::string> expected;  // violations

  Engine& engine() { return *engine_; }

  Answer Call(int function, const Arguments& arguments) {
    std::vector<XLOPER12*> pointers;
    for (const XLOPER12* argument : arguments) pointers.push_back(const_cast<XLOPER12*>(argument));
    Answer answer;
    MdCallBack12(xlEnableXLMsgs, 0, nullptr, nullptr);
    answer.code =
        MdCallBack12(function, static_cast<int>(pointers.size()), pointers.data(), &answer.value);
    MdCallBack12(xlDisableXLMsgs, 0, nullptr, nullptr);
    if (function != xlFree) to_free_.push_back(answer.value);
    return answer;
  }

  std::string Shown(int function, const Arguments& arguments) {
    const Answer answer = Call(function, arguments);
    const std::string code = answer.code == 0 ? "" : std::to_string(answer.code) + ": ";
    if (answer.value.xltype == xltypeInt) return code + "int " + std::to_string(answer.value.val.w);
    if (answer.value.xltype == xltypeMulti)
      return code + tests::Shown(std::make_shared<const Array>(ToArray(answer.value)));
    return code + tests::Shown(ToValue(answer.value));
  }

  /// Registers with these arguments; a blank one is missing.
  Answer Register(const std::vector<Cell>& cells) {
    std::deque<Argument> records;
    Arguments arguments;
    for (const Cell& cell : cells) {
      if (cell.index() == 0) {
        arguments.push_back(records.emplace_back(xltypeMissing));
      } else {
        arguments.push_back(records.emplace_back(cell));
      }
    }
    return Call(xlfRegister, arguments);
  }

 private:
  std::unique_ptr<Engine> engine_;
  std::deque<XLOPER12> to_free_;
};

inline Argument Number(double number) { return Argument(Cell(number)); }
inline Argument Text(const char16_t* text) { return Argument(Cell(text)); }

}  // namespace zavhost::tests
