// What every language's texts must keep to, whatever they say.

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "contracts/message_ids.h"
#include "messages/text_files.h"

namespace {

namespace ids = zavrel::messages;

constexpr std::size_t kMaximumLength =
    253;  // Excel's limit is 255, and an argument help gets two spaces

/// The add-in's functions as its data file has them.
std::vector<nlohmann::json> Functions() {
  std::ifstream file(ZAVREL_SOURCE_DIR "/src/functions/functions.json");
  std::vector<nlohmann::json> functions;
  const nlohmann::json data = nlohmann::json::parse(file);
  for (const auto& table : data.at("tables")) {
    for (const auto& function : table.at("functions")) functions.push_back(function);
  }
  return functions;
}

/// The message ids in a field of a function, which may hold one text or several.
std::vector<std::uint32_t> Ids(const nlohmann::json& function, const char* field) {
  std::vector<std::uint32_t> ids;
  const auto texts = function.value(field, nlohmann::json());
  for (const auto& text : texts) {
    if (text.is_number()) ids.push_back(text);
  }
  return ids;
}

std::set<std::uint32_t> AllIds(std::initializer_list<const char*> fields) {
  std::set<std::uint32_t> all;
  for (const auto& function : Functions()) {
    for (const char* field : fields) {
      for (const std::uint32_t id : Ids(function, field)) all.insert(id);
    }
  }
  return all;
}

std::set<std::uint32_t> RequiredIds() {
  std::set<std::uint32_t> required = AllIds({"argument_text", "help", "argument_helps"});
  constexpr std::uint32_t kRanges[][2] = {{400, 411}, {2400, 2402}, {2500, 2547}, {2600, 2606}};
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
  const std::set<std::uint32_t> helps = AllIds({"help", "argument_helps"});
  const std::set<std::uint32_t> argument_texts = AllIds({"argument_text"});
  for (const TextFile& file : TextFiles()) {
    for (const auto& [id, text] : file.utf8) {
      INFO("name = ", file.name, ", id = ", id, ", text = ", text);
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
    for (const auto& function : Functions()) {
      for (const std::uint32_t id : Ids(function, "argument_text")) {
        CAPTURE(id);
        const std::ptrdiff_t names = count(id);
        CHECK(names == CountNames(English().utf8.at(id)));
        const auto helps = Ids(function, "argument_helps");
        if (!helps.empty() && function["argument_helps"].back() != "...") {
          CHECK(names == static_cast<std::ptrdiff_t>(helps.size()));
        }
      }
    }
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
