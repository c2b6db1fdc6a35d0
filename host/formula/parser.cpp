#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "formula/lexer.h"
#include "host/formula/evaluate.h"
#include "host/formula/expression.h"
#include "host/formula/file_marks.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

using formula::Token;
using formula::TokenKind;

constexpr std::size_t kMaxNesting = 64;
constexpr std::size_t kMaxArguments = 255;

// Binding powers; a higher power binds more tightly. Prefix operators are between the reference
// operators and the percent sign, so -2^2 is 4.
constexpr int kUnionPower = 70;
constexpr int kPrefixPower = 60;

struct Infix {
  Operator op;
  int power;
  bool is_postfix = false;
};

std::optional<Infix> InfixOf(const Token& token, bool with_union) {
  if (token.kind == TokenKind::kSeparator && with_union) {
    return Infix{Operator::kUnion, kUnionPower};
  }
  if (token.kind != TokenKind::kOperator) return std::nullopt;
  const char16_t last = token.text.back();
  switch (token.text.front()) {
    case u'#':
      return Infix{Operator::kSpill, 100, true};
    case u':':
      return Infix{Operator::kRange, 90};
    case u'%':
      return Infix{Operator::kPercent, 50, true};
    case u'^':
      return Infix{Operator::kPower, 40};
    case u'*':
      return Infix{Operator::kMultiply, 30};
    case u'/':
      return Infix{Operator::kDivide, 30};
    case u'+':
      return Infix{Operator::kAdd, 20};
    case u'-':
      return Infix{Operator::kSubtract, 20};
    case u'&':
      return Infix{Operator::kConcatenate, 15};
    case u'=':
      return Infix{Operator::kEqual, 10};
    case u'<':
      return Infix{last == u'>'   ? Operator::kNotEqual
                   : last == u'=' ? Operator::kLessEqual
                                  : Operator::kLess,
                   10};
    case u'>':
      return Infix{last == u'=' ? Operator::kGreaterEqual : Operator::kGreater, 10};
    case u'@':
      return std::nullopt;
    default:
      return Infix{Operator::kIntersection, 80};
  }
}

std::optional<Operator> PrefixOf(const Token& token) {
  if (token.kind != TokenKind::kOperator) return std::nullopt;
  if (token.text == u"-") return Operator::kMinus;
  if (token.text == u"+") return Operator::kPlus;
  if (token.text == u"@") return Operator::kSingle;
  return std::nullopt;
}

/// A text between quotes, in which a doubled quote is one quote.
std::u16string Unquoted(std::u16string_view text) {
  const char16_t quote = text.front();
  std::u16string content;
  content.reserve(text.size());
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    content.push_back(text[i]);
    if (text[i] == quote) ++i;
  }
  return content;
}

double NumberOf(const Token& token) {
  const std::string text(token.text.begin(), token.text.end());
  double number = 0.0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (status == std::errc::result_out_of_range) {
    const bool is_tiny = text.find('-') != std::string::npos || text[0] == '0' || text[0] == '.';
    if (!is_tiny) throw FormulaError("the number is too large", token.position);
    return 0.0;
  }
  return std::fpclassify(number) == FP_SUBNORMAL ? 0.0 : number;
}

ErrorCode ErrorOf(const Token& token) {
  // "Sheet1!#REF!" and "#REF!A1" are also #REF!.
  return ErrorFromText(token.text).value_or(ErrorCode::kRef);
}

/// Splits off the prefix of a reference or name; nothing if it refers to another workbook or to
/// several sheets.
std::optional<SheetPrefix> TakePrefix(std::u16string_view& text) {
  const std::size_t mark = text.rfind(u'!');
  if (mark == std::u16string_view::npos) return SheetPrefix{};
  const std::u16string_view written = text.substr(0, mark);
  text.remove_prefix(mark + 1);
  std::u16string sheet = written.starts_with(u'\'') ? Unquoted(written) : std::u16string(written);
  if (sheet.starts_with(u"[0]")) {
    sheet.erase(0, 3);
    if (sheet.empty()) return SheetPrefix{SheetPrefix::Kind::kThisWorkbook, {}};
  }
  if (sheet.find_first_of(u":[") != std::u16string::npos) return std::nullopt;
  return SheetPrefix{SheetPrefix::Kind::kSheet, std::move(sheet)};
}

