#include "host/automation/formula_edit.h"

#include <algorithm>
#include <vector>

#include "formula/lexer.h"
#include "host/workbook/cell_names.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

/// The name of a sheet as it stands in a formula, without its quotes.
std::u16string Unquoted(std::u16string_view prefix) {
  if (prefix.size() < 2 || prefix.front() != u'\'') return std::u16string(prefix);
  std::u16string name;
  for (std::size_t i = 1; i + 1 < prefix.size(); ++i) {
    name += prefix[i];
    if (prefix[i] == u'\'') ++i;
  }
  return name;
}

/// The part of a token in front of its "!"; empty for one without a sheet.
std::u16string_view PrefixOf(const formula::Token& token) {
  if (token.kind != formula::TokenKind::kReference && token.kind != formula::TokenKind::kName &&
      token.kind != formula::TokenKind::kError)
    return {};
  const std::size_t mark = token.text.rfind(u'!');
  // The mark at the end of #REF! is none.
  const bool has_prefix = mark != std::u16string_view::npos && mark > 0 && token.text[0] != u'#';
  if (!has_prefix) return {};
  const std::size_t first = token.text.find(u"!#");
  return token.text.substr(0, first == std::u16string_view::npos ? mark : first);
}

/// The tokens of a text, with another text for those of a sheet.
template <class Replace>
std::u16string Rewritten(std::u16string_view text, std::u16string_view name,
                         const Replace& replace) {
  std::u16string rewritten;
  for (const formula::Token& token : formula::Tokenize(text)) {
    const std::u16string_view prefix = PrefixOf(token);
    const bool is_of_sheet = !prefix.empty() && EqualIgnoringCase(Unquoted(prefix), name);
    rewritten +=
        is_of_sheet ? replace(token.text.substr(prefix.size())) : std::u16string(token.text);
  }
  return rewritten;
}

}  // namespace

std::u16string WithSheetRenamed(std::u16string_view text, std::u16string_view name,
                                std::u16string_view new_name) {
  const std::u16string prefix = QuotedSheetName(new_name);
  return Rewritten(text, name,
                   [&](std::u16string_view rest) { return prefix + std::u16string(rest); });
}

std::u16string WithSheetRemoved(std::u16string_view text, std::u16string_view name) {
  return Rewritten(text, name, [](std::u16string_view) { return std::u16string(u"#REF!"); });
}

bool NamesOnlySheets(std::u16string_view text,
                     const std::function<bool(std::u16string_view)>& is_known) {
  const std::vector<formula::Token> tokens = formula::Tokenize(text);
  return std::all_of(tokens.begin(), tokens.end(), [&](const formula::Token& token) {
    const std::u16string_view prefix = PrefixOf(token);
    return prefix.empty() || is_known(Unquoted(prefix));
  });
}

bool IsDefinedName(std::u16string_view text) {
  constexpr std::size_t kLongest = 255;
  const std::vector<formula::Token> tokens = formula::Tokenize(text);
  return text.size() <= kLongest && tokens.size() == 1 &&
         tokens.front().kind == formula::TokenKind::kName &&
         text.find(u'!') == std::u16string_view::npos;
}

}  // namespace zavhost
