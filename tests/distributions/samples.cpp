#include "distributions/samples.h"

#include <map>

#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

struct Recordings {
  std::map<std::string, std::vector<double>> samples;
  std::vector<RecordedFit> fits;
  std::vector<RecordedTest> tests;
  std::vector<RecordedTail> tails;
};

RecordedFit FitOf(const CsvLine& line) {
  RecordedFit fit{line.texts[1], line.texts[2], line.numbers[2], {}, {}};
  const auto k = static_cast<std::ptrdiff_t>(line.numbers[3]);
  const auto first = line.numbers.begin() + 4;
  fit.parameters.assign(first, first + k);
  fit.standard_errors.assign(first + k, line.numbers.end());
  return fit;
}

Recordings Read() {
  Recordings all;
  for (const CsvLine& line : CsvLines("fits.csv")) {
    const std::vector<double>& n = line.numbers;
    switch (line.kind) {
      case 's':
        all.samples[line.texts[1]] = {n.begin() + 1, n.end()};
        break;
      case 'f':
        all.fits.push_back(FitOf(line));
        break;
      case 'g':
        all.tails.push_back({n[0], n[1], n[2]});
        break;
      default:
        all.tests.push_back(
            {line.kind, line.texts[1], line.texts[2], n[2], n[3], {n.begin() + 4, n.end()}});
    }
  }
  return all;
}

const Recordings& All() {
  static const Recordings all = Read();
  return all;
}

}  // namespace

const std::vector<double>& SampleNamed(const std::string& name) { return All().samples.at(name); }
const std::vector<RecordedFit>& RecordedFits() { return All().fits; }
const std::vector<RecordedTest>& RecordedTests() { return All().tests; }
const std::vector<RecordedTail>& RecordedTails() { return All().tails; }

}  // namespace zavrel::tests
