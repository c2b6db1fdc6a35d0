// Generated formulas, each written at once in both languages and both reference styles.
#include <doctest/doctest.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "formula/a1_reference.h"
#include "formula/language_table.h"
#include "formula/translate.h"
#include "platform/utf.h"

namespace {

using formula::BaseCell;
using formula::Dialect;
using formula::ReferenceStyle;

const formula::Language& English() {
  static const auto language = formula::FindLanguage("en", {}).language;
  return *language;
}
const formula::Language& German() {
  static const auto language = formula::FindLanguage("de", {}).language;
  return *language;
}

constexpr std::size_t kForms = 4;
std::array<Dialect, kForms> Forms() {
  return {{{English()},
           {German()},
           {English(), ReferenceStyle::kR1C1},
           {German(), ReferenceStyle::kR1C1}}};
}

std::u16string Digits(int number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

/// Writes a random formula in all four forms: English and German in A1, then in R1C1.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {
    for (const auto& [english, german] : German().names()) names_.push_back({english, german});
  }

  std::array<std::u16string, kForms> Formula(BaseCell base) {
    texts_ = {};
    base_ = base;
    if (Below(4) > 0) Same(u"=");
    Expression(4);
    return texts_;
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  void Same(std::u16string_view text) {
    for (std::u16string& own : texts_) own += text;
  }
  void Both(std::u16string_view english, std::u16string_view german) {
    for (std::size_t i = 0; i < kForms; ++i) texts_[i] += i % 2 == 0 ? english : german;
  }
  template <std::size_t size>
  void OneOf(const char16_t* const (&texts)[size]) {
    Same(texts[Below(int{size})]);
  }
  void Blanks() {
    if (Below(6) == 0) OneOf({u" ", u"  ", u"\n", u"\t "});
  }

  void Expression(int depth) {
    Blanks();
    if (Below(6) == 0) OneOf({u"-", u"+", u"@"});
    Operand(depth);
    if (Below(8) == 0) Same(u"%");
    Blanks();
    if (depth > 0 && Below(2) == 0) {
      OneOf({u"+", u"-", u"*", u"/", u"^", u"&", u"=", u"<>", u"<=", u">=", u"<", u">"});
      Expression(depth - 1);
    }
  }

  void Operand(int depth) {
    switch (Below(depth > 0 ? 13 : 8)) {
      case 0:
        return Number();
      case 1:
        return Constant();
      case 2:
      case 3:
        return Reference();
      case 4:
        return OneOf(
            {u"price", u"Umsatz.2024", u"_x", u"SUM", u"Sheet1!price", u"\u00c4rger", u"TRUEish"});
      case 5:
        return OneOf({u"Table1[a,b;c]", u"T[[#This Row],[1.5]]", u"[@Menge]", u"T[a']b]"});
      case 6:
        return Array();
      case 7:
        Reference();
        Same(u" ");
        return Reference();
      case 8:
        Same(u"(");
        Expression(depth - 1);
        return Same(u")");
      case 9:
        return Union();
      default:
        return Call(depth);
    }
  }

  void Number() {
    const std::u16string whole = Digits(Below(100)), part = Digits(Below(100));
    const char16_t* const exponent = Below(4) == 0 ? u"E-3" : u"";
    switch (Below(3)) {
      case 0:
        return Same(whole + exponent);
      case 1:
        return Both(u"." + part + exponent, u"," + part + exponent);
      default:
        return Both(whole + u"." + part + exponent, whole + u"," + part + exponent);
    }
  }

  void Constant() {
    switch (Below(6)) {
      case 0:
        return Both(u"TRUE", u"WAHR");
      case 1:
        return Both(u"FALSE", u"FALSCH");
      case 2:
        return Both(u"#N/A", u"#NV");
      case 3:
        return Both(u"#VALUE!", u"#WERT!");
      case 4:
        return OneOf({u"#DIV/0!", u"#NULL!", u"#NAME?"});
      default:
        return OneOf({u"\"\"", u"\"SUM(1,2.5;{3})\"", u"\"a\"\"b, WAHR\"", u"\"A1:R1C1\""});
    }
  }

  void Array() {
    Same(u"{");
    const int rows = 1 + Below(3), columns = 1 + Below(3);
    for (int i = 0; i < rows * columns; ++i) {
      if (i > 0 && i % columns == 0) Same(u";");
      if (i % columns > 0) Both(u",", u".");
      if (Below(2) == 0) {
        if (Below(2) == 0) Same(u"-");
        Number();
      } else {
        Constant();
      }
    }
    Same(u"}");
  }

  void Union() {
    Same(u"(");
    for (int i = Below(3); i >= 0; --i) {
      Reference();
      Both(u",", u";");
    }
    Reference();
    Same(u")");
  }

  void Call(int depth) {
    const int known = Below(int(names_.size()) + 40);
    if (known < int(names_.size())) {
      const auto& [english, german] = names_[static_cast<std::size_t>(known)];
      Both(english, german);
    } else {
      OneOf({u"ZavMean", u"_xlfn.STDEV.S", u"_xlfn._xlws.SORT", u"_xll.ZavMean", u"Book1.xls!Own"});
    }
    Same(u"(");
    for (int i = Below(4); i > 0; --i) {
      if (Below(8) > 0) Expression(depth - 1);
      if (i > 1) Both(u",", u";");
    }
    Same(u")");
  }

  struct Line {
    int place;  // from 0
    bool absolute;
  };
  Line OneLine(int size) { return {Below(3) == 0 ? Below(size) : Below(20), Below(2) == 0}; }

  static std::u16string A1Part(const Line& line, const std::u16string& text) {
    return (line.absolute ? u"$" : u"") + text;
  }
  std::u16string R1C1Part(const Line& line, bool is_row, bool german) const {
    std::u16string text = is_row ? german ? u"Z" : u"R" : german ? u"S" : u"C";
    if (line.absolute) return text + Digits(line.place + 1);
    const int distance = line.place - (is_row ? base_.row : base_.column);
    if (distance == 0) return text;
    return text + (german ? u"(" : u"[") + Digits(distance) + (german ? u")" : u"]");
  }

  void Corner(const Line* row, const Line* column) {
    for (std::size_t i = 0; i < kForms; ++i) {
      const bool german = i % 2 == 1;
      if (i < 2) {
        if (column != nullptr) texts_[i] += A1Part(*column, formula::ColumnLetters(column->place));
        if (row != nullptr) texts_[i] += A1Part(*row, Digits(row->place + 1));
      } else {
        if (row != nullptr) texts_[i] += R1C1Part(*row, true, german);
        if (column != nullptr) texts_[i] += R1C1Part(*column, false, german);
      }
    }
  }

  void Reference() {
    if (Below(4) == 0) {
      OneOf({u"Sheet1!", u"'a;b, c.5''d'!", u"[Book1.xlsx]Sheet1!", u"Jan:March!",
             u"'[b!,1.xls]S'!"});
      if (Below(6) == 0) return Both(u"#REF!", u"#BEZUG!");
    }
    const Line row = OneLine(formula::kSheetRows), column = OneLine(formula::kSheetColumns);
    const Line row2 = OneLine(formula::kSheetRows), column2 = OneLine(formula::kSheetColumns);
    const int kind = Below(6);
    // A single whole line is a range in A1 style and none in R1C1 style: only different ones here.
    const bool rows = kind == 4 && row.place != row2.place;
    const bool columns = kind == 5 && column.place != column2.place;
    Corner(columns ? nullptr : &row, rows ? nullptr : &column);
    if (kind < 3) {
      if (Below(10) == 0) Same(u"#");
      return;
    }
    Same(u":");
    Corner(columns ? nullptr : &row2, rows ? nullptr : &column2);
  }

  std::mt19937 random_;
  std::vector<std::array<std::u16string, 2>> names_;
  std::array<std::u16string, kForms> texts_;
  BaseCell base_;
};

}  // namespace

TEST_CASE("generated formulas become each other in every language and style") {
  const auto forms = Forms();
  Generator generator(20240607);
  std::mt19937 random(1);
  for (int i = 0; i < 100'000; ++i) {
    const BaseCell base{static_cast<std::int32_t>(random() % 30),
                        static_cast<std::int32_t>(random() % 30)};
    const auto texts = generator.Formula(base);
    // Along the four sides of the square, and back.
    for (const auto& [from, to] : {std::array<std::size_t, 2>{0, 1},
                                   {1, 3},
                                   {3, 2},
                                   {2, 0},
                                   {0, 2},
                                   {2, 3},
                                   {3, 1},
                                   {1, 0}}) {
      const auto translated = TranslateFormula(texts[from], forms[from], forms[to], base);
      const auto* text = std::get_if<std::u16string>(&translated);
      if (text != nullptr && *text == texts[to]) continue;
      CAPTURE(zavrel::Utf8FromUtf16(texts[from]));
      REQUIRE(zavrel::Utf8FromUtf16(text != nullptr ? *text : u"") ==
              zavrel::Utf8FromUtf16(texts[to]));
    }
  }
}