class Parser {
 public:
  explicit Parser(std::u16string_view text) : tokens_(formula::Tokenize(text)) {
    std::erase_if(tokens_, [](const Token& t) { return t.kind == TokenKind::kWhiteSpace; });
    tokens_.push_back({TokenKind::kInvalid, {}, text.size()});  // the end
  }

  Formula Parse() {
    Expression expression;
    ParseOperators(0, true, expression);
    if (!Peek().text.empty()) Unexpected();
    const bool is_in_parentheses = closed_steps_ == expression.steps.size();
    return {std::move(expression), is_in_parentheses};
  }

 private:
  const Token& Peek() const { return tokens_[next_]; }
  const Token& Take() { return tokens_[next_++]; }

  [[noreturn]] void Unexpected() const {
    const Token& token = Peek();
    if (token.text.empty()) throw FormulaError("the formula is not complete", token.position);
    std::string message = PrintableUtf8(token.text.substr(0, 20));
    message.insert(message.begin(), '"');
    message.append("\" is unexpected here");
    throw FormulaError(message, token.position);
  }

  void Expect(TokenKind kind) {
    if (Peek().kind != kind) Unexpected();
    Take();
  }

  void Enter() {
    if (++nesting_ > kMaxNesting) {
      throw FormulaError("nested more than 64 levels deep", Peek().position);
    }
  }
  void Leave() { --nesting_; }

  /// One operand and every following operator that binds at least as tightly as `power`. The
  /// recursion is no deeper than the number of binding powers.
  void ParseOperators(int power, bool with_union, Expression& out) {
    std::vector<Operator> prefixes;
    while (const auto prefix = PrefixOf(Peek())) {
      prefixes.push_back(*prefix);
      Take();
    }
    if (prefixes.empty()) {
      ParsePrimary(out);
    } else {
      ParseOperators(kPrefixPower, with_union, out);
      out.steps.insert(out.steps.end(), prefixes.rbegin(), prefixes.rend());
    }
    while (const auto infix = InfixOf(Peek(), with_union)) {
      if (infix->power < power) return;
      Take();
      if (!infix->is_postfix) ParseOperators(infix->power + 1, with_union, out);
      out.steps.emplace_back(infix->op);
      closed_steps_ = 0;
    }
  }

  void ParsePrimary(Expression& out) {
    const Token& token = Peek();
    switch (token.kind) {
      case TokenKind::kNumber:
        return Constant(out, Value(NumberOf(token)));
      case TokenKind::kText:
        return Constant(out, Value(Unquoted(token.text)));
      case TokenKind::kBoolean:
        return Constant(out, Value(token.text.size() == 4));
      case TokenKind::kError:
        return Constant(out, Value(ErrorOf(token)));
      case TokenKind::kStructuredReference:
        return ParseStructured(out);
      case TokenKind::kReference:
        return ParseReference(out);
      case TokenKind::kName:
        return ParseName(out);
      case TokenKind::kFunction:
        return ParseCall(out);
      case TokenKind::kArrayOpen:
        return ParseArray(out);
      case TokenKind::kOpen:
        break;
      default:
        Unexpected();
    }
    Enter();
    Take();
    ParseOperators(0, true, out);
    Expect(TokenKind::kClose);
    Leave();
    closed_steps_ = out.steps.size();
  }

  void Constant(Expression& out, Value value) {
    Take();
    out.steps.emplace_back(ConstantStep{std::move(value)});
  }

  void ParseReference(Expression& out) {
    std::u16string_view text = Peek().text;
    auto prefix = TakePrefix(text);
    const auto reference = formula::ScanA1(text);
    if (!prefix || !reference) return Constant(out, Value(ErrorCode::kRef));
    Take();
    out.steps.emplace_back(ReferenceStep{std::move(*prefix), *reference});
  }

  void ParseStructured(Expression& out) {
    auto written = ParseStructuredReference(Peek().text);
    if (!written) return Constant(out, Value(ErrorCode::kRef));
    Take();
    out.steps.emplace_back(std::move(*written));
  }

