#include "formula/language_table.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <utility>
#include <vector>

#include "formula/a1_reference.h"
#include "formula/german_table.h"
#include "platform/letter_case.h"
#include "platform/utf.h"

namespace formula {
namespace {

constexpr std::size_t kLongestLine = 256;
constexpr std::size_t kMostLines = 4096;
constexpr std::size_t kLongestName = 64;

/// What a setting may be.
struct Setting {
  std::u16string_view key;
  std::u16string_view allowed;
  char16_t Notation::*place;
};

constexpr std::array<Setting, 4> kSeparators = {
    {{u"decimal", u".,", &Notation::decimal},
     {u"list", u",;", &Notation::list},
     {u"array column", u".,;\\", &Notation::array_column},
     {u"array row", u";|", &Notation::array_row}}};

constexpr std::u16string_view kLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool IsFunctionName(std::u16string_view name) {
  return name.size() <= kLongestName && !name.empty() && IsNameStart(name[0]) &&
         std::ranges::all_of(name, IsNamePart) &&
         name.find_first_of(u"\\?") == std::u16string_view::npos;
}

bool IsErrorText(std::u16string_view text) {
  return text.size() >= 2 && text.size() <= kLongestName && text[0] == u'#' &&
         text.find_first_of(u" \"'()[]{}=") == std::u16string_view::npos;
}

class TableReader {
 public:
  std::variant<Language, TableProblem> Read(std::string_view table) {
    if (table.starts_with("\xEF\xBB\xBF")) table.remove_prefix(3);
    for (std::size_t line = 1; !table.empty(); ++line) {
      const std::size_t end = std::min(table.find('\n'), table.size());
      const std::string_view reason =
          line > kMostLines ? "too many lines" : ReadLine(table.substr(0, end));
      if (!reason.empty()) return TableProblem{line, reason};
      table.remove_prefix(std::min(end + 1, table.size()));
    }
    const std::string_view reason = Finish();
    if (!reason.empty()) return TableProblem{0, reason};
    return std::move(language_);
  }

 private:
  /// Each of these returns what is wrong, or nothing.
  std::string_view ReadLine(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() > kLongestLine) return "the line is too long";
    if (line.empty() || line == "#" || line.starts_with("# ")) return {};
    if (!zavrel::IsValidUtf8(line)) return "the line is not UTF-8";
    const std::u16string text = zavrel::Utf16FromUtf8(line);
    const std::size_t sign = text.find(u" = ");
    if (sign == std::u16string::npos || sign == 0) return "not of the form KEY = TEXT";
    const std::u16string_view key = std::u16string_view(text).substr(0, sign);
    const std::u16string_view value = std::u16string_view(text).substr(sign + 3);
    if (key[0] == u'#') return ReadError(key, value);
    if (key.find_first_of(kLetters) == 0) return ReadFunction(key, value);
    return ReadSetting(key, value);
  }

  std::string_view ReadError(std::u16string_view key, std::u16string_view value) {
    const auto* known = std::ranges::find(kErrorTexts, key, &ErrorText::text);
    if (known == kErrorTexts.end()) return "there is no such error";
    if (!IsErrorText(value)) return "not the text of an error";
    std::u16string& own = own_errors_[static_cast<std::size_t>(known - kErrorTexts.begin())];
    if (!own.empty()) return "the error stands twice";
    own = value;
    return {};
  }

  std::string_view ReadFunction(std::u16string_view key, std::u16string_view value) {
    if (!IsFunctionName(key) || zavrel::UpperCase(key) != key || !IsFunctionName(value))
      return "not the name of a function";
    if (!language_.Add(key, zavrel::UpperCase(value))) return "one of the names stands twice";
    return {};
  }

