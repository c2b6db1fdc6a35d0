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

Text MakeText(std::u16string_view text) { return std::make_shared<const std::u16string>(text); }

bool operator==(const Value& a, const Value& b) {
  const std::u16string* left = a.text();
  const std::u16string* right = b.text();
  if (left != nullptr && right != nullptr) return left == right || *left == *right;
  return a.content_ == b.content_;
}

}  // namespace zavhost
