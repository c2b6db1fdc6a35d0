// Calls into the host, in any order and with anything as arguments: a documented return code, and a
// valid answer that comes back once; then the host holds nothing.
#include <deque>
#include <string>

#include "fuzz/host_cells.h"
#include "fuzz/hostile_values.h"
#include "fuzz/target.h"
#include "host/capi/excel_record.h"

namespace zavrel::tests {
namespace {

using zavhost::CallContext;
using zavhost::ExcelApi;

constexpr int kFunctions[] = {xlFree,        xlStack,         xlCoerce,       xlSet,
                              xlSheetId,     xlSheetNm,       xlAbort,        xlGetInst,
                              xlGetHwnd,     xlGetName,       xlEnableXLMsgs, xlDisableXLMsgs,
                              xlGetInstPtr,  xlfSetName,      xlfCaller,      xlfRegister,
                              xlfUnregister, xlfGetWorkspace, xlCoerce,       xlfRegister};

/// Large areas take long and show nothing more.
bool IsSmall(const XLOPER12& record) {
  const auto is_small = [](const XLREF12& area) {
    return (std::int64_t{area.rwLast} - area.rwFirst) *
               (std::int64_t{area.colLast} - area.colFirst + 1) <
           5000;
  };
  if (TypeOf(record) == xltypeSRef) return is_small(record.val.sref.ref);
  if (TypeOf(record) != xltypeRef || record.val.mref.lpmref == nullptr) return true;
  const XLMREF12& areas = *record.val.mref.lpmref;
  for (std::size_t i = 0; i < areas.count; ++i)
    if (!is_small(areas.reftbl[i])) return false;
  return true;
}

class Caller {
 public:
  explicit Caller(Bytes& bytes) : bytes_(bytes), values_(bytes, memory_) {
    const std::size_t flags = bytes.Below(256);
    cells_.has_uncalculated = (flags & 1) != 0;
    cells_.is_calculating = (flags & 2) != 0;
    zavhost::ExcelBehaviour behaviour;
    behaviour.caller = static_cast<zavhost::CallerForm>((flags >> 2) % 6);
    api_.emplace(cells_, judge_, behaviour);
    context_ = static_cast<CallContext>((flags >> 5) % 3);
  }

  void Run() {
    {
      const ExcelApi::Entry entry(*api_, context_, FuzzedAddIn());
      for (int i = 0; i < 60 && !bytes_.empty(); ++i) CallAny();
      for (XLOPER12& answer : answers_) Call(xlFree, {&answer}, nullptr);
    }
    const std::uint64_t count = judge_.count();
    api_->memory().ReportHeld();
    Require(judge_.count() == count, "the host holds something that nobody has");
    for (const zavhost::Violation& violation : judge_.violations())
      Require(!zavhost::DescribeViolation(violation).empty(), "a finding without words");
  }

 private:
  int Call(int function, std::vector<XLOPER12*> arguments, XLOPER12* result) {
    const int code = api_->Call(function, static_cast<int>(arguments.size()),
                                arguments.empty() ? nullptr : arguments.data(), result);
    Require(code == xlretSuccess || code == xlretInvXlfn || code == xlretInvCount ||
                code == xlretInvXloper || code == xlretFailed || code == xlretUncalced,
            "a return code that is not documented");
    return code;
  }

  XLOPER12* AnyArgument(bool reads_cells) {
    const std::size_t choice = bytes_.Below(8);
    if (choice == 0) return nullptr;
    if (choice < 3 && !answers_.empty()) return &answers_[bytes_.Below(answers_.size())];
    if (choice == 3) return Texts();
    XLOPER12& value = arguments_.emplace_back(values_.Any());
    if (reads_cells && !IsSmall(value)) value.xltype = xltypeNil;
    return &value;
  }

  /// A text that some function may know.
  XLOPER12* Texts() {
    static constexpr std::u16string_view kTexts[] = {u"Data",  u"[Book1.xlsx]other",
                                                     u"Chart", u"FuzzedProcedure",
                                                     u"QQ#",   u"BB$",
                                                     u"1E!",   u"Name",
                                                     u"Q",     u"\xD800",
                                                     u""};
    const std::size_t choice = bytes_.Below(std::size(kTexts) + 1);
    const std::u16string own = FuzzedAddIn().file.u16string();
    const std::u16string_view text = choice < std::size(kTexts) ? kTexts[choice] : own;
    auto* counted = memory_.Get<XCHAR>((text.size() + 1) * sizeof(XCHAR));
    counted[0] = static_cast<XCHAR>(text.size());
    std::copy(text.begin(), text.end(), counted + 1);
    XLOPER12& record = arguments_.emplace_back();
    record.xltype = xltypeStr;
    record.val.str = counted;
    return &record;
  }

  void CallAny() {
    const std::size_t choice = bytes_.Below(std::size(kFunctions) + 1);
    const int function = choice < std::size(kFunctions) ? kFunctions[choice] : bytes_.Take<int>();
    const bool in_bracket = bytes_.Below(8) != 0;
    std::vector<XLOPER12*> arguments(bytes_.Below(function == xlfRegister ? 14 : 4));
    for (XLOPER12*& argument : arguments)
      argument = AnyArgument(function == xlCoerce || function == xlSet);
    if (in_bracket) Call(xlEnableXLMsgs, {}, nullptr);
    if (bytes_.Below(6) == 0 || function == xlFree) {
      Call(function, arguments, nullptr);
    } else {
      XLOPER12 answer{};
      const int code = Call(function, arguments, &answer);
      Require(code == xlretSuccess || (answer.xltype == xltypeErr && answer.val.err == xlerrValue),
              "a failed call gives something");
      Require(answer.xltype == xltypeBigData || !zavhost::CheckRecord(answer, true),
              "a malformed answer");
      answers_.push_back(answer);
    }
    if (in_bracket) Call(xlDisableXLMsgs, {}, nullptr);
  }

  Bytes& bytes_;
  ValueMemory memory_;
  HostileValues values_;
  SmallCells cells_;
  zavhost::Judge judge_;
  std::optional<ExcelApi> api_;
  CallContext context_ = CallContext::kCommand;
  std::deque<XLOPER12> arguments_;
  std::deque<XLOPER12> answers_;
};

void MakeCalls(std::span<const std::uint8_t> input) {
  Bytes bytes(input);
  Caller(bytes).Run();
}

const FuzzTarget target("excel_calls", MakeCalls);

}  // namespace
}  // namespace zavrel::tests
