// Functions that take texts apart, join and change them. A text's length is in code units, as in
// Excel; in the functions ending with B, which count bytes in Excel for languages that need two for
// a character, too.

#include "platform/letter_case.h"

#include "host/formula/builtin_groups.h"
#include "host/formula/text_result.h"

namespace zavhost {
namespace {

/// A function of one text.
template <std::u16string (*kFunction)(const std::u16string&)>
Operand OfText(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  return read.failed() ? read.failure() : TextResult(kFunction(text));
}

std::u16string Upper(const std::u16string& text) { return UpperCase(text); }

std::u16string Lower(const std::u16string& text) {
  constexpr char16_t kFinalSigma = u'\u03C2';
  std::u16string lower = LowerCase(text);
  for (std::size_t i = 0; i < text.size() && text.size() == lower.size(); ++i) {
    if (text[i] == kFinalSigma) lower[i] = kFinalSigma;
  }
  return lower;
}

/// Each letter that follows no letter in upper case, the others in lower case.
std::u16string Proper(const std::u16string& text) {
  std::u16string proper;
  bool is_behind_letter = false;
  for (std::u16string_view rest = text; !rest.empty();) {
    const auto [code, units] = zavrel::FirstCharacter(rest);
    const std::u16string letter(rest.substr(0, units));
    proper += is_behind_letter ? Lower(letter) : UpperCase(letter);
    is_behind_letter = zavrel::IsLetter(code);
    rest.remove_prefix(units);
  }
  return proper;
}

/// Without blanks at the ends, and with one in place of several between words.
std::u16string Trim(const std::u16string& text) {
  std::u16string trimmed;
  for (const char16_t unit : text) {
    if (unit != u' ' || (!trimmed.empty() && trimmed.back() != u' ')) trimmed += unit;
  }
  if (trimmed.ends_with(u' ')) trimmed.pop_back();
  return trimmed;
}

std::u16string Clean(const std::u16string& text) {
  std::u16string cleaned = text;
  std::erase_if(cleaned, [](char16_t unit) { return unit < 0x20; });
  return cleaned;
}

Operand Len(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  return read.failed() ? read.failure() : Value(static_cast<double>(text.size()));
}

/// LEFT and RIGHT.
template <bool kIsRight>
Operand End(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const double count = read.Whole(1, 1.0);
  read.Require(count >= 0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const std::size_t length = UpTo(count, text.size());
  return TextResult(text.substr(kIsRight ? text.size() - length : 0, length));
}

Operand Mid(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const double start = read.Whole(1);
  const double count = read.Whole(2);
  read.Require(start >= 1 && count >= 0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return TextResult(text.substr(UpTo(start - 1, text.size()), UpTo(count, text.size())));
}

Operand Replace(const BuiltInCall& call) {
  ArgumentReader read(call);
  std::u16string text = read.Text(0);
  const double start = read.Whole(1);
  const double count = read.Whole(2);
  const std::u16string replacement = read.Text(3);
  read.Require(start >= 1 && count >= 0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  return TextResult(
      text.replace(UpTo(start - 1, text.size()), UpTo(count, text.size()), replacement));
}

Operand Rept(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const double count = read.Whole(1);
  read.Require(count >= 0, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  if (text.empty()) return TextResult(text);
  if (count * static_cast<double>(text.size()) > kLongestText) return Value(ErrorCode::kValue);
  std::u16string repeated;
  for (double i = 0; i < count; ++i) repeated += text;
  return TextResult(std::move(repeated));
}

Operand Exact(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string first = read.Text(0);
  const std::u16string second = read.Text(1);
  return read.failed() ? read.failure() : Value(first == second);
}

/// Appends a value's text; an error if it is one or the text becomes too long.
std::optional<ErrorCode> Append(const Value& value, std::u16string& joined) {
  const Converted<std::u16string> text = ToText(value);
  if (text.error) return text.error;
  if (joined.size() + text.value.size() > kLongestText) return ErrorCode::kValue;
  joined += text.value;
  return std::nullopt;
}

/// CONCATENATE and CONCAT, which differ only in the kinds of their arguments.
Operand Concatenate(const BuiltInCall& call) {
  std::u16string joined;
  const auto error =
      VisitValues(call, [&joined](const Value& value, bool) { return Append(value, joined); });
  return error ? Operand(Value(*error)) : TextResult(std::move(joined));
}

/// True if an argument has so many cells that delimiters between all of them are too long a text.
bool IsTooLong(const Operand& argument) {
  const Reference* reference = std::get_if<Reference>(&argument);
  if (reference == nullptr) return false;
  return std::any_of(reference->areas.begin(), reference->areas.end(), [](const CellRange& area) {
    return std::int64_t{area.rows()} * area.columns() > std::int64_t{kLongestText} + 1;
  });
}

Operand TextJoin(const BuiltInCall& call) {
  ArgumentReader read(call);
  std::vector<std::u16string> delimiters;
  const ArrayPtr given = read.Array(0);
  for (const Value& value : given->values) {
    const Converted<std::u16string> text = ToText(value);
    if (text.error) read.Fail(*text.error);
    delimiters.push_back(text.value);
  }
  const bool ignores_empty = read.IsOmitted(1) || read.Boolean(1);
  if (read.failed()) return read.failure();
  const bool has_delimiters =
      std::any_of(delimiters.begin(), delimiters.end(),
                  [](const std::u16string& delimiter) { return !delimiter.empty(); });
  const auto texts = call.arguments.subspan(2);
  if (!ignores_empty && has_delimiters && std::any_of(texts.begin(), texts.end(), IsTooLong))
    return Value(ErrorCode::kValue);

  std::u16string joined;
  std::size_t count = 0;
  const auto add = [&](const Value& value, bool) -> std::optional<ErrorCode> {
    const bool is_empty = value.IsBlank() || (value.text() != nullptr && value.text()->empty());
    if (is_empty && ignores_empty) return std::nullopt;
    if (count > 0) joined += delimiters[(count - 1) % delimiters.size()];
    ++count;
    return Append(value, joined);
  };
  const auto error = VisitValues({texts, call.context, call.as_array}, add);
  return error ? Operand(Value(*error)) : TextResult(std::move(joined));
}

/// T: a text, and nothing for anything else.
Value TextOnly(const Value& value) {
  return value.text() != nullptr || value.error() != nullptr ? value : Value(u"");
}

/// N: the number of a number or boolean, otherwise 0.
Value NumberOnly(const Value& value) {
  if (value.number() != nullptr || value.error() != nullptr) return value;
  return value.boolean() != nullptr && *value.boolean() ? 1.0 : 0.0;
}

/// Of a reference its first cell, of an array every element.
template <auto function>
Operand OfFirstOrEach(const BuiltInCall& call) {
  const ArrayPtr* array = std::get_if<ArrayPtr>(call.arguments.data());
  if (array == nullptr) return function(ArgumentReader(call).Any(0));
  std::vector<Value> values;
  for (const Value& value : (*array)->values) values.push_back(function(value));
  return ArrayResult((*array)->rows, (*array)->columns, std::move(values));
}

/// HYPERLINK: what the cell shows.
Operand Hyperlink(const BuiltInCall& call) {
  ArgumentReader read(call);
  if (!read.IsOmitted(1)) return read.Any(1);
  std::u16string link = read.Text(0);
  return read.failed() ? read.failure() : TextResult(std::move(link));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"CONCATENATE", 1, kAnyNumberOfArguments, "s", Concatenate},
    {u"CONCAT", 1, kAnyNumberOfArguments, "r", Concatenate},
    {u"TEXTJOIN", 3, kAnyNumberOfArguments, "asr", TextJoin},
    {u"LEN", 1, 1, "s", Len},
    {u"LENB", 1, 1, "s", Len},
    {u"LEFT", 1, 2, "s", End<false>},
    {u"LEFTB", 1, 2, "s", End<false>},
    {u"RIGHT", 1, 2, "s", End<true>},
    {u"RIGHTB", 1, 2, "s", End<true>},
    {u"MID", 3, 3, "s", Mid},
    {u"MIDB", 3, 3, "s", Mid},
    {u"REPLACE", 4, 4, "s", Replace},
    {u"REPLACEB", 4, 4, "s", Replace},
    {u"REPT", 2, 2, "s", Rept},
    {u"EXACT", 2, 2, "s", Exact},
    {u"UPPER", 1, 1, "s", OfText<Upper>},
    {u"LOWER", 1, 1, "s", OfText<Lower>},
    {u"PROPER", 1, 1, "s", OfText<Proper>},
    {u"TRIM", 1, 1, "s", OfText<Trim>},
    {u"CLEAN", 1, 1, "s", OfText<Clean>},
    {u"T", 1, 1, "r", OfFirstOrEach<TextOnly>},
    {u"N", 1, 1, "r", OfFirstOrEach<NumberOnly>},
    {u"HYPERLINK", 1, 2, "s", Hyperlink},
};

}  // namespace

std::span<const BuiltInFunction> TextFunctions() { return kFunctions; }

}  // namespace zavhost
