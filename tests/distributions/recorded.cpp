#include "distributions/recorded.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

void AddValues(Recorded& recorded, const std::vector<double>& n) {
  for (std::size_t i = 0; i < 3; ++i) {
    if (!std::isnan(n[1 + i]))
      recorded.values.push_back({static_cast<Measure>(i), n[0], n[1 + i], n[4 + i]});
  }
}

void Read(const std::string& file_name, std::vector<Recorded>& all) {
  for (const auto& [kind, texts, numbers] : CsvLines(file_name)) {
    switch (kind) {
      case '=':
        all.push_back({.description = DistLib::FindDistribution(texts[1]),
                       .name = texts[1],
                       .parameters = {numbers.begin() + 1, numbers.end()},
                       .values = {},
                       .moments = {}});
        break;
      case 'v':
        AddValues(all.back(), numbers);
        break;
      case 'q':
      case 'u':
        all.back().values.push_back({kind == 'q' ? Measure::kQuantile : Measure::kUpperQuantile,
                                     numbers[0], numbers[1], numbers[2]});
        break;
      case 'm':
        all.back().moments = numbers;
        break;
      default:
        throw std::runtime_error("unknown line in " + file_name);
    }
  }
}

/// In the order of the files' names.
std::vector<Recorded> ReadRecorded() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(ZAVREL_TEST_DATA "/accuracy"))
    names.push_back("accuracy/" + entry.path().filename().string());
  std::ranges::sort(names);
  std::vector<Recorded> all;
  for (const std::string& name : names) Read(name, all);
  return all;
}

}  // namespace

std::string Recorded::Text() const {
  std::ostringstream text;
  text << name << '(';
  for (std::size_t i = 0; i < parameters.size(); ++i) text << (i > 0 ? ", " : "") << parameters[i];
  text << ')';
  return text.str();
}

const std::vector<Recorded>& AllRecorded() {
  static const std::vector<Recorded> all = ReadRecorded();
  return all;
}

double Evaluate(const DistLib::PdfDist& distribution, Measure measure, double argument) {
  switch (measure) {
    case Measure::kDensity:
      return distribution.Density(argument);
    case Measure::kCumulative:
      return distribution.Cumulative(argument);
    case Measure::kUpperTail:
      return distribution.UpperTail(argument);
    case Measure::kQuantile:
      return distribution.Quantile(argument);
    default:
      return distribution.UpperQuantile(argument);
  }
}

}  // namespace zavrel::tests
