#include "faults/host_faults.h"

#include <doctest/doctest.h>

#include <algorithm>

#include "excel/reference.h"

namespace zavrel::tests {
namespace {

using Content = Fault::Content;

// The same for every call. What a call could be answered with is left out by IsAnswer.
constexpr Fault kFaults[] = {
    {"xlretAbort", xlretAbort, 0},
    {"xlretInvXlfn", xlretInvXlfn, 0},
    {"xlretInvCount", xlretInvCount, 0},
    {"xlretInvXloper", xlretInvXloper, 0},
    {"xlretStackOvfl", xlretStackOvfl, 0},
    {"xlretFailed", xlretFailed, 0},
    {"xlretUncalced", xlretUncalced, 0},
    {"xlretNotThreadSafe", xlretNotThreadSafe, 0},
    {"xlretInvAsynchronousContext", xlretInvAsynchronousContext, 0},
    {"xlretNotClusterSafe", xlretNotClusterSafe, 0},
    {"an undocumented code", -7, 0},
    {"success without an answer", xlretSuccess, 0},
    {"an error value", xlretSuccess, xltypeErr},
    {"a number", xlretSuccess, xltypeNum},
    {"a text", xlretSuccess, xltypeStr},
    {"a text without memory", xlretSuccess, xltypeStr, Content::kNothing},
    {"a boolean", xlretSuccess, xltypeBool},
    {"an integer", xlretSuccess, xltypeInt},
    {"nil", xlretSuccess, xltypeNil},
    {"missing", xlretSuccess, xltypeMissing},
    {"a reference without areas", xlretSuccess, xltypeRef, Content::kNothing},
    {"an area off the sheet", xlretSuccess, xltypeSRef},
    {"flow", xlretSuccess, xltypeFlow},
    {"big data", xlretSuccess, xltypeBigData},
    {"an array of one", xlretSuccess, xltypeMulti, Content::kOne},
    {"an array with a row less", xlretSuccess, xltypeMulti, Content::kFewer},
    {"an array with a row more", xlretSuccess, xltypeMulti, Content::kMore},
    {"an array without memory", xlretSuccess, xltypeMulti, Content::kNothing},
    {"an array of no rows", xlretSuccess, xltypeMulti, Content::kForged},
};

/// The rows and columns that a look-up asks for.
std::pair<std::int32_t, std::int32_t> SizeAsked(const XLOPER12& asked) {
  const auto view = ReferenceView::Of(asked);
  if (!view) return {1, 1};
  return {RowsOf(view->areas().front()), ColumnsOf(view->areas().front())};
}

/// Whether a call may well be answered so, in which case no function can know better.
bool IsAnswer(const Fault& fault, int function, FakeExcel::Arguments arguments) {
  if (fault.code != xlretSuccess || fault.content == Content::kForged) return false;
  if (fault.content == Content::kNothing) return false;
  constexpr std::uint32_t kNoCell = xltypeNum | xltypeStr | xltypeErr | xltypeMulti;
  if (function == xlfCaller) return (fault.type & kNoCell) != 0;
  if (function == xlfCounta) return fault.type == xltypeNum;
  if (function == xlfRegister) return (fault.type & (xltypeNum | xltypeInt)) != 0;
  if (function == xlSheetNm || function == xlfGetWorkspace) return fault.type == xltypeStr;
  if (function != xlCoerce) return false;
  if (arguments.size() == 2)  // a conversion
    return fault.type == static_cast<std::uint32_t>(arguments[1]->val.w);
  const auto [rows, columns] = SizeAsked(*arguments[0]);
  if (fault.type == xltypeMulti) return fault.content != Content::kMore && rows * columns == 1;
  constexpr std::uint32_t kCell =
      xltypeErr | xltypeNum | xltypeStr | xltypeBool | xltypeInt | xltypeNil | xltypeMissing;
  return (fault.type & kCell) != 0 && rows * columns == 1;
}

void FillArray(Content content, const XLOPER12& asked, FakeExcel& excel, XLOPER12& result) {
  auto [rows, columns] = SizeAsked(asked);
  if (content == Content::kOne) rows = columns = 1;
  if (content == Content::kFewer) rows = std::max(1, rows - 1);
  if (content == Content::kMore) ++rows;
  excel.GiveArray(rows, columns, result);
}

int AnswerOf(const Fault& fault, FakeExcel::Arguments arguments, FakeExcel& excel,
             XLOPER12& result) {
  if (fault.code != xlretSuccess) return fault.code;
  result = {};
  result.xltype = fault.type;
  if (fault.content == Content::kForged) {
    excel.GiveArray(1, 1, result);
    result.val.array.rows = 0;
  } else if (fault.type == xltypeMulti && fault.content == Content::kNothing) {
    result.val.array = {nullptr, 3, 1};
  } else if (fault.type == xltypeMulti && !arguments.empty()) {
    FillArray(fault.content, *arguments[0], excel, result);
  } else if (fault.type == xltypeStr && fault.content == Content::kPlain) {
    excel.GiveText(u"nobody", result);
  } else if (fault.type == xltypeErr) {
    result.val.err = xlerrNull;
  } else if (fault.type == xltypeNum) {
    result.val.num = 17;
  } else if (fault.type == xltypeSRef) {
    result.val.sref = {1, Area(-1, 0, 0, 0)};
  }
  return xlretSuccess;
}

}  // namespace

std::span<const Fault> Faults() { return kFaults; }

PlantedFault::PlantedFault(FakeExcel& excel, const Fault& fault, int place)
    : excel_(excel), fault_(fault), left_(place) {
  excel.fault = [this](int function, FakeExcel::Arguments arguments, XLOPER12& result) {
    return Answer(function, arguments, result);
  };
}

std::optional<int> PlantedFault::Answer(int function, FakeExcel::Arguments arguments,
                                        XLOPER12& result) {
  const bool wants_no_more = fault_.code == xlretUncalced || fault_.code == xlretAbort;
  calls_on_ += failed_ && wants_no_more ? 1 : 0;
  if (left_ < 0) return std::nullopt;
  --left_;
  if (left_ >= 0 || IsAnswer(fault_, function, arguments)) return std::nullopt;
  failed_ = true;
  return AnswerOf(fault_, arguments, excel_, result);
}

namespace {

/// Calls with faults, and holds each outcome against the one without a fault.
class Trial {
 public:
  Trial(FakeExcel& excel, const RepeatedCall& repeated) : excel_(excel), repeated_(repeated) {
    repeated_.forget();
    right_ = repeated_.call();
  }

