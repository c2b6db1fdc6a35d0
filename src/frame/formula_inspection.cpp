#include "frame/formula_inspection.h"

#include <algorithm>
#include <vector>

#include "diagnostics/log.h"
#include "formula/lexer.h"
#include "frame/calling_cell.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

/// Whether a function's token ("ZavMean(", "_xll.zavmean(", "'C:\x.xll'!ZavMean(") names a function
/// of the library.
bool IsOwnFunction(std::u16string_view token) {
  if (const auto prefix = token.find_last_of(u'!'); prefix != std::u16string_view::npos) {
    token.remove_prefix(prefix + 1);
  }
  const auto begins = [&](std::u16string_view with) {
    return token.size() >= with.size() &&
           std::equal(with.begin(), with.end(), token.begin(), [](char16_t a, char16_t b) {
             return a == b || (a >= u'a' && a <= u'z' && a - u'a' + u'A' == b);
           });
  };
  if (begins(u"_xll.")) token.remove_prefix(5);
  return begins(u"zav");
}

}  // namespace

bool CorrectedXloper::Is16384InFormula(std::u16string_view text) {
  if (text.starts_with(u'=')) text.remove_prefix(1);
  std::vector<bool> inside;  // per open parenthesis: inside a function of the library?
  for (const formula::Token& token : formula::Tokenize(text)) {
    switch (token.kind) {
      case formula::TokenKind::kFunction:
        inside.push_back((!inside.empty() && inside.back()) || IsOwnFunction(token.text));
        break;
      case formula::TokenKind::kOpen:
        inside.push_back(!inside.empty() && inside.back());
        break;
      case formula::TokenKind::kClose:
        if (!inside.empty()) inside.pop_back();
        break;
      case formula::TokenKind::kNumber:
        if (!inside.empty() && inside.back() && token.text == u"16384") return true;
        break;
      default:
        break;
    }
  }
  return false;
}

void CorrectedXloper::Is16384InCellFormula(void* excel_application) noexcept {
  if (excel_application == nullptr || EnabledLog() == nullptr) return;
  try {
    const auto text = CallingCellFormula(excel_application);
    if (!text || !Is16384InFormula(*text)) return;
    LogComposedLine(
        [&] { return "CorrectedXloper::Is16384InCellFormula: " + Utf8FromUtf16(*text); });
  } catch (...) {  // the inspection never disturbs the calculation
  }
}

}  // namespace zavrel
