#include "host/workbook/number_format_code.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "host/workbook/text.h"

namespace zavhost {
namespace {

using Kind = FormatTokenKind;

constexpr std::size_t kNone = std::u16string_view::npos;

char16_t SmallLetter(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool IsColour(const std::u16string& name) {
  constexpr std::u16string_view kNames[] = {u"black",   u"blue", u"cyan",  u"green",
                                            u"magenta", u"red",  u"white", u"yellow"};
  if (std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames)) return true;
  constexpr std::u16string_view kNumbered = u"color";
  if (!name.starts_with(kNumbered)) return false;
  const std::string digits = Utf8FromUtf16(name.substr(kNumbered.size()));
  const std::size_t begin = std::min(digits.find_first_not_of(' '), digits.size());
  int number = 0;
  const auto read = std::from_chars(digits.data() + begin, digits.data() + digits.size(), number);
  return read.ec == std::errc() && read.ptr == digits.data() + digits.size() && number >= 1 &&
         number <= 56;
}

std::optional<FormatCondition> ConditionOf(std::u16string_view text) {
  FormatCondition condition;
  while (!text.empty() && std::u16string_view(u"<=>").find(text.front()) != kNone) {
    condition.op.push_back(text.front());
    text.remove_prefix(1);
  }
  constexpr std::u16string_view kOperators[] = {u"<", u"<=", u"=", u">=", u">", u"<>"};
  const std::string limit = Utf8FromUtf16(text);
  const auto read = std::from_chars(limit.data(), limit.data() + limit.size(), condition.limit);
  const bool is_known =
      std::find(std::begin(kOperators), std::end(kOperators), condition.op) != std::end(kOperators);
  if (!is_known || read.ec != std::errc() || read.ptr != limit.data() + limit.size()) return {};
  return condition;
}

/// The letters of dates, each for a run of the same letter.
std::optional<Kind> DatePartOf(char16_t letter) {
  switch (SmallLetter(letter)) {
    case u'y':
    case u'e':
      return Kind::kYear;
    case u'b':
      return Kind::kBuddhistYear;
    case u'm':
      return Kind::kMonth;
    case u'd':
      return Kind::kDay;
    case u'h':
      return Kind::kHour;
    case u's':
      return Kind::kSecond;
    default:
      return std::nullopt;
  }
}

/// Reads the tokens of a code, section by section.
class FormatCodeReader {
 public:
  explicit FormatCodeReader(std::u16string_view code) : rest_(code) {}

  std::optional<std::vector<FormatSection>> Read() {
    sections_.emplace_back();
    while (!rest_.empty()) {
      if (!ReadToken() || sections_.size() > 4) return std::nullopt;
    }
    return std::move(sections_);
  }

 private:
  void Add(Kind kind, std::u16string_view text = {}, int count = 1) {
    sections_.back().tokens.push_back({kind, std::u16string(text), count});
  }

  std::u16string_view Take(std::size_t length) {
    const std::u16string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(taken.size());
    return taken;
  }

  bool Begins(std::u16string_view text) const {
    return EqualIgnoringCase(rest_.substr(0, text.size()), text);
  }

  /// The length of the run of the first letter.
  std::size_t Run() const {
    std::size_t length = 1;
    while (length < rest_.size() && SmallLetter(rest_[length]) == SmallLetter(rest_[0])) ++length;
    return length;
  }

  bool ReadToken() {
    switch (rest_.front()) {
      case u'"':
        return ReadQuoted();
      case u'[':
        return ReadBracket();
      case u'\\':
      case u'_':
      case u'*':
        return ReadEscaped();
      case u';':
        sections_.emplace_back();
        Take(1);
        return true;
      case u'%':
        sections_.back().scale += 2;
        Add(Kind::kLiteral, Take(1));
        return true;
      default:
        if (!ReadSign() && !ReadLetters()) Add(Kind::kLiteral, Take(1));
        return true;
    }
  }

  bool ReadQuoted() {
    const std::size_t end = rest_.find(u'"', 1);
    if (end == kNone) return false;
    Add(Kind::kLiteral, rest_.substr(1, end - 1));
    Take(end + 1);
    return true;
  }

  /// "\x" is x, "_x" a blank as wide as x, "*x" fills the cell with x.
  bool ReadEscaped() {
    if (rest_.size() < 2) return false;
    const std::u16string_view pair = Take(2);
    if (pair[0] != u'*') Add(Kind::kLiteral, pair[0] == u'_' ? u" " : pair.substr(1));
    return true;
  }

