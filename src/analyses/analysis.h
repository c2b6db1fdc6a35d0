#pragma once
// The analyses: what each needs, and how it builds its sheet.

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analyses/report_sheet.h"
#include "analyses/texts.h"

namespace zavrel::analyses {

/// A numeric column.
struct Variable {
  std::string name;
  Area values;
  std::size_t numbers = 0;  // cells that hold one
};

/// A column that divides the rows into groups.
struct Grouping {
  std::string name;
  Area values;
  std::vector<std::string> categories;  // as ZavCategoryNames orders them
};

/// What an analysis is given: columns of equal length, the language of its texts, and the names
/// that sheets have already, in lower case.
struct Data {
  std::vector<Variable> variables;
  std::optional<Grouping> grouping;
  Language language = Language::kEnglish;
  std::set<std::u16string> taken_names = {};
};

enum class Groups { kNone, kOptional, kTwo, kSeveral };

struct Analysis {
  std::string_view name;   // on the command line: "box-plots"
  std::string_view title;  // for people: "Box plots"
  std::string_view about;
  std::size_t least_variables = 1;
  std::size_t most_variables = 16;
  std::size_t least_numbers = 2;  // of each variable
  Groups groups = Groups::kNone;
  bool of_distributions = false;  // its functions are those of the second add-in
  ReportSheet (*build)(const Data& data) = nullptr;
};

/// All of them, in the order of a menu.
std::span<const Analysis> AllAnalyses();
/// Null if none has the name.
const Analysis* FindAnalysis(std::string_view name);

/// The analysis of the data. Throws DataProblem if it cannot be made of them.
ReportSheet MakeSheet(const Analysis& analysis, const Data& data);

}  // namespace zavrel::analyses
