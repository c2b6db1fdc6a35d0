#include "calc/call_sites.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "calc/formula_text.h"

namespace zavcalc {
namespace {

using Kind = SiteArgument::Kind;

constexpr std::int32_t kLastColumn = 16'383;
constexpr std::int32_t kLastRow = 1'048'575;
constexpr int kDeepest = 200;

/// Functions of Calc whose result is a number, whatever their arguments are.
constexpr std::u16string_view kNumberFunctions[] = {
    u"ABS",    u"AVERAGE", u"COLUMN",     u"COLUMNS", u"COUNT", u"COUNTA", u"EXP",  u"INT",
    u"LEN",    u"LN",      u"LOG",        u"LOG10",   u"MAX",   u"MEDIAN", u"MIN",  u"MOD",
    u"PI",     u"POWER",   u"RAND",       u"ROUND",   u"ROW",   u"ROWS",   u"SQRT", u"STDEV",
    u"STDEVP", u"SUM",     u"SUMPRODUCT", u"VAR",     u"VARP",
};
/// Functions of the add-in whose result is a boolean.
constexpr std::u16string_view kBooleanFunctions[] = {u"ZAVISBLANK", u"ZAVCATEGORYNAMECOMPARE",
                                                     u"ZAVMWUSINGNORMALAPPROXIMATION"};

template <class Names>
bool StandsIn(const Names& names, std::u16string_view name) {
  return std::ranges::find(names, name) != std::end(names);
}

struct Unreadable : std::runtime_error {
  Unreadable() : std::runtime_error("a formula that cannot be read") {}
};

SiteArgument Plain() {
  SiteArgument argument;
  argument.is_plain = true;
  return argument;
}

/// One end of a reference; -1 where it names a whole column or row.
struct Corner {
  std::optional<std::int32_t> sheet;
  std::int32_t column = -1;
  std::int32_t row = -1;
};

/// By recursive descent; what an operator makes of its operands decides what its result can be.
class Reader {
 public:
  Reader(std::u16string_view text, const NameScope& scope) : text_(text), scope_(scope) {}

  FormulaCalls Read() {
    if (!Take(u'=')) throw Unreadable();
    const SiteArgument whole = Expression();
    SkipBlanks();
    if (at_ != text_.size()) throw Unreadable();
    calls_.is_plain =
        whole.kind == Kind::kNumber || whole.kind == Kind::kText || IsPlainAlone(whole);
    return std::move(calls_);
  }

 private:
  static bool IsPlainAlone(const SiteArgument& argument) {
    return argument.kind == Kind::kExpression && argument.is_plain && argument.sources.empty();
  }

  char16_t Next() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
  void SkipBlanks() {
    while (Next() == u' ' || Next() == u'\n' || Next() == u'\t') ++at_;
  }
  bool Take(char16_t c) {
    SkipBlanks();
    if (Next() != c) return false;
    ++at_;
    return true;
  }
  void Expect(char16_t c) {
    if (!Take(c)) throw Unreadable();
  }

  // Operators, those that bind least first.

  SiteArgument Expression() {
    if (++depth_ > kDeepest) throw Unreadable();
    SiteArgument left = Operation();
    for (SkipBlanks(); Next() == u'=' || Next() == u'<' || Next() == u'>'; SkipBlanks()) {
      while (Next() == u'=' || Next() == u'<' || Next() == u'>') ++at_;
      Operation();
      left = {};
    }
    --depth_;
    return left;
  }

  /// Whatever the operators of arithmetic and & join is a number or a text.
  SiteArgument Operation() {
    constexpr std::u16string_view kOperators = u"+-*/^&";
    SiteArgument left = Signed();
    for (SkipBlanks(); kOperators.find(Next()) != std::u16string_view::npos && Next() != 0;
         SkipBlanks()) {
      ++at_;
      Signed();
      left = Plain();
    }
    return left;
  }

  SiteArgument Signed() {
    SkipBlanks();
    if (Next() != u'-' && Next() != u'+') return Joined();
    const bool is_minus = Next() == u'-';
    ++at_;
    const SiteArgument operand = Signed();
    if (operand.kind == Kind::kNumber) {
      SiteArgument number = operand;
      if (is_minus) number.number = -number.number;
      return number;
    }
    return is_minus ? Plain() : SiteArgument{};
  }

  SiteArgument Joined() {
    SiteArgument operand = Primary();
    for (SkipBlanks(); Next() == u'~' || Next() == u'!' || Next() == u':'; SkipBlanks()) {
      const bool is_union = Next() == u'~';
      ++at_;
      Primary();
      operand = {};
      if (is_union) operand.kind = Kind::kRefused;
    }
    while (Take(u'%')) operand = Plain();
    return operand;
  }

