#pragma once
// The recorded tables: a kind and numbers in each line, divided by commas.

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zavrel::tests {

struct CsvLine {
  char kind;
  std::vector<double> numbers;
};

inline std::vector<CsvLine> CsvLines(const std::string& name) {
  std::ifstream file(ZAVREL_TEST_DATA "/" + name);
  if (!file) throw std::runtime_error(name + " cannot be read");
  std::vector<CsvLine> lines;
  for (std::string text; std::getline(file, text);) {
    CsvLine& line = lines.emplace_back(CsvLine{text.at(0), {}});
    std::istringstream fields(text.substr(2));
    for (std::string field; std::getline(fields, field, ',');)
      line.numbers.push_back(std::strtod(field.c_str(), nullptr));
  }
  return lines;
}

}  // namespace zavrel::tests
