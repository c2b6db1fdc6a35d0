#include "formula/lexer.h"

#include <optional>

#include "formula/a1_reference.h"
#include "formula/r1c1_reference.h"
#include "platform/letter_case.h"

namespace formula {
namespace {

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\n' || unit == u'\r' || unit == u'\t';
}

bool StartsWithNoCase(std::u16string_view text, std::u16string_view start) {
  return text.size() >= start.size() &&
         zavrel::EqualIgnoringCase(text.substr(0, start.size()), start);
}

class Lexer {
 public:
  Lexer(std::u16string_view formula, const Notation& notation, ReferenceStyle style)
      : formula_(formula), notation_(notation), style_(style) {}

  std::vector<Token> Run() {
    while (position_ < formula_.size()) Next();
    MarkIntersections();
    return std::move(tokens_);
  }

 private:
  char16_t At(std::size_t index) const { return index < formula_.size() ? formula_[index] : u'\0'; }

  void Emit(TokenKind kind, std::size_t end) {
    tokens_.push_back({kind, formula_.substr(position_, end - position_), position_});
    position_ = end;
  }

  void Next() {
    const char16_t unit = formula_[position_];
    if (IsBlank(unit)) return LexWhiteSpace();
    if (unit == u'"') return LexText();
    if (unit == u'\'') return LexQuotedPrefix();
    if (unit == u'[') return LexBracket();
    if (unit == u'#') return LexHash();
    if (IsSeparator(unit)) {
      const bool is_row = unit != Separator();
      return Emit(is_row ? TokenKind::kRowSeparator : TokenKind::kSeparator, position_ + 1);
    }
    if (IsDigit(unit) || unit == notation_.decimal) return LexNumber();
    if (unit == u'$') return LexDollar();
    if (IsNameStart(unit)) return LexWord();
    LexSymbol(unit);
  }

  char16_t Separator() const { return in_array_ ? notation_.array_column : notation_.list; }
  bool IsSeparator(char16_t unit) const {
    return unit == Separator() || unit == notation_.array_row;
  }

  /// The length of the reference without a prefix at the start of `text`; 0 if there is none.
  std::size_t ReferenceLength(std::u16string_view text) const {
    const auto reference =
        style_ == ReferenceStyle::kA1 ? ScanA1(text) : ScanR1C1(text, notation_.r1c1);
    return reference ? reference->length : 0;
  }

  void LexWhiteSpace() {
    std::size_t end = position_;
    while (end < formula_.size() && IsBlank(formula_[end])) ++end;
    Emit(TokenKind::kWhiteSpace, end);
  }

  /// The position after the closing quote of a quoted run, in which a doubled quote stands for one;
  /// std::nullopt if the run is not closed.
  std::optional<std::size_t> EndOfQuoted(char16_t quote) const {
    std::size_t end = position_ + 1;
    while (end < formula_.size()) {
      if (formula_[end] != quote) {
        ++end;
      } else if (At(end + 1) == quote) {
        end += 2;
      } else {
        return end + 1;
      }
    }
    return std::nullopt;
  }

  void LexText() {
    const auto end = EndOfQuoted(u'"');
    if (!end) return Emit(TokenKind::kInvalid, formula_.size());
    Emit(TokenKind::kText, *end);
  }

  void LexQuotedPrefix() {
    const auto end = EndOfQuoted(u'\'');
    if (!end) return Emit(TokenKind::kInvalid, formula_.size());
    if (At(*end) != u'!') return Emit(TokenKind::kInvalid, *end);
    LexBehindPrefix(*end + 1);
  }

  std::size_t EndOfWord(std::size_t start) const {
    while (start < formula_.size() && IsNamePart(formula_[start])) ++start;
    return start;
  }

  /// The position after the "!" of a plain sheet prefix that starts at `start` ("Sheet1!" or
  /// "Sheet1:Sheet3!"); std::nullopt if there is none.
  std::optional<std::size_t> EndOfPlainPrefix(std::size_t start) const {
    const std::size_t end = EndOfWord(start);
    if (At(end) == u'!') return end + 1;
    if (end == start || At(end) != u':' || !IsNameStart(At(end + 1))) return std::nullopt;
    const std::size_t second = EndOfWord(end + 1);
    return At(second) == u'!' ? std::optional(second + 1) : std::nullopt;
  }