  SiteArgument Primary() {
    SkipBlanks();
    if (Take(u'(')) {
      SiteArgument inner = Expression();
      Expect(u')');
      return inner;
    }
    if (Next() == u'{') return InlineArray();
    if (Next() == u'"') return Text();
    if (Next() == u'#') return ErrorValue();
    if (auto reference = Reference()) return *reference;
    if (IsDigit(Next()) || Next() == u'.') return Number();
    return Named();
  }

  SiteArgument Text() {
    SiteArgument argument;
    argument.kind = Kind::kText;
    for (++at_;; ++at_) {
      if (at_ >= text_.size()) throw Unreadable();
      const bool is_quote = text_[at_] == u'"';
      if (is_quote) ++at_;  // a doubled one is one of the text
      if (is_quote && (at_ >= text_.size() || text_[at_] != u'"')) return argument;
      argument.text += text_[at_];
    }
  }

  SiteArgument Number() {
    const std::size_t begin = at_;
    while (IsDigit(Next()) || Next() == u'.') ++at_;
    if (Next() == u'E' || Next() == u'e') {
      ++at_;
      if (Next() == u'+' || Next() == u'-') ++at_;
      while (IsDigit(Next())) ++at_;
    }
    const std::u16string_view digits = text_.substr(begin, at_ - begin);
    SiteArgument argument;
    argument.kind = Kind::kNumber;
    const std::string ascii(digits.begin(), digits.end());
    const auto read = std::from_chars(ascii.data(), ascii.data() + ascii.size(), argument.number);
    if (read.ec != std::errc()) throw Unreadable();
    return argument;
  }

  SiteArgument ErrorValue() {
    while (Next() == u'#' || Next() == u'!' || Next() == u'/' || Next() == u'?' ||
           IsNamePart(Next()))
      ++at_;
    return {};
  }

  /// Columns are parted by ; and rows by |.
  SiteArgument InlineArray() {
    SiteArgument argument;
    argument.kind = Kind::kArray;
    zavhost::Array& array = argument.array;
    array.rows = 0;
    Expect(u'{');
    do {
      ++array.rows;
      do {
        array.values.push_back(Element());
      } while (Take(u';'));
    } while (Take(u'|'));
    Expect(u'}');
    array.columns = static_cast<std::int32_t>(array.values.size()) / array.rows;
    return argument;
  }

  zavhost::Value Element() {
    const SiteArgument element = Signed();
    switch (element.kind) {
      case Kind::kNumber:
        return element.number;
      case Kind::kText:
        return zavhost::Value(std::u16string_view(element.text));
      case Kind::kBoolean:
        return element.number == 1;
      default:  // an error, with which Calc does not call
        return zavhost::ErrorCode::kValue;
    }
  }

  // Names and functions.

  SiteArgument Named() {
    const std::size_t begin = at_;
    while (IsNamePart(Next())) ++at_;
    if (at_ == begin) throw Unreadable();
    const std::u16string name = UpperCase(text_.substr(begin, at_ - begin));
    if (Take(u'(')) return Function(name);
    if (name == u"TRUE" || name == u"FALSE") return Boolean(name == u"TRUE");
    if (const auto range = scope_.range_named(text_.substr(begin, at_ - begin))) {
      SiteArgument argument;
      argument.kind = Kind::kReference;
      argument.reference = *range;
      return argument;
    }
    return {};
  }

  static SiteArgument Boolean(bool is_true) {
    SiteArgument boolean;
    boolean.kind = Kind::kBoolean;
    boolean.number = is_true ? 1 : 0;
    return boolean;
  }

  SiteArgument Function(const std::u16string& name) {
    std::vector<SiteArgument> arguments;
    if (!Take(u')')) {
      do {
        arguments.push_back(ArgumentOrNone());
      } while (Take(u';'));
      Expect(u')');
    }
    if (name.starts_with(kPrefix)) return OwnFunction(name.substr(kPrefix.size()), arguments);
    if (name == u"TRUE" || name == u"FALSE") return Boolean(name == u"TRUE");
    if (name == u"IF" && arguments.size() == 3) return Choice(arguments[1], arguments[2]);
    return StandsIn(kNumberFunctions, name) ? Plain() : SiteArgument{};
  }

  SiteArgument ArgumentOrNone() {
    SkipBlanks();
    if (Next() != u';' && Next() != u')') return Expression();
    SiteArgument missing;
    missing.kind = Kind::kMissing;
    return missing;
  }

