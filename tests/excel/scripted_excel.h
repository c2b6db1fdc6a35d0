#pragma once
// A host whose answers a test scripts, and which watches how it is called.

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "excel/xxloper.h"

namespace zavrel::tests {

/// In place as the callback while it lives.
class ScriptedExcel {
 public:
  using Arguments = std::span<XLOPER12* const>;
  /// Answers a call by filling the result; gives the return code.
  using Answer = std::function<int(Arguments arguments, XLOPER12& result)>;

  ScriptedExcel();
  ~ScriptedExcel();
  ScriptedExcel(const ScriptedExcel&) = delete;
  ScriptedExcel& operator=(const ScriptedExcel&) = delete;

  void On(int function, Answer answer) { answers_[function] = std::move(answer); }
  /// xlCoerce as a host does it for single values: numeric texts, General format, TRUE and FALSE;
  /// a reference gives `cell`.
  void AnswerCoercions(XXloper cell = XXloper::Nil());

  /// Fills a result with memory of the host's, which has to come back through xlFree.
  void GiveText(std::u16string_view text, XLOPER12& result);
  void GiveArray(std::int32_t rows, std::int32_t columns, XLOPER12& result);

  std::vector<int> calls;           // every call, brackets and frees among them
  std::vector<std::string> faults;  // what a host would not forgive
  std::size_t unfreed() const { return given_.size(); }
  std::ptrdiff_t CountOf(int function) const;

 private:
  static int Callback(int function, int count, XLOPER12** arguments, XLOPER12* result);
  int Call(int function, Arguments arguments, XLOPER12* result);
  void Free(XLOPER12& record);

  std::map<int, Answer> answers_;
  std::map<const void*, std::unique_ptr<char[]>> given_;
  bool messages_enabled_ = false;
  int calls_in_bracket_ = 0;
};

inline XLOPER12 ReferenceTo(XLREF12 area) {
  XLOPER12 record{};
  record.xltype = xltypeSRef;
  record.val.sref.count = 1;
  record.val.sref.ref = area;
  return record;
}

}  // namespace zavrel::tests
