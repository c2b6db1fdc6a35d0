#pragma once
// The recorded tables: a kind, or a name, and numbers in each line, divided by commas.

#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zavrel::tests {

struct CsvLine {
  char kind;                       // what the first text begins with
  std::vector<std::string> texts;  // all of them
  std::vector<double> numbers;     // behind the first; not-a-numbers where nothing stands
};

inline std::vector<CsvLine> CsvLines(const std::string& name) {
  std::ifstream file(ZAVREL_TEST_DATA "/" + name);
  if (!file) throw std::runtime_error(name + " cannot be read");
  std::vector<CsvLine> lines;
  for (std::string text; std::getline(file, text);) {
    CsvLine& line = lines.emplace_back(CsvLine{text.at(0), {}, {}});
    std::istringstream fields(text + ',');
    for (std::string field; std::getline(fields, field, ',');) {
      line.texts.push_back(field);
      if (line.texts.size() > 1)
        line.numbers.push_back(field.empty() ? std::numeric_limits<double>::quiet_NaN()
                                             : std::strtod(field.c_str(), nullptr));
    }
  }
  return lines;
}

}  // namespace zavrel::tests