  bool ReadBracket() {
    const std::size_t end = rest_.find(u']');
    if (end == kNone) return false;
    const std::u16string_view inside = rest_.substr(1, end - 1);
    Take(end + 1);
    if (inside.empty()) return false;
    if (inside.front() == u'$') {  // a currency sign and a language
      const std::u16string_view sign = inside.substr(1, inside.find(u'-') - 1);
      if (!sign.empty()) Add(Kind::kLiteral, sign);
      return true;
    }
    if (std::u16string_view(u"<=>").find(inside.front()) != kNone) {
      sections_.back().condition = ConditionOf(inside);
      return sections_.back().condition.has_value();
    }
    return ReadElapsed(LowerCase(inside)) || IsColour(LowerCase(inside));
  }

  bool ReadElapsed(const std::u16string& letters) {
    constexpr std::pair<char16_t, Kind> kUnits[] = {
        {u'h', Kind::kElapsedHours}, {u'm', Kind::kElapsedMinutes}, {u's', Kind::kElapsedSeconds}};
    const auto* unit = std::find_if(std::begin(kUnits), std::end(kUnits), [&](const auto& other) {
      return letters.find_first_not_of(other.first) == kNone;
    });
    if (unit == std::end(kUnits)) return false;
    Add(unit->second, {}, static_cast<int>(letters.size()));
    return true;
  }

  bool ReadSign() {
    constexpr std::pair<char16_t, Kind> kSigns[] = {
        {u'0', Kind::kDigit}, {u'#', Kind::kDigit}, {u'?', Kind::kDigit}, {u'@', Kind::kText},
        {u'.', Kind::kPoint}, {u',', Kind::kComma}, {u'/', Kind::kBar}};
    if (ReadSecondFraction()) return true;
    const auto* sign =
        std::find_if(std::begin(kSigns), std::end(kSigns),
                     [this](const auto& other) { return other.first == rest_.front(); });
    if (sign == std::end(kSigns)) return false;
    Add(sign->second, Take(1));
    return true;
  }

  bool ReadSecondFraction() {
    const auto& tokens = sections_.back().tokens;
    const bool is_behind_seconds = !tokens.empty() && (tokens.back().kind == Kind::kSecond ||
                                                       tokens.back().kind == Kind::kElapsedSeconds);
    if (!is_behind_seconds || !rest_.starts_with(u".0")) return false;
    const std::size_t end = std::min(rest_.find_first_not_of(u'0', 1), rest_.size());
    Add(Kind::kSecondFraction, {}, static_cast<int>(end - 1));
    Take(end);
    return true;
  }

  bool ReadLetters() {
    if (Begins(u"general")) {
      Take(7);
      Add(Kind::kGeneral);
      return true;
    }
    if (Begins(u"e+") || Begins(u"e-")) {
      Add(Kind::kExponent, Take(2).substr(1));
      return true;
    }
    if (Begins(u"g")) {  // the era, which has no name here
      Take(Run());
      return true;
    }
    if (Begins(u"a")) return ReadLetterA();
    const auto part = DatePartOf(rest_.front());
    if (!part) return false;
    const bool is_era_year = SmallLetter(rest_.front()) == u'e';
    const std::size_t length = Run();
    Take(length);
    Add(*part, {}, is_era_year ? 4 : static_cast<int>(length));
    return true;
  }

  /// The half of the day, or the day of the week as "aaa" or "aaaa".
  bool ReadLetterA() {
    if (Begins(u"am/pm")) {
      Take(5);
      Add(Kind::kHalfOfDay, u"AMPM");
      return true;
    }
    if (Begins(u"a/p")) {
      const std::u16string_view halves = Take(3);
      Add(Kind::kHalfOfDay, std::u16string{halves[0], halves[2]});
      return true;
    }
    if (Run() < 3) return false;
    const std::size_t length = Run();
    Take(length);
    Add(Kind::kDay, {}, static_cast<int>(length));
    return true;
  }

