#include "host/workbook/value.h"

#include <array>
#include <utility>

#include "host/workbook/letter_case.h"

namespace zavhost {
namespace {

constexpr std::array<std::pair<ErrorCode, std::u16string_view>, 14> kErrors = {{
    {ErrorCode::kNull, u"#NULL!"},
    {ErrorCode::kDiv0, u"#DIV/0!"},
    {ErrorCode::kValue, u"#VALUE!"},
    {ErrorCode::kRef, u"#REF!"},
    {ErrorCode::kName, u"#NAME?"},
    {ErrorCode::kNum, u"#NUM!"},
    {ErrorCode::kNA, u"#N/A"},
    {ErrorCode::kGettingData, u"#GETTING_DATA"},
    {ErrorCode::kSpill, u"#SPILL!"},
    {ErrorCode::kConnect, u"#CONNECT!"},
    {ErrorCode::kBlocked, u"#BLOCKED!"},
    {ErrorCode::kUnknown, u"#UNKNOWN!"},
    {ErrorCode::kField, u"#FIELD!"},
    {ErrorCode::kCalc, u"#CALC!"},
}};

}  // namespace

std::u16string_view ErrorText(ErrorCode code) {
  for (const auto& [known, text] : kErrors) {
    if (known == code) return text;
  }
  return u"#UNKNOWN!";
}

std::optional<ErrorCode> ErrorFromText(std::u16string_view text) {
  if (text.empty() || text.front() != u'#') return std::nullopt;
  for (const auto& [code, known] : kErrors) {
    if (EqualIgnoringCase(text, known)) return code;
  }
  return std::nullopt;
}

Text MakeText(std::u16string_view text) { return std::make_shared<const std::u16string>(text); }

bool operator==(const Value& a, const Value& b) {
  const std::u16string* left = a.text();
  const std::u16string* right = b.text();
  if (left != nullptr && right != nullptr) return left == right || *left == *right;
  return a.content_ == b.content_;
}

}  // namespace zavhost
