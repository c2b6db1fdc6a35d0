#include "formula/translate.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "formula/a1_reference.h"
#include "formula/lexer.h"
#include "formula/r1c1_reference.h"
#include "platform/letter_case.h"

namespace formula {
namespace {

class Translator {
 public:
  Translator(const Dialect& from, const Dialect& to, BaseCell base)
      : from_(from), to_(to), base_(base) {}

  std::variant<std::u16string, TranslationProblem> Run(std::u16string_view formula) {
    if (formula.size() > kLongestFormula)
      return TranslationProblem{TranslationFailure::kTooLong, kLongestFormula};
    const std::size_t start = formula.starts_with(u'=') ? 1 : 0;
    text_ = formula.substr(0, start);
    tokens_ = Tokenize(formula.substr(start), from_.language.notation, from_.style);
    for (at_ = 0; at_ < tokens_.size(); ++at_) {
      const auto failure = Append(tokens_[at_]);
      const auto too_long = text_.size() > kLongestFormula;
      if (failure || too_long)
        return TranslationProblem{failure.value_or(TranslationFailure::kTooLong),
                                  tokens_[at_].position + start};
    }
    if (!open_.empty())
      return TranslationProblem{TranslationFailure::kUnpaired, open_.back() + start};
    return std::move(text_);
  }

 private:
  using Failure = std::optional<TranslationFailure>;

  const Notation& own() const { return from_.language.notation; }
  const Notation& other() const { return to_.language.notation; }

  Failure Append(const Token& token) {
    if (in_array_ && !MayStandInArray(token)) return TranslationFailure::kUnreadable;
    switch (token.kind) {
      case TokenKind::kInvalid:
        return WhyInvalid(token);
      case TokenKind::kNumber:
        return AppendNumber(token.text);
      case TokenKind::kBoolean:
        return AppendBoolean(token.text);
      case TokenKind::kError:
        return AppendError(token.text);
      case TokenKind::kReference:
        return IsCallOfCellName() ? AppendFunction(token.text) : AppendReference(token.text);
      case TokenKind::kFunction:
        open_.push_back(token.position);
        return AppendFunction(token.text);
      case TokenKind::kSeparator:
        text_ += in_array_ ? other().array_column : other().list;
        return {};
      case TokenKind::kRowSeparator:
        if (!in_array_) return TranslationFailure::kUnreadable;
        text_ += other().array_row;
        return {};
      default:
        text_ += token.text;
        return Bracket(token);
    }
  }

  static bool MayStandInArray(const Token& token) {
    switch (token.kind) {
      case TokenKind::kInvalid:
      case TokenKind::kNumber:
      case TokenKind::kBoolean:
      case TokenKind::kError:
      case TokenKind::kText:
      case TokenKind::kSeparator:
      case TokenKind::kRowSeparator:
      case TokenKind::kWhiteSpace:
      case TokenKind::kArrayClose:
        return true;
      default:
        return token.text == u"-" || token.text == u"+";
    }
  }

  /// Follows parentheses and braces.
  Failure Bracket(const Token& token) {
    if (token.kind == TokenKind::kOpen || token.kind == TokenKind::kArrayOpen)
      open_.push_back(token.position);
    if (token.kind == TokenKind::kClose || token.kind == TokenKind::kArrayClose) {
      if (open_.empty() || (token.kind == TokenKind::kArrayClose) != in_array_)
        return TranslationFailure::kUnpaired;
      open_.pop_back();
    }
    if (token.kind == TokenKind::kArrayOpen) in_array_ = true;
    if (token.kind == TokenKind::kArrayClose) in_array_ = false;
    return {};
  }

  static Failure WhyInvalid(const Token& token) {
    const auto count = [&](char16_t unit) { return std::ranges::count(token.text, unit); };
    const bool unclosed =
        token.text[0] == u'"' || count(u'\'') % 2 == 1 || count(u'[') > count(u']');
    return unclosed ? TranslationFailure::kUnclosed : TranslationFailure::kUnreadable;
  }

  Failure AppendNumber(std::u16string_view number) {
    text_ += number;
    std::replace(text_.end() - static_cast<std::ptrdiff_t>(number.size()), text_.end(),
                 own().decimal, other().decimal);
    return {};
  }

