// Functions that search texts and split them.

#include <cmath>
#include <vector>

#include "host/formula/builtin_groups.h"
#include "host/formula/text_result.h"

namespace zavhost {
namespace {

constexpr std::size_t kNowhere = std::u16string_view::npos;

/// A text with wildcards as the pieces between its asterisks. In a piece, nothing stands for any
/// character.
class WildcardPattern {
 public:
  /// ? is one character, * any number of them; a tilde takes that meaning away.
  explicit WildcardPattern(std::u16string_view text) : pieces_(1) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == u'~' && i + 1 < text.size()) {
        pieces_.back().emplace_back(text[++i]);
      } else if (text[i] == u'*') {
        pieces_.emplace_back();
      } else {
        pieces_.back().push_back(text[i] == u'?' ? std::nullopt : std::optional(text[i]));
      }
    }
  }

  /// The first place where the pattern begins; kNowhere if there is none. If the first piece, at
  /// its first place, has no match for the others behind it, no later place has.
  std::size_t FindIn(std::u16string_view text, std::size_t from) const {
    const std::size_t first = FindPiece(pieces_[0], text, from);
    std::size_t place = first;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
      if (i > 0) place = FindPiece(pieces_[i], text, place);
      if (place == kNowhere) return kNowhere;
      place += pieces_[i].size();
    }
    return first;
  }

 private:
  using Piece = std::vector<std::optional<char16_t>>;

  static std::size_t FindPiece(const Piece& piece, std::u16string_view text, std::size_t from) {
    const auto found = std::search(
        text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), piece.begin(), piece.end(),
        [](char16_t unit, std::optional<char16_t> wanted) { return !wanted || unit == *wanted; });
    const auto place = static_cast<std::size_t>(found - text.begin());
    return place + piece.size() > text.size() ? kNowhere : place;
  }

  std::vector<Piece> pieces_;
};

/// With more wildcards than that, a search could take too long.
constexpr std::size_t kLongestWildcardPattern = 255;

/// SEARCH: in any letter case and with wildcards.
std::size_t SearchFrom(std::u16string_view wanted, std::u16string_view text, std::size_t from) {
  const std::u16string lower = LowerCase(wanted);
  if (wanted.find_first_of(u"?*~") == kNowhere) return LowerCase(text).find(lower, from);
  if (wanted.size() > kLongestWildcardPattern) return kNowhere;
  return WildcardPattern(lower).FindIn(LowerCase(text), from);
}

/// FIND: exactly this text.
std::size_t FindFrom(std::u16string_view wanted, std::u16string_view text, std::size_t from) {
  return text.find(wanted, from);
}

