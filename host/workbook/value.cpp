#include "host/workbook/value.h"

#include "formula/error_texts.h"
#include "host/workbook/text.h"

namespace zavhost {
std::u16string_view ErrorText(ErrorCode code) {
  for (const auto& [known, text] : formula::kErrorTexts) {
    if (known == static_cast<std::int32_t>(code)) return text;
  }
  return u"#UNKNOWN!";
}

std::optional<ErrorCode> ErrorFromText(std::u16string_view text) {
  if (text.empty() || text.front() != u'#') return std::nullopt;
  for (const auto& [code, known] : formula::kErrorTexts) {
    if (EqualIgnoringCase(text, known)) return static_cast<ErrorCode>(code);
  }
  return std::nullopt;
}

bool operator==(const Value& a, const Value& b) {
  if (a.kind_ != b.kind_) return false;
  switch (a.kind_) {
    case Value::Kind::kBlank:
      return true;
    case Value::Kind::kNumber:
      return a.number_ == b.number_;
    case Value::Kind::kBoolean:
      return a.boolean_ == b.boolean_;
    case Value::Kind::kError:
      return a.error_ == b.error_;
    case Value::Kind::kText:
      return a.text_ == b.text_;
  }
  return false;
}

}  // namespace zavhost