  void ParseName(Expression& out) {
    std::u16string_view text = Peek().text;
    auto prefix = TakePrefix(text);
    if (!prefix) return Constant(out, Value(ErrorCode::kRef));
    text = WithoutFileMarks(text);
    out.steps.emplace_back(NameStep{std::move(*prefix), std::u16string(text), Take().position});
  }

  void ParseCall(Expression& out) {
    Enter();
    std::u16string_view name = Take().text;
    name = name.substr(0, name.find_last_not_of(u"( \t\r\n") + 1);
    name.remove_prefix(name.rfind(u'!') + 1);  // npos + 1 is 0
    const bool is_future = HasMark(name, u"_xlfn.");
    name = WithoutFileMarks(name);
    std::vector<Expression> arguments = ParseArguments();
    Leave();
    // The forms of "@" and "#" in files, for programs that do not know these operators.
    const bool is_single = EqualIgnoringCase(name, u"SINGLE");
    if (is_future && arguments.size() == 1 && !arguments[0].steps.empty() &&
        (is_single || EqualIgnoringCase(name, u"ANCHORARRAY"))) {
      std::move(arguments[0].steps.begin(), arguments[0].steps.end(),
                std::back_inserter(out.steps));
      out.steps.emplace_back(is_single ? Operator::kSingle : Operator::kSpill);
      return;
    }
    out.steps.emplace_back(CallStep{std::u16string(name), FindBuiltIn(name), std::move(arguments)});
  }

  std::vector<Expression> ParseArguments() {
    std::vector<Expression> arguments;
    if (Peek().kind == TokenKind::kClose) {
      Take();
      return arguments;
    }
    while (true) {
      if (arguments.size() == kMaxArguments) {
        throw FormulaError("more than 255 arguments", Peek().position);
      }
      Expression& argument = arguments.emplace_back();
      const bool is_omitted =
          Peek().kind == TokenKind::kSeparator || Peek().kind == TokenKind::kClose;
      if (!is_omitted) ParseOperators(0, false, argument);
      if (Peek().kind == TokenKind::kClose) break;
      Expect(TokenKind::kSeparator);
    }
    Take();
    return arguments;
  }

  void ParseArray(Expression& out) {
    const std::size_t position = Take().position;
    Array array;
    array.rows = 0;
    array.columns = 0;
    std::int32_t column = 0;
    while (true) {
      array.values.push_back(ParseElement());
      ++column;
      const TokenKind kind = Peek().kind;
      if (kind == TokenKind::kSeparator) {
        Take();
        continue;
      }
      if (kind != TokenKind::kRowSeparator && kind != TokenKind::kArrayClose) Unexpected();
      Take();
      if (array.rows++ == 0) array.columns = column;
      if (column != array.columns) {
        throw FormulaError("the rows of an array constant differ in length", position);
      }
      column = 0;
      if (kind == TokenKind::kArrayClose) break;
    }
    out.steps.emplace_back(ConstantStep{std::make_shared<const Array>(std::move(array))});
  }

  Value ParseElement() {
    const auto sign = PrefixOf(Peek());
    if (sign && sign != Operator::kSingle) {
      Take();
      if (Peek().kind != TokenKind::kNumber) Unexpected();
      const double number = NumberOf(Take());
      return sign == Operator::kMinus ? -number : number;
    }
    const Token& token = Peek();
    switch (token.kind) {
      case TokenKind::kNumber:
        return NumberOf(Take());
      case TokenKind::kText:
        return Value(Unquoted(Take().text));
      case TokenKind::kBoolean:
        return Take().text.size() == 4;
      case TokenKind::kError:
        return ErrorOf(Take());
      default:
        Unexpected();
    }
  }

  std::vector<Token> tokens_;
  std::size_t next_ = 0;
  std::size_t nesting_ = 0;
  std::size_t closed_steps_ = 0;  // of the expression, when a group in parentheses ended last
};

}  // namespace

FormulaPtr ParseFormula(std::u16string_view text) {
  if (text.size() > kLongestFormula) {
    throw FormulaError("longer than 8,192 characters", kLongestFormula);
  }
  return std::make_shared<const Formula>(Parser(text).Parse());
}

}  // namespace zavhost