template <std::size_t (*kSearch)(std::u16string_view, std::u16string_view, std::size_t)>
Operand Find(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string wanted = read.Text(0);
  const std::u16string text = read.Text(1);
  const double start = read.Whole(2, 1.0);
  read.Require(start >= 1 && start <= static_cast<double>(text.size()) + 1, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  const std::size_t place = kSearch(wanted, text, static_cast<std::size_t>(start) - 1);
  return place == kNowhere ? Value(ErrorCode::kValue) : Value(static_cast<double>(place) + 1);
}

Operand Substitute(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const std::u16string old_text = read.Text(1);
  const std::u16string new_text = read.Text(2);
  const bool is_single = read.IsGiven(3);
  const double instance = read.Whole(3, 1.0);
  read.Require(instance >= 1, ErrorCode::kValue);
  if (read.failed()) return read.failure();
  if (old_text.empty()) return TextResult(text);

  std::u16string changed;
  std::size_t copied = 0;
  double count = 0;
  for (std::size_t place = text.find(old_text); place != kNowhere && changed.size() <= kLongestText;
       place = text.find(old_text, place + old_text.size())) {
    count += 1;
    if (is_single && count != instance) continue;
    changed.append(text, copied, place - copied).append(new_text);
    copied = place + old_text.size();
    if (is_single) break;
  }
  return TextResult(changed.append(text, copied));
}

struct Occurrence {
  std::size_t place;
  std::size_t length;
};

/// The delimiters of an argument.
class Delimiters {
 public:
  Delimiters(ArgumentReader& read, std::size_t index, bool ignores_case)
      : ignores_case_(ignores_case) {
    const ArrayPtr array = read.Array(index);
    if (array->values.size() > kMostDelimiters) read.Fail(ErrorCode::kValue);
    if (read.failed()) return;
    for (const Value& value : array->values) {
      const Converted<std::u16string> text = ToText(value);
      if (text.error) read.Fail(*text.error);
      texts_.push_back(ignores_case ? LowerCase(text.value) : text.value);
    }
  }

  bool HasEmpty() const {
    return std::any_of(texts_.begin(), texts_.end(),
                       [](const std::u16string& text) { return text.empty(); });
  }

  /// Where they occur, from first to last and without overlaps; at one place, the longest. None of
  /// them is empty.
  std::vector<Occurrence> In(std::u16string_view original) const {
    const std::u16string text = ignores_case_ ? LowerCase(original) : std::u16string(original);
    std::vector<Occurrence> found;
    std::vector<std::size_t> next(texts_.size(), 0);
    for (std::size_t from = 0; true;) {
      Occurrence first{kNowhere, 0};
      for (std::size_t i = 0; i < texts_.size(); ++i) {
        if (next[i] != kNowhere && (from == 0 || next[i] < from))
          next[i] = text.find(texts_[i], from);
        const Occurrence other{next[i], texts_[i].size()};
        const bool is_longer = other.place == first.place && other.length > first.length;
        if (other.place < first.place || is_longer) first = other;
      }
      if (first.place == kNowhere) return found;
      found.push_back(first);
      from = first.place + first.length;
    }
  }

 private:
  static constexpr std::size_t kMostDelimiters = 1000;  // so that a search ends soon

  std::vector<std::u16string> texts_;
  bool ignores_case_;
};

/// The match mode of an argument: whether letter case does not matter.
bool IgnoresCase(ArgumentReader& read, std::size_t index) {
  const double mode = read.Whole(index, 0.0);
  read.Require(mode == 0 || mode == 1, ErrorCode::kValue);
  return mode == 1;
}

/// The delimiter of that number, counted from the end if it is negative; nothing if there are not
/// so many. With `at_end`, the text's end (or its beginning, from the end) is one more delimiter.
std::optional<Occurrence> NumberedOccurrence(const Delimiters& delimiters,
                                             const std::u16string& text, double instance,
                                             bool at_end) {
  if (delimiters.HasEmpty()) return Occurrence{instance > 0 ? 0 : text.size(), 0};
  std::vector<Occurrence> found = delimiters.In(text);
  if (instance < 0) std::reverse(found.begin(), found.end());
  if (at_end) found.push_back({instance < 0 ? 0 : text.size(), 0});
  const double number = std::fabs(instance);
  if (number > static_cast<double>(found.size())) return std::nullopt;
  return found[static_cast<std::size_t>(number) - 1];
}

/// TEXTBEFORE and TEXTAFTER.
template <bool kIsAfter>
Operand BesideDelimiter(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const double instance = read.IsOmitted(2) ? 1.0 : read.Whole(2);
  const Delimiters delimiters(read, 1, IgnoresCase(read, 3));
  const double at_end = read.Whole(4, 0.0);
  read.Require(at_end == 0 || at_end == 1, ErrorCode::kValue);
  const double most = std::max(1.0, static_cast<double>(text.size()));
  read.Require(instance != 0 && std::fabs(instance) <= most, ErrorCode::kValue);
  if (read.failed()) return read.failure();

  const auto found = NumberedOccurrence(delimiters, text, instance, at_end == 1);
  if (!found) return read.IsOmitted(5) ? Value(ErrorCode::kNA) : read.Any(5);
  return TextResult(kIsAfter ? text.substr(found->place + found->length)
                             : text.substr(0, found->place));
}

/// The parts of a text between delimiters.
std::vector<std::u16string> Parts(const std::u16string& text, const Delimiters& delimiters,
                                  bool ignores_empty) {
  std::vector<std::u16string> parts;
  std::size_t begin = 0;
  const auto add = [&](std::size_t end) {
    if (end > begin || !ignores_empty) parts.push_back(text.substr(begin, end - begin));
  };
  for (const Occurrence& found : delimiters.In(text)) {
    add(found.place);
    begin = found.place + found.length;
  }
  add(text.size());
  return parts;
}

Operand TextSplit(const BuiltInCall& call) {
  ArgumentReader read(call);
  const std::u16string text = read.Text(0);
  const bool has_columns = !read.IsOmitted(1);
  const bool has_rows = !read.IsOmitted(2);
  const bool ignores_empty = read.Boolean(3, false);
  const bool ignores_case = IgnoresCase(read, 4);
  const Value padding = read.IsOmitted(5) ? Value(ErrorCode::kNA) : read.Any(5);
  read.Require(has_columns || has_rows, ErrorCode::kValue);
  const Delimiters columns(read, 1, ignores_case);
  const Delimiters rows(read, 2, ignores_case);
  read.Require(!(has_columns && columns.HasEmpty()) && !(has_rows && rows.HasEmpty()),
               ErrorCode::kValue);
  if (read.failed()) return read.failure();

  std::vector<std::vector<std::u16string>> parts;
  std::size_t width = 0;
  for (const std::u16string& line :
       has_rows ? Parts(text, rows, ignores_empty) : std::vector<std::u16string>{text}) {
    parts.push_back(has_columns ? Parts(line, columns, ignores_empty) : std::vector{line});
    width = std::max(width, parts.back().size());
  }
  if (width == 0) return Value(ErrorCode::kCalc);
  if (static_cast<double>(parts.size()) * static_cast<double>(width) > kLargestMadeArray)
    return Value(ErrorCode::kValue);
  std::vector<Value> values;
  for (std::vector<std::u16string>& line : parts) {
    for (std::u16string& part : line) values.emplace_back(Text(std::move(part)));
    values.insert(values.end(), width - line.size(), padding);
  }
  return ArrayResult(static_cast<std::int32_t>(parts.size()), static_cast<std::int32_t>(width),
                     std::move(values));
}

constexpr BuiltInFunction kFunctions[] = {
    {u"FIND", 2, 3, "s", Find<FindFrom>},
    {u"FINDB", 2, 3, "s", Find<FindFrom>},
    {u"SEARCH", 2, 3, "s", Find<SearchFrom>},
    {u"SEARCHB", 2, 3, "s", Find<SearchFrom>},
    {u"SUBSTITUTE", 3, 4, "s", Substitute},
    {u"TEXTBEFORE", 2, 6, "sas", BesideDelimiter<false>},
    {u"TEXTAFTER", 2, 6, "sas", BesideDelimiter<true>},
    {u"TEXTSPLIT", 2, 6, "saas", TextSplit},
};

}  // namespace

std::span<const BuiltInFunction> TextSearchFunctions() { return kFunctions; }

}  // namespace zavhost
