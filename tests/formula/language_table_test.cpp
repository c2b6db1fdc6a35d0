// Tables of languages: the German one against another program's, and those of users.
#include "formula/language_table.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "platform/utf.h"
#include "support/book_builder.h"

namespace {

using formula::FindLanguage;
using formula::FoundLanguage;
using formula::LanguageObstacle;
using formula::ReadLanguageTable;

const formula::Language& German() {
  static const auto german = FindLanguage("de", {}).language;
  return *german;
}

std::vector<std::vector<std::string>> Lines(const char* file) {
  std::ifstream stream(std::filesystem::path(ZAVREL_TEST_DATA) / "languages" / file);
  std::vector<std::vector<std::string>> lines;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("# ")) continue;
    std::istringstream fields(line);
    auto& parts = lines.emplace_back();
    for (std::string part; std::getline(fields, part, '\t');) parts.push_back(part);
  }
  return lines;
}

/// "3: reason" for a table that is not used, else nothing.
std::string Wrong(std::string_view table) {
  const auto read = ReadLanguageTable(table);
  const auto* problem = std::get_if<formula::TableProblem>(&read);
  return problem == nullptr ? ""
                            : std::to_string(problem->line) + ": " + std::string(problem->reason);
}

}  // namespace

TEST_CASE("German names are those that LibreOffice has, but for listed differences") {
  std::map<std::string, std::vector<std::string>> differences;
  for (const auto& line : Lines("differences.tsv")) differences[line.at(0)] = line;
  std::size_t compared = 0;
  for (const auto& line : Lines("libreoffice.tsv")) {
    CAPTURE(line.at(0));
    const auto own = zavrel::Utf8FromUtf16(German().Own(zavrel::Utf16FromUtf8(line[0])));
    const bool is_error = line[0][0] == '#';
    if (own.empty() && !is_error) continue;
    ++compared;
    const auto difference = differences.extract(line[0]);
    if (is_error) {
      for (std::size_t i = 0; i < formula::kErrorTexts.size(); ++i) {
        if (zavrel::Utf8FromUtf16(formula::kErrorTexts[i].text) == line[0])
          CHECK(zavrel::Utf8FromUtf16(German().notation.errors[i]) == line[1]);
      }
    } else if (difference.empty()) {
      CHECK(own == line[1]);
    } else {
      CHECK(difference.mapped() == std::vector{line[0], own, line[1]});
    }
  }
  CHECK(differences.empty());
  CHECK(compared > 450);
}

TEST_CASE("a damaged table is reported by its line and not used") {
  CHECK(Wrong("# comment\n\nSUM = SOMME\r\ndecimal = ,\nlist = ;\narray column = .\n") == "");
  CHECK(Wrong("SUM = SOMME\nSUM=SOMME2\n") == "2: not of the form KEY = TEXT");
  CHECK(Wrong(" = SOMME") == "1: not of the form KEY = TEXT");
  CHECK(Wrong("SUM = SOMME\nSUM = ADDITION\n") == "2: one of the names stands twice");
  CHECK(Wrong("SUM = SOMME\nADD = somme") == "2: one of the names stands twice");
  CHECK(Wrong("SUM = SOM ME") == "1: not the name of a function");
  CHECK(Wrong("SUM = 1SOMME") == "1: not the name of a function");
  CHECK(Wrong("SUM = ") == "1: not the name of a function");
  CHECK(Wrong("Sum = SOMME") == "1: not the name of a function");
  CHECK(Wrong("SUM = SOM\xFFME") == "1: the line is not UTF-8");
  CHECK(Wrong("#VALUE! = #VALEUR!\n#VALEUR! = #VALUE!") == "2: there is no such error");
  CHECK(Wrong("#VALUE! = VALEUR") == "1: not the text of an error");
  CHECK(Wrong("#VALUE! = #A!\n#VALUE! = #B!") == "2: the error stands twice");
  CHECK(Wrong("#VALUE! = #NUM!?") == "0: the text of one error begins with that of another");
  CHECK(Wrong("thousands = .") == "1: there is no such setting");
  CHECK(Wrong("list = ;\nlist = ;") == "2: the setting stands twice");
  CHECK(Wrong("list = ;;") == "1: not one of the characters that may stand here");
  CHECK(Wrong("row letter = 1") == "1: not one of the characters that may stand here");
  CHECK(Wrong("row letter = C") == "0: rows and columns have the same letter");
  CHECK(Wrong("distance brackets = <>") == "1: not () or []");
  CHECK(Wrong("decimal = ,") == "0: two separators that stand side by side are the same");
  CHECK(Wrong("list = ;\narray column = ;") ==
        "0: two separators that stand side by side are the same");
  CHECK(Wrong(std::string(257, '#')) == "1: the line is too long");
  CHECK(Wrong(std::string(4096, '\n')) == "");
  CHECK(Wrong(std::string(4096, '\n') + "#") == "4097: too many lines");
}

TEST_CASE("other languages come from tables in the folder") {
  const zavhost_test::TemporaryFolder folder;
  const auto file = folder.path() / "ZavrelFormulas.fr.txt";
  std::ofstream(file, std::ios::binary) << "\xEF\xBB\xBFSUM = SOMME\n";
  const FoundLanguage french = FindLanguage("FR", folder.path());
  REQUIRE(french.language != nullptr);
  CHECK(french.language->Own(u"sum") == u"SOMME");
  CHECK(french.language->notation.decimal == u'.');

  std::ofstream(file, std::ios::binary) << "SUM = SOMME\nABS\n";
  const FoundLanguage damaged = FindLanguage("fr", folder.path());
  CHECK(damaged.language == nullptr);
  CHECK(damaged.obstacle == LanguageObstacle::kTable);
  CHECK(damaged.file == file);
  CHECK(damaged.problem.line == 2);

  std::ofstream(file, std::ios::binary) << std::string(2 << 20, '\n');
  CHECK(FindLanguage("fr", folder.path()).obstacle == LanguageObstacle::kFile);
  CHECK(FindLanguage("it", folder.path()).obstacle == LanguageObstacle::kFile);
  for (const char* code : {"", "x", "../fr", "f.r", "a-code-of-too-many-letters"}) {
    CAPTURE(code);
    CHECK(FindLanguage(code, folder.path()).obstacle == LanguageObstacle::kCode);
  }
}