  SiteArgument OwnFunction(std::u16string name, std::vector<SiteArgument>& arguments) {
    SiteArgument result;
    result.is_plain = !StandsIn(kBooleanFunctions, name);
    calls_.calls.push_back({std::move(name), std::move(arguments), std::nullopt});
    return result;
  }

  /// Either of two values.
  static SiteArgument Choice(const SiteArgument& one, const SiteArgument& other) {
    SiteArgument choice = Plain();
    for (const SiteArgument* value : {&one, &other}) {
      switch (value->kind) {
        case Kind::kNumber:
        case Kind::kText:
          break;
        case Kind::kReference:
          choice.sources.push_back(value->reference);
          break;
        case Kind::kExpression:
          choice.is_plain = choice.is_plain && value->is_plain;
          choice.sources.insert(choice.sources.end(), value->sources.begin(), value->sources.end());
          break;
        default:
          choice.is_plain = false;
      }
    }
    return choice;
  }

  // References: A1, $B$2:C9, A:A, 1:2, each after Sheet. or $'a sheet'. where it is another's.

  std::optional<SiteArgument> Reference() {
    const std::size_t begin = at_;
    const auto first = CornerOf();
    std::optional<Corner> second;
    if (first && Next() == u':') {
      const std::size_t colon = at_++;
      second = CornerOf();
      if (!second) at_ = colon;
    }
    const bool is_whole = first && (first->column < 0 || first->row < 0);
    if (!first || (is_whole && !second) || IsNamePart(Next()) || Next() == u'(') {
      at_ = begin;
      return std::nullopt;
    }
    return Between(*first, second.value_or(*first));
  }

  SiteArgument Between(const Corner& first, const Corner& second) const {
    SiteArgument argument;
    argument.kind = Kind::kReference;
    const std::int32_t sheet = first.sheet.value_or(scope_.sheet);
    if (second.sheet.value_or(sheet) != sheet) argument.kind = Kind::kSeveralSheets;
    argument.reference = {sheet, std::max(first.column, 0), std::max(first.row, 0),
                          second.column < 0 ? kLastColumn : second.column,
                          second.row < 0 ? kLastRow : second.row};
    return argument;
  }

  std::optional<Corner> CornerOf() {
    const std::size_t begin = at_;
    Corner corner;
    if (auto sheet = SheetName()) {
      const auto found = scope_.sheet_named(*sheet);
      if (!found) throw Unreadable();
      corner.sheet = found;
    }
    const std::size_t cell = at_;
    if (Next() == u'$') ++at_;
    const std::size_t letters = at_;
    std::int32_t column = 0;
    for (; IsLetter(Next()) && at_ - letters < 4; ++at_)
      column = column * 26 + (UpperCase(text_.substr(at_, 1))[0] - u'A' + 1);
    if (at_ > letters) {
      corner.column = column - 1;
      if (Next() == u'$') ++at_;
    } else {
      at_ = cell + (text_[cell] == u'$' ? 1 : 0);
    }
    const std::size_t digits = at_;
    std::int32_t row = 0;
    for (; IsDigit(Next()) && at_ - digits < 8; ++at_) row = row * 10 + (Next() - u'0');
    if (at_ > digits) corner.row = row - 1;
    const bool is_empty = at_ == letters || (corner.column < 0 && corner.row < 0);
    if (is_empty || corner.column > kLastColumn || corner.row > kLastRow) {
      at_ = begin;
      return std::nullopt;
    }
    return corner;
  }

  /// The name of a sheet and the point behind it.
  std::optional<std::u16string> SheetName() {
    const std::size_t begin = at_;
    std::u16string name;
    if (Next() == u'$') ++at_;
    if (Next() == u'\'') {
      for (++at_; at_ < text_.size(); ++at_) {
        const bool is_quote = text_[at_] == u'\'';
        if (is_quote) ++at_;  // a doubled one is one of the name
        if (is_quote && (at_ >= text_.size() || text_[at_] != u'\'')) break;
        name += text_[at_];
      }
    } else {
      while (IsNamePart(Next()) && Next() != u'.') name += text_[at_++];
    }
    if (!name.empty() && Next() == u'.' && scope_.sheet_named(name)) {
      ++at_;
      return name;
    }
    at_ = begin;
    return std::nullopt;
  }

  std::u16string_view text_;
  const NameScope& scope_;
  std::size_t at_ = 0;
  int depth_ = 0;
  FormulaCalls calls_;
};

}  // namespace

std::optional<FormulaCalls> ReadFormula(std::u16string_view text, const NameScope& scope) {
  try {
    return Reader(WithoutBraces(text), scope).Read();
  } catch (const Unreadable&) {
    return std::nullopt;
  }
}

}  // namespace zavcalc