  /// The position after the "]" that closes the "[" at `start`; an apostrophe escapes the character
  /// after it.
  std::optional<std::size_t> EndOfBrackets(std::size_t start) const {
    std::size_t depth = 0;
    for (std::size_t i = start; i < formula_.size(); ++i) {
      if (formula_[i] == u'\'')
        ++i;
      else if (formula_[i] == u'[')
        ++depth;
      else if (formula_[i] == u']' && --depth == 0)
        return i + 1;
    }
    return std::nullopt;
  }

  /// A workbook in front of a sheet name, or a structured reference inside its own table.
  void LexBracket() {
    const auto end = EndOfBrackets(position_);
    if (!end) return Emit(TokenKind::kInvalid, formula_.size());
    if (const auto prefix = EndOfPlainPrefix(*end)) return LexBehindPrefix(*prefix);
    Emit(TokenKind::kStructuredReference, *end);
  }

  void LexBehindPrefix(std::size_t start) {
    const std::u16string_view rest = formula_.substr(start);
    if (const std::size_t length = ReferenceLength(rest); length > 0)
      return Emit(TokenKind::kReference, start + length);
    const std::u16string& reference_error = notation_.errors[kReferenceError];
    if (StartsWithNoCase(rest, reference_error))
      return Emit(TokenKind::kError, start + reference_error.size());
    if (!IsNameStart(At(start))) return Emit(TokenKind::kInvalid, start);
    LexName(start);
  }

  void LexHash() {
    const std::u16string_view rest = formula_.substr(position_);
    for (const std::u16string& text : notation_.errors) {
      if (!StartsWithNoCase(rest, text)) continue;
      std::size_t length = text.size();
      if (text == notation_.errors[kReferenceError]) length += ReferenceLength(rest.substr(length));
      return Emit(TokenKind::kError, position_ + length);
    }
    Emit(TokenKind::kOperator, position_ + 1);
  }

  void LexNumber() {
    const std::u16string_view rest = formula_.substr(position_);
    if (const std::size_t rows = ReferenceLength(rest); rows > 0)
      return Emit(TokenKind::kReference, position_ + rows);
    std::size_t end = position_;
    std::size_t digits = 0;
    for (; IsDigit(At(end)); ++end) ++digits;
    if (At(end) == notation_.decimal) {
      for (++end; IsDigit(At(end)); ++end) ++digits;
    }
    if (digits == 0) return Emit(TokenKind::kInvalid, end);
    if (At(end) == u'E' || At(end) == u'e') {
      std::size_t exponent = end + 1;
      if (At(exponent) == u'+' || At(exponent) == u'-') ++exponent;
      if (IsDigit(At(exponent))) {
        while (IsDigit(At(exponent))) ++exponent;
        end = exponent;
      }
    }
    Emit(TokenKind::kNumber, end);
  }

  void LexDollar() {
    const std::size_t length = ReferenceLength(formula_.substr(position_));
    if (length == 0) return Emit(TokenKind::kInvalid, position_ + 1);
    Emit(TokenKind::kReference, position_ + length);
  }

  void LexWord() {
    const std::u16string_view rest = formula_.substr(position_);
    if (in_array_) {
      if (const std::size_t length = BooleanLength(rest); length > 0)
        return Emit(TokenKind::kBoolean, position_ + length);
    }
    // "A1:Sheet2!B2" is a range of two operands: the name of a sheet called A1 would be quoted.
    if (const std::size_t length = ReferenceLength(rest); length > 0)
      return Emit(TokenKind::kReference, position_ + length);
    if (const auto prefix = EndOfPlainPrefix(position_)) return LexBehindPrefix(*prefix);
    LexName(position_);
  }

  /// The length of the truth value at the start of `rest`; 0 if there is none. In an array the
  /// separator behind it may be a character of names, as in {WAHR.FALSCH}.
  std::size_t BooleanLength(std::u16string_view rest) const {
    for (const std::u16string_view word :
         {std::u16string_view(notation_.true_text), std::u16string_view(notation_.false_text)}) {
      if (!StartsWithNoCase(rest, word)) continue;
      const char16_t next = rest.size() > word.size() ? rest[word.size()] : u'\0';
      if (!IsNamePart(next) || (in_array_ && IsSeparator(next))) return word.size();
    }
    return 0;
  }

