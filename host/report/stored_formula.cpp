#include "host/report/stored_formula.h"

#include <algorithm>

#include "formula/lexer.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

// Names with a dot are newer than the file format, except these.
constexpr std::u16string_view kOldWithDot[] = {u"ERROR.TYPE", u"NETWORKDAYS.INTL", u"WORKDAY.INTL",
                                               u"ISO.CEILING"};
// The newer ones without a dot that the host computes.
constexpr std::u16string_view kNewWithoutDot[] = {
    u"ACOT",       u"ACOTH",        u"AGGREGATE",  u"ARABIC",    u"ARRAYTOTEXT", u"BASE",
    u"BITAND",     u"BITLSHIFT",    u"BITOR",      u"BITRSHIFT", u"BITXOR",      u"CHOOSECOLS",
    u"CHOOSEROWS", u"COMBINA",      u"CONCAT",     u"COT",       u"COTH",        u"CSC",
    u"CSCH",       u"DAYS",         u"DECIMAL",    u"DROP",      u"EXPAND",      u"FORMULATEXT",
    u"GAMMA",      u"GAUSS",        u"HSTACK",     u"IFNA",      u"IFS",         u"ISFORMULA",
    u"ISOWEEKNUM", u"LET",          u"MAXIFS",     u"MINIFS",    u"MUNIT",       u"NUMBERVALUE",
    u"PDURATION",  u"PERMUTATIONA", u"PHI",        u"RANDARRAY", u"RRI",         u"SEC",
    u"SECH",       u"SEQUENCE",     u"SHEET",      u"SHEETS",    u"SORTBY",      u"SWITCH",
    u"TAKE",       u"TEXTAFTER",    u"TEXTBEFORE", u"TEXTJOIN",  u"TEXTSPLIT",   u"TOCOL",
    u"TOROW",      u"UNICHAR",      u"UNICODE",    u"UNIQUE",    u"VALUETOTEXT", u"VSTACK",
    u"WRAPCOLS",   u"WRAPROWS",     u"XLOOKUP",    u"XMATCH",    u"XOR"};

template <std::size_t kSize>
bool IsAmong(std::u16string_view name, const std::u16string_view (&names)[kSize]) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::u16string_view MarkOf(std::u16string_view name) {
  if (name.starts_with(u"_XL")) return u"";
  if (name.starts_with(u"ZAV")) return u"_xll.";
  if (name == u"FILTER" || name == u"SORT") return u"_xlfn._xlws.";
  const bool is_new = name.find(u'.') == std::u16string_view::npos ? IsAmong(name, kNewWithoutDot)
                                                                   : !IsAmong(name, kOldWithDot);
  return is_new ? u"_xlfn." : u"";
}

}  // namespace

std::string StoredFormula(std::u16string_view formula) {
  std::u16string stored;
  if (formula.starts_with(u'=')) {
    stored = u"=";
    formula.remove_prefix(1);
  }
  for (const formula::Token& token : formula::Tokenize(formula)) {
    if (token.kind == formula::TokenKind::kFunction)
      stored += MarkOf(UpperCase(token.text.substr(0, token.text.find_first_of(u" ("))));
    stored += token.text;
  }
  return Utf8FromUtf16(stored);
}

}  // namespace zavhost
