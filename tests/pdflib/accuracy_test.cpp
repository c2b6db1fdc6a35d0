// Against values from arbitrary-precision arithmetic: data/accuracy.csv, which
// data/make_accuracy.py writes. docs/accuracy.md has the worst errors that are printed here.
#include <doctest/doctest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <vector>

#include "pdflib/library.h"
#include "support/csv_lines.h"

namespace zavrel::tests {
namespace {

struct Row {
  Distribution distribution;
  int request;
  double argument;
  double value;
  double condition;  // of the value in the argument

  std::string group() const {
    const bool below_one = distribution.a < 1 || (distribution.name == "f" && distribution.b < 1);
    const bool has_df = !distribution.discrete() && distribution.name != "normal";
    return distribution.name + (has_df && below_one ? ", df < 1" : "");
  }
  bool quantile() const { return request == PDFLIB_QUANTILE || request == PDFLIB_UPPER_QUANTILE; }
  /// How many epsilons the value may be off. A normal distribution loses nothing to its argument's
  /// condition, however far out.
  double limit() const {
    if (distribution.discrete()) return quantile() ? 0 : 16;
    return distribution.name == "normal" ? 4 : 4 + condition;
  }
};

std::vector<Row> Rows() {
  std::vector<Row> rows;
  for (const auto& [kind, texts, n] : CsvLines("accuracy.csv")) {
    REQUIRE(texts.size() == 7);
    if (texts[0] == "distribution") continue;
    const double b = texts[2].empty() ? 0 : n[1];
    rows.push_back({{texts[0], n[0], b}, static_cast<int>(n[2]), n[3], n[4], n[5]});
  }
  return rows;
}

}  // namespace

TEST_CASE("values agree with arbitrary-precision arithmetic, at the centre and far out") {
  std::map<std::string, int> seen;
  struct Worst {
    double epsilons = 0;
    double share = 0;  // of the limit
  };
  std::map<std::string, std::map<int, Worst>> worst;  // by group and request
  for (const Row& row : Rows()) {
    const Distribution& distribution = row.distribution;
    INFO("name = ", distribution.name, ", a = ", distribution.a, ", b = ", distribution.b,
         ", request = ", row.request, ", argument = ", row.argument);
    const Reply reply = Ask(distribution, row.request, row.argument);
    CHECK(reply.code == PDFLIB_OK);
    const double off = std::fabs(reply.results[0] - row.value);
    CHECK(off <= row.limit() * kEpsilon * std::fabs(row.value));
    ++seen[row.group()];
    Worst& most = worst[row.group()][row.request];
    if (off == 0) continue;
    const double epsilons = off / std::fabs(row.value) / kEpsilon;
    most.epsilons = std::max(most.epsilons, epsilons);
    most.share = std::max(most.share, epsilons / row.limit());
  }
  CHECK(seen.size() == 8);
  for (const auto& [name, count] : seen) CHECK_MESSAGE(count >= 50, name);
  std::ostringstream table;
  table.precision(2);
  for (const auto& [name, requests] : worst) {
    table << '\n' << name << ':';
    for (const auto& [request, most] : requests)
      table << ' ' << request << "=" << most.epsilons << " (" << 100 * most.share << " %)";
  }
  MESSAGE("worst errors in epsilons (part of the limit), by request:", table.str());
}

}  // namespace zavrel::tests
