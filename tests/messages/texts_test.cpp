// What every language's texts must keep to, whatever they say.

#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "contracts/message_ids.h"
#include "messages/text_files.h"

namespace {

namespace ids = zavrel::messages;

constexpr std::size_t kMaximumLength = 254;  // Excel's limit is 255

/// Argument text, function helps that go with it, first and last argument help. Rows without helps
/// of arguments, and those whose last help repeats, have a first help of 0.
struct Wizard {
  std::uint32_t argument_text;
  std::vector<std::uint32_t> function_helps;
  std::uint32_t first_help;
  std::uint32_t last_help;
};

std::vector<Wizard> Rows() {
  std::vector<Wizard> rows = {{1548, {1544, 1545, 1546}, 1547, 1547}};
  // Most rows' texts follow each other: argument text, help, and helps of arguments up to a last.
  const std::pair<std::uint32_t, std::uint32_t> following[] = {
      {1066, 1072}, {1073, 1075}, {1076, 1079}, {1080, 0},    {1082, 0},    {1084, 0},
      {1086, 0},    {1088, 0},    {1090, 0},    {1092, 1094}, {1095, 1098}, {1099, 1103},
      {1104, 1108}, {1109, 1112}, {1132, 1138}, {1139, 1142}, {1143, 1145}, {1157, 1164},
      {1169, 1173}, {1193, 1197}, {1198, 1202}, {1203, 1208}, {1209, 1213}, {1214, 1218},
      {1219, 1224}, {1225, 1230}, {1231, 1235}, {1236, 1238}, {1240, 1242}, {1243, 1245},
      {1246, 1249}, {1250, 1253}, {1254, 1257}, {1258, 1261}, {1263, 1267}, {1304, 1307},
      {1308, 1313}, {1376, 1379}, {1594, 0}};
  for (const auto& [text, last] : following)
    rows.push_back({text, {text + 1}, last == 0 ? 0 : text + 2, last});
  // The statistics of up to 30 values, and the matrices of up to 27 variables.
  Wizard values = {1113, {1114}, 0, 0};
  for (std::uint32_t id = 1116; id <= 1131; ++id) values.function_helps.push_back(id);
  for (std::uint32_t id = 1146; id <= 1153; ++id) values.function_helps.push_back(id);
  rows.push_back(values);
  rows.push_back({1550, {1549, 1555}, 0, 0});
  // Pairs of variables share one argument text.
  for (const std::uint32_t help : {1154u, 1166u, 1174u, 1177u, 1180u, 1183u, 1186u}) {
    rows.push_back({1165, {help}, help + 1, help + 2});
  }
  for (std::uint32_t id = 1268; id <= 1280; id += 4) rows.push_back({id, {id + 1}, id + 2, id + 3});
  for (std::uint32_t id = 1284; id <= 1299; id += 5) rows.push_back({id, {id + 1}, id + 2, id + 4});
  for (std::uint32_t id = 1314; id <= 1326; id += 4) rows.push_back({id, {id + 1}, id + 2, id + 3});
  return rows;
}

std::set<std::uint32_t> HelpIds() {
  // These stand outside the pattern of the rows.
  std::set<std::uint32_t> helps = {1115, 1190, 1191, 1192, 1239, 1262,
                                   1346, 1551, 1552, 1553, 1554};
  for (const Wizard& row : Rows()) {
    helps.insert(row.function_helps.begin(), row.function_helps.end());
    for (std::uint32_t id = row.first_help; id != 0 && id <= row.last_help; ++id) helps.insert(id);
  }
  return helps;
}

std::set<std::uint32_t> ArgumentTextIds() {
  std::set<std::uint32_t> texts = {1189};
  for (const Wizard& row : Rows()) texts.insert(row.argument_text);
  return texts;
}

std::set<std::uint32_t> RequiredIds() {
  std::set<std::uint32_t> required;
  constexpr std::array<std::array<std::uint32_t, 2>, 9> kRanges = {{{400, 411},
                                                                    {1066, 1329},
                                                                    {1346, 1346},
                                                                    {1376, 1379},
                                                                    {1544, 1555},
                                                                    {1594, 1595},
                                                                    {2400, 2402},
                                                                    {2500, 2547},
                                                                    {2600, 2606}}};
  for (const auto& [first, last] : kRanges) {
    for (std::uint32_t id = first; id <= last; ++id) required.insert(id);
  }
  return required;
}

/// The numbers of the placeholders; -1 stands for a brace that is none.
std::multiset<int> Placeholders(const std::string& text) {
  std::multiset<int> found;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '}') found.insert(-1);
    if (text[i] != '{') continue;
    const bool valid =
        i + 2 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9' && text[i + 2] == '}';
    found.insert(valid ? text[i + 1] - '0' : -1);
    if (valid) i += 2;
  }
  return found;
}

