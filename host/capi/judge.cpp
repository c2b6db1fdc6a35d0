#include "host/capi/judge.h"

#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr std::size_t kKept = 1000;

const char* KindText(ViolationKind kind) {
  switch (kind) {
    case ViolationKind::kMissingBracket:
      return "missing message bracket";
    case ViolationKind::kUnbalancedBracket:
      return "unbalanced message bracket";
    case ViolationKind::kNotFreed:
      return "value not freed";
    case ViolationKind::kFreedTwice:
      return "value freed twice";
    case ViolationKind::kFreedForeign:
      return "foreign memory freed";
    case ViolationKind::kArgumentWritten:
      return "argument written to";
    case ViolationKind::kMalformedResult:
      return "malformed result";
    case ViolationKind::kNameLeft:
      return "name not deleted";
    case ViolationKind::kMalformedCall:
      return "malformed call";
    case ViolationKind::kCrash:
      break;
  }
  return "crash";
}

}  // namespace

std::string DescribeViolation(const Violation& violation) {
  std::string line;
  if (!violation.cell.empty()) line += violation.cell + ": ";
  if (!violation.formula.empty()) line += violation.formula + ": ";
  line += violation.detail + " (" + KindText(violation.kind) + ")";
  return PrintableUtf8(Utf16FromUtf8(line));
}

void Judge::SetPlace(std::string cell, std::string formula) {
  place_ = std::make_shared<Place>(Place{std::move(formula), std::move(cell)});
}

void Judge::Report(ViolationKind kind, std::string detail, const Place& place) {
  ++count_;
  if (violations_.size() < kKept)
    violations_.push_back({kind, std::move(detail), place.formula, place.cell});
}

}  // namespace zavhost