  int Run() {
    for (const Fault& fault : Faults()) {
      // A long computation asks hundreds of times whether it is to end.
      for (int place = 0; Fails(fault, place); place += 1 + place / 5) {
      }
    }
    repeated_.forget();
    excel_.free_code = xlretFailed;
    Require(repeated_.call(), "cannot be freed", 0);
    excel_.free_code = xlretSuccess;
    return trials_;
  }

 private:
  /// False if the function makes no call at this place.
  bool Fails(const Fault& fault, int place) {
    repeated_.forget();
    Outcome outcome;
    {
      const PlantedFault planted(excel_, fault, place);
      outcome = repeated_.call();
      if (!planted.failed()) return planted.reached();
      if (planted.calls_on() > 0)
        FAIL_CHECK(repeated_.name, ", call ", place, ", calls on: ", std::string(fault.name));
    }
    ++trials_;
    if (!outcome.is_failure) Require(outcome, fault.name, place);
    Require(repeated_.call(), fault.name, place);
    return true;
  }

  void Require(const Outcome& outcome, const std::string& fault, int place) {
    if (outcome.shown == right_.shown || repeated_.is_volatile) return;
    FAIL_CHECK(repeated_.name, ", call ", place, ": ", fault, ": ", outcome.shown,
               " in the place of ", right_.shown);
  }

  FakeExcel& excel_;
  const RepeatedCall& repeated_;
  Outcome right_;
  int trials_ = 0;
};

}  // namespace

int FailEachCallback(FakeExcel& excel, const RepeatedCall& repeated) {
  return Trial(excel, repeated).Run();
}

}  // namespace zavrel::tests