  std::u16string_view rest_;
  std::vector<FormatSection> sections_;
};

void MakeLiteral(FormatToken& token) { token.kind = Kind::kLiteral; }

/// The nearest part of a date or time before or behind a token; the half of the day does not count.
std::optional<Kind> NearestPart(const std::vector<FormatToken>& tokens, std::size_t from,
                                bool is_before) {
  const std::size_t step = is_before ? static_cast<std::size_t>(-1) : 1;
  for (std::size_t i = from + step; i < tokens.size(); i += step) {
    const Kind kind = tokens[i].kind;
    if (IsDatePart(kind) && kind != Kind::kHalfOfDay) return kind;
  }
  return std::nullopt;
}

/// "m" and "mm" are minutes behind hours and before seconds.
void FindMinutes(std::vector<FormatToken>& tokens) {
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].kind != Kind::kMonth || tokens[i].count > 2) continue;
    const auto before = NearestPart(tokens, i, true);
    const auto behind = NearestPart(tokens, i, false);
    if (before == Kind::kHour || before == Kind::kElapsedHours || behind == Kind::kSecond ||
        behind == Kind::kElapsedSeconds) {
      tokens[i].kind = Kind::kMinute;
    }
  }
}

bool CompleteDate(FormatSection& section) {
  for (FormatToken& token : section.tokens) {
    if (token.kind == Kind::kPoint || token.kind == Kind::kComma || token.kind == Kind::kBar)
      MakeLiteral(token);
    const bool is_possible = token.kind == Kind::kLiteral || IsDatePart(token.kind);
    if (!is_possible || (token.kind == Kind::kSecondFraction && token.count > 3)) return false;
  }
  FindMinutes(section.tokens);
  return true;
}

/// Finds out which commas separate thousands, which scale, and which are literals.
void FindCommas(FormatSection& section) {
  auto& tokens = section.tokens;
  const auto is_end = [](const FormatToken& token) {
    return token.kind == Kind::kPoint || token.kind == Kind::kExponent;
  };
  bool is_behind_digit = false;
  for (auto token = tokens.begin(); token != tokens.end(); ++token) {
    if (token->kind != Kind::kComma) {
      is_behind_digit = token->kind == Kind::kDigit;
    } else if (!is_behind_digit) {
      MakeLiteral(*token);
    } else {
      const auto end = std::find_if(token, tokens.end(), is_end);
      const bool has_digit_behind = std::any_of(
          token, end, [](const FormatToken& other) { return other.kind == Kind::kDigit; });
      if (has_digit_behind)
        section.has_thousands_separators = true;
      else
        section.scale -= 3;
    }
  }
  std::erase_if(tokens, [](const FormatToken& token) { return token.kind == Kind::kComma; });
}

bool CompleteNumber(FormatSection& section) {
  FindCommas(section);
  bool has_point = false;
  int exponents = 0;
  int bars = 0;
  for (FormatToken& token : section.tokens) {
    if (token.kind == Kind::kPoint && std::exchange(has_point, true)) MakeLiteral(token);
    exponents += token.kind == Kind::kExponent ? 1 : 0;
    bars += token.kind == Kind::kBar ? 1 : 0;
  }
  const bool is_plain = !section.Has(Kind::kDigit) && !has_point && exponents + bars == 0;
  const bool has_words = section.Has(Kind::kGeneral) || section.Has(Kind::kText);
  const bool has_digit_last =
      !section.tokens.empty() && section.tokens.back().kind != Kind::kExponent;
  return has_words ? is_plain
                   : exponents + bars + (has_point && bars > 0 ? 1 : 0) <= 1 &&
                         (exponents == 0 || has_digit_last);
}

}  // namespace

bool FormatCondition::Holds(double number) const {
  if (op == u"<") return number < limit;
  if (op == u"<=") return number <= limit;
  if (op == u"=") return number == limit;
  if (op == u">=") return number >= limit;
  return op == u">" ? number > limit : number != limit;
}

bool FormatCondition::IsOfNegatives() const {
  return (op == u"<" && limit <= 0.0) || ((op == u"<=" || op == u"=") && limit < 0.0);
}

bool FormatSection::Has(FormatTokenKind kind) const {
  return std::any_of(tokens.begin(), tokens.end(),
                     [kind](const FormatToken& token) { return token.kind == kind; });
}

std::optional<std::vector<FormatSection>> ParseFormatCode(std::u16string_view code) {
  if (code.size() > kLongestFormatCode) return std::nullopt;
  auto sections = FormatCodeReader(code).Read();
  if (!sections) return std::nullopt;
  for (FormatSection& section : *sections) {
    section.is_date = std::any_of(section.tokens.begin(), section.tokens.end(),
                                  [](const FormatToken& token) { return IsDatePart(token.kind); });
    if (!(section.is_date ? CompleteDate(section) : CompleteNumber(section))) return std::nullopt;
  }
  return sections;
}

}  // namespace zavhost