bool EndsWithStop(const std::string& text) { return !text.empty() && text.back() == '.'; }

std::ptrdiff_t CountNames(const std::string& argument_text) {
  return std::count(argument_text.begin(), argument_text.end(), ',') + 1;
}

const TextFile& Language(const std::string& name) {
  const auto found = std::ranges::find(TextFiles(), name, &TextFile::name);
  REQUIRE(found != TextFiles().end());
  return *found;
}
const TextFile& English() { return Language("en"); }
const TextFile& German() { return Language("de"); }

}  // namespace

TEST_CASE("every language has a text for every id that is used, and no other") {
  CHECK(English().language_id == 9);
  CHECK(German().language_id == 7);
  const std::set<std::uint32_t> required = RequiredIds();
  for (const TextFile& file : TextFiles()) {
    for (const std::uint32_t id : required) {
      CHECK_MESSAGE(file.utf8.contains(id), file.name, ".txt: text ", id, " is missing");
    }
    for (const auto& [id, text] : file.utf8) {
      CHECK_MESSAGE(required.contains(id), file.name, ".txt: text ", id, " is needless");
    }
  }
}

TEST_CASE("texts fit Excel's limit, and their form tells what they are") {
  const std::set<std::uint32_t> helps = HelpIds();
  const std::set<std::uint32_t> argument_texts = ArgumentTextIds();
  for (const TextFile& file : TextFiles()) {
    for (const auto& [id, text] : file.utf8) {
      CAPTURE(file.name);
      CAPTURE(id);
      CAPTURE(text);
      CHECK(file.Text(id).size() <= kMaximumLength);
      CHECK(text.find("  ") == std::string::npos);
      CHECK(text.front() != ' ');
      CHECK(text.back() != ' ');
      if (id < 1066 || id > 1595) continue;
      CHECK(helps.contains(id) != argument_texts.contains(id));
      if (helps.contains(id)) {
        CHECK(EndsWithStop(text));
      } else {
        CHECK((!EndsWithStop(text) || text.ends_with(", ...")));
      }
    }
  }
}

TEST_CASE("an argument text names as many arguments as have a help, in every language") {
  for (const TextFile& file : TextFiles()) {
    CAPTURE(file.name);
    const auto count = [&](std::uint32_t id) {
      const auto found = file.utf8.find(id);  // a missing text is named above
      return found == file.utf8.end() ? CountNames(English().utf8.at(id))
                                      : CountNames(found->second);
    };
    for (const Wizard& row : Rows()) {
      CAPTURE(row.argument_text);
      const std::ptrdiff_t names = count(row.argument_text);
      CHECK(names == CountNames(English().utf8.at(row.argument_text)));
      if (row.first_help != 0) CHECK(names == row.last_help - row.first_help + 1);
    }
    CHECK(count(1189) == 3);
  }
}

TEST_CASE("placeholders stand only in messages, count from 1 and agree between the languages") {
  for (const TextFile& file : TextFiles()) {
    CAPTURE(file.name);
    for (const auto& [id, text] : file.utf8) {
      CAPTURE(text);
      const std::multiset<int> placeholders = Placeholders(text);
      if (const auto english = English().utf8.find(id); english != English().utf8.end()) {
        CHECK(placeholders == Placeholders(english->second));
      }
      if (id < 2400) CHECK(placeholders.empty());
      int expected = 1;
      for (const int number : placeholders) CHECK(number == expected++);
    }
  }
}

TEST_CASE("German texts use the names of German Excel") {
  for (const auto& [id, text] : German().utf8) {
    CAPTURE(text);
    for (const char* english : {"#VALUE!", "#N/A", "#NUM!", "#REF!", "TRUE", "FALSE"}) {
      CHECK(text.find(english) == std::string::npos);
    }
  }
  CHECK(German().Text(1123).starts_with(u"W\u00F6lbung"));
}

TEST_CASE("messages that companions compare are as agreed") {
  for (const auto& [id, text] : {
           std::pair{ids::kMessageTitle, "Zavrel Functions"},
           {ids::kMessageArrayNotTwoDimensional, "VB array is not 2-dimensional"},
           {ids::kMessageMatrixNotSquare, "Matrix is ({1} x {2}), not square."},
           {ids::kMessageMatrixNotSymmetric,
            "Matrix is symmetric at element ({1}, {2}) ({3} vs {4})."},
           {ids::kMessageEigenInvalidValues,
            "Eigenvalues could not be calculated; matrix had invalid values."},
           {ids::kMessageEigenNoConvergence,
            "Eigenvalues could not be calculated; convergence failed."},
           {ids::kMessageDllLoadError, "Could not load {1}."},
           {ids::kMessageFunctionNotFound, "The function {1} could not be found in {2}"},
       })
    CHECK(English().utf8.at(static_cast<std::uint32_t>(id)) == text);
}