  std::string_view ReadSetting(std::u16string_view key, std::u16string_view value) {
    if (std::ranges::find(settings_, key) != settings_.end()) return "the setting stands twice";
    settings_.emplace_back(key);
    Notation& notation = language_.notation;
    R1C1Letters& r1c1 = notation.r1c1;
    for (const Setting& setting : kSeparators) {
      if (key == setting.key) return ReadOne(value, setting.allowed, notation.*setting.place);
    }
    if (key == u"row letter") return ReadOne(value, kLetters, r1c1.row);
    if (key == u"column letter") return ReadOne(value, kLetters, r1c1.column);
    if (key != u"distance brackets") return "there is no such setting";
    if (value != u"()" && value != u"[]") return "not () or []";
    r1c1.open = value[0];
    r1c1.close = value[1];
    return {};
  }

  static std::string_view ReadOne(std::u16string_view value, std::u16string_view allowed,
                                  char16_t& place) {
    if (value.size() != 1 || allowed.find(value[0]) == std::u16string_view::npos)
      return "not one of the characters that may stand here";
    place = value[0];
    return {};
  }

  /// What must hold between entries.
  std::string_view Finish() {
    Notation& notation = language_.notation;
    if (notation.decimal == notation.list || notation.decimal == notation.array_column ||
        notation.array_column == notation.array_row)
      return "two separators that stand side by side are the same";
    if (notation.r1c1.row == notation.r1c1.column) return "rows and columns have the same letter";
    for (std::size_t i = 0; i < own_errors_.size(); ++i) {
      if (!own_errors_[i].empty()) notation.errors[i] = own_errors_[i];
      for (std::size_t k = 0; k < i; ++k) {
        if (notation.errors[i].starts_with(notation.errors[k]) ||
            notation.errors[k].starts_with(notation.errors[i]))
          return "the text of one error begins with that of another";
      }
    }
    for (const auto& [key, place] :
         {std::pair{u"TRUE", &notation.true_text}, {u"FALSE", &notation.false_text}}) {
      if (const std::u16string_view own = language_.Own(key); !own.empty()) *place = own;
    }
    return {};
  }

  Language language_;
  std::vector<std::u16string> settings_;
  std::array<std::u16string, kErrorTexts.size()> own_errors_;
};

/// English, with the functions of another language.
Language EnglishOf(const Language& other) {
  Language english;
  for (const auto& [name, own] : other.names()) english.Add(name, name);
  return english;
}

bool IsCode(std::string_view code) {
  return code.size() >= 2 && code.size() <= 16 && std::ranges::all_of(code, [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
         });
}

/// The whole file, or nothing if it cannot be read or is larger than any table.
std::optional<std::string> ContentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string content(kMostLines * (kLongestLine + 2) + 4, '\0');
  stream.read(content.data(), static_cast<std::streamsize>(content.size()));
  if (stream.bad() || stream.gcount() == 0 || !stream.eof()) return std::nullopt;
  content.resize(static_cast<std::size_t>(stream.gcount()));
  return content;
}

}  // namespace

std::variant<Language, TableProblem> ReadLanguageTable(std::string_view table) {
  return TableReader().Read(table);
}

FoundLanguage FindLanguage(std::string_view code, const std::filesystem::path& folder) {
  static const auto german =
      std::make_shared<const Language>(std::get<Language>(ReadLanguageTable(GermanTable())));
  static const auto english = std::make_shared<const Language>(EnglishOf(*german));
  std::string name(code);
  for (char& c : name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c);
  if (name == "en") return {.language = english};
  if (name == "de") return {.language = german};
  if (!IsCode(name)) return {.obstacle = LanguageObstacle::kCode};
  const std::filesystem::path file = folder / ("ZavrelFormulas." + name + ".txt");
  const std::optional<std::string> content = ContentOf(file);
  if (!content) return {.obstacle = LanguageObstacle::kFile, .file = file};
  auto read = ReadLanguageTable(*content);
  if (const auto* problem = std::get_if<TableProblem>(&read))
    return {.obstacle = LanguageObstacle::kTable, .file = file, .problem = *problem};
  return {.language = std::make_shared<const Language>(std::get<Language>(std::move(read)))};
}

}  // namespace formula