  /// A word is kept as written where the languages agree.
  Failure AppendWord(std::u16string_view word, std::u16string_view translated) {
    text_ += zavrel::EqualIgnoringCase(word, translated) ? word : translated;
    return {};
  }

  Failure AppendBoolean(std::u16string_view word) {
    const bool is_true = zavrel::EqualIgnoringCase(word, own().true_text);
    return AppendWord(word, is_true ? other().true_text : other().false_text);
  }

  /// "#REF!", "Sheet1!#REF!", "#REF!A1".
  Failure AppendError(std::u16string_view token) {
    if (token[0] != u'#') {
      const std::size_t prefix = token.size() - own().errors[kReferenceError].size();
      text_ += token.substr(0, prefix);
      return AppendWord(token.substr(prefix), other().errors[kReferenceError]);
    }
    for (std::size_t i = 0; i < own().errors.size(); ++i) {
      const std::u16string_view error = token.substr(0, own().errors[i].size());
      if (!zavrel::EqualIgnoringCase(error, own().errors[i])) continue;
      AppendWord(error, other().errors[i]);
      token.remove_prefix(error.size());
      break;
    }
    return token.empty() ? Failure() : AppendReference(token);
  }

  /// A function's name, with the blanks and the parenthesis behind it if they are in the token.
  Failure AppendFunction(std::u16string_view token) {
    const std::size_t end = std::min(token.find_first_of(u"( \n\r\t"), token.size());
    const std::u16string_view word = token.substr(0, end);
    std::u16string_view english = from_.language.English(word);
    // Where the language has another name for it, the English one means nothing.
    if (english.empty() && from_.language.Own(word).empty()) english = word;
    const std::u16string_view translated = to_.language.Own(english);
    AppendWord(word, !translated.empty() ? translated : !english.empty() ? english : word);
    text_ += token.substr(end);
    return {};
  }

  /// True for "LOG10 (", which the lexer cannot tell from a cell and a group.
  bool IsCallOfCellName() const {
    return at_ + 2 < tokens_.size() && IsBlank(tokens_[at_ + 1].text[0]) &&
           tokens_[at_ + 2].kind == TokenKind::kOpen &&
           !from_.language.English(tokens_[at_].text).empty();
  }

  Failure AppendReference(std::u16string_view token) {
    const std::size_t mark = token.rfind(u'!');
    const std::size_t prefix = mark == std::u16string_view::npos ? 0 : mark + 1;
    text_ += token.substr(0, prefix);
    token.remove_prefix(prefix);
    if (from_.style == to_.style) {
      for (const char16_t unit : token) text_ += SameStyle(unit);
      return {};
    }
    if (to_.style == ReferenceStyle::kR1C1) {
      const A1Reference distances = Shifted(*ScanA1(token), -base_.row, -base_.column);
      text_ += R1C1Text(distances, other().r1c1);
      return {};
    }
    const auto reference = Moved(*ScanR1C1(token, own().r1c1), base_.row, base_.column);
    if (!reference) return TranslationFailure::kOffSheet;
    text_ += A1Text(*reference);
    return {};
  }

  /// A character of a reference in the other language; its style stays.
  char16_t SameStyle(char16_t unit) const {
    if (from_.style == ReferenceStyle::kA1) return unit;
    const R1C1Letters &mine = own().r1c1, &others = other().r1c1;
    if (unit == mine.open) return others.open;
    if (unit == mine.close) return others.close;
    for (const auto& [letter, translated] :
         {std::pair{mine.row, others.row}, {mine.column, others.column}}) {
      if (unit == letter) return translated;
      if (unit == (letter | 0x20)) return static_cast<char16_t>(translated | 0x20);
    }
    return unit;
  }

  static bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\n' || unit == u'\r' || unit == u'\t';
  }

  const Dialect& from_;
  const Dialect& to_;
  BaseCell base_;
  std::u16string text_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::vector<std::size_t> open_;  // positions of parentheses and braces
  bool in_array_ = false;
};

}  // namespace

std::variant<std::u16string, TranslationProblem> TranslateFormula(std::u16string_view formula,
                                                                  const Dialect& from,
                                                                  const Dialect& to,
                                                                  BaseCell base) {
  return Translator(from, to, base).Run(formula);
}

}  // namespace formula