  /// The position after a "(" that follows the word ending at `end` after blanks; std::nullopt if
  /// there is none or the word is not a plain one.
  std::optional<std::size_t> EndOfSpacedCall(std::size_t start, std::size_t end) const {
    if (start != position_ || !IsBlank(At(end))) return std::nullopt;
    std::size_t open = end;
    while (IsBlank(At(open))) ++open;
    const std::u16string_view word = formula_.substr(start, end - start);
    const bool is_plain = word.find_first_of(u"\\?") == std::u16string_view::npos;
    return is_plain && At(open) == u'(' ? std::optional(open + 1) : std::nullopt;
  }

  /// Reads the word at `start`, after the prefix of the token, if it has one.
  void LexName(std::size_t start) {
    const std::size_t end = EndOfWord(start);
    if (At(end) == u'(') return Emit(TokenKind::kFunction, end + 1);
    if (const auto open = EndOfSpacedCall(start, end)) return Emit(TokenKind::kFunction, *open);
    if (At(end) == u'[') {
      const auto close = EndOfBrackets(end);
      return close ? Emit(TokenKind::kStructuredReference, *close)
                   : Emit(TokenKind::kInvalid, formula_.size());
    }
    const std::u16string_view word = formula_.substr(position_, end - position_);
    Emit(BooleanLength(word) == word.size() ? TokenKind::kBoolean : TokenKind::kName, end);
  }

  void LexSymbol(char16_t unit) {
    const char16_t next = At(position_ + 1);
    switch (unit) {
      case u'(':
        return Emit(TokenKind::kOpen, position_ + 1);
      case u')':
        return Emit(TokenKind::kClose, position_ + 1);
      case u'{':
        in_array_ = true;
        return Emit(TokenKind::kArrayOpen, position_ + 1);
      case u'}':
        in_array_ = false;
        return Emit(TokenKind::kArrayClose, position_ + 1);
      case u'<':
        return Emit(TokenKind::kOperator, position_ + (next == u'=' || next == u'>' ? 2 : 1));
      case u'>':
        return Emit(TokenKind::kOperator, position_ + (next == u'=' ? 2 : 1));
      default:
        break;
    }
    const bool is_operator =
        std::u16string_view(u"+-*/^&=%:@").find(unit) != std::u16string_view::npos;
    Emit(is_operator ? TokenKind::kOperator : TokenKind::kInvalid, position_ + 1);
  }

  static bool MayEndReference(const Token& token) {
    switch (token.kind) {
      case TokenKind::kReference:
      case TokenKind::kStructuredReference:
      case TokenKind::kName:
      case TokenKind::kError:
      case TokenKind::kClose:
        return true;
      default:
        return token.kind == TokenKind::kOperator && token.text == u"#";
    }
  }

  static bool MayBeginReference(const Token& token) {
    switch (token.kind) {
      case TokenKind::kReference:
      case TokenKind::kStructuredReference:
      case TokenKind::kName:
      case TokenKind::kError:
      case TokenKind::kFunction:
      case TokenKind::kOpen:
        return true;
      default:
        return false;
    }
  }

  void MarkIntersections() {
    for (std::size_t i = 1; i + 1 < tokens_.size(); ++i) {
      if (tokens_[i].kind == TokenKind::kWhiteSpace && MayEndReference(tokens_[i - 1]) &&
          MayBeginReference(tokens_[i + 1])) {
        tokens_[i].kind = TokenKind::kOperator;
      }
    }
  }

  std::u16string_view formula_;
  const Notation& notation_;
  ReferenceStyle style_;
  bool in_array_ = false;
  std::size_t position_ = 0;
  std::vector<Token> tokens_;
};

}  // namespace

const Notation& EnglishNotation() {
  static const Notation english;
  return english;
}

std::vector<Token> Tokenize(std::u16string_view formula, const Notation& notation,
                            ReferenceStyle style) {
  return Lexer(formula, notation, style).Run();
}

}  // namespace formula
