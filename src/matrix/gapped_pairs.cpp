#include "matrix/gapped_pairs.h"

#include <algorithm>
#include <array>

#include "matrix/association_kernels.h"
#include "matrix/matrix_parallel.h"
#include "matrix/ranks.h"
#include "numbers/error_double.h"
#include "platform/parallel.h"

namespace zavrel {
namespace {

constexpr std::size_t kBlockRows = 256;  // 16 KiB of packed columns
constexpr std::size_t kPartners = 16;    // how many partners use a packed block

struct Variable {
  const ScannedVariable* scanned;
  std::size_t place;  // its row and column in the result

  std::size_t rows() const { return scanned->values.size(); }
};

/// A group of one or more variables, with some partners that have gaps. The unit contains the pair
/// of a variable and a partner if the variable does not come after the partner.
struct Unit {
  std::span<const Variable> group;
  std::span<const Variable> partners;
};

bool BothPresent(const ScannedVariable& x, const ScannedVariable& y, std::size_t row) {
  return x.values[row] != kMissingValue && y.values[row] != kMissingValue;
}

/// Whether the values of x are all equal where y also has a value. Most searches end at the second
/// row.
bool IsConstantInPair(const ScannedVariable& x, const ScannedVariable& y) {
  const std::size_t rows = std::min(x.values.size(), y.values.size());
  std::size_t row = 0;
  while (row < rows && !BothPresent(x, y, row)) ++row;
  if (row == rows) return true;
  const double first = x.values[row];
  for (; row < rows; ++row) {
    if (x.values[row] != first && BothPresent(x, y, row)) return false;
  }
  return true;
}

/// `y` has gaps.
std::size_t CommonObservations(const ScannedVariable& x, const ScannedVariable& y) {
  return CountCommonBits(x.has_gaps() ? x.present : y.present, y.present);
}

/// The sums of one unit.
class UnitSums {
 public:
  UnitSums(const Unit& unit, PairOptions options) : unit_(unit), options_(options) {}

  void CalculateInto(DoubleMatrix& matrix) {
    EachBlock(AddGappedValues);
    EachPair([this](std::size_t p, std::size_t lane) { FindMeans(p, lane); });
    EachBlock(AddGappedDeviations);
    EachPair([&](std::size_t p, std::size_t lane) {
      SetBoth(matrix, unit_.group[lane].place, unit_.partners[p].place, Value(p, lane));
    });
  }

 private:
  /// How many variables of the group do not come after the partner.
  std::size_t PairsOf(std::size_t p) const {
    const auto from_first = static_cast<std::size_t>(&unit_.partners[p] - unit_.group.data());
    return std::min(unit_.group.size(), from_first + 1);
  }

  template <class Body>
  void EachPair(Body body) {
    for (std::size_t p = 0; p < unit_.partners.size(); ++p) {
      for (std::size_t lane = 0; lane < PairsOf(p); ++lane) body(p, lane);
    }
  }

  void EachBlock(decltype(AddGappedValues) add) {
    std::size_t all_rows = 0;
    for (const Variable& y : unit_.partners) all_rows = std::max(all_rows, y.rows());
    for (std::size_t first = 0; first < all_rows; first += kBlockRows) {
      const std::size_t rows = std::min(kBlockRows, all_rows - first);
      Pack(first, rows);
      const double* partners[kPartners];
      for (std::size_t p = 0; p < unit_.partners.size(); ++p)
        partners[p] = Part(unit_.partners[p].scanned->values, first, rows, endings_[kLanes + p]);
      const std::size_t last = unit_.partners.size() - 1;
      add({packed_.data(), PairsOf(last), partners, last + 1, rows, kMissingValue}, sums_.data());
    }
  }

  void Pack(std::size_t first, std::size_t rows) {
    constexpr double kNoMeans[kGroup] = {};
    const double* columns[kLanes];
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const VariableColumn x =
          lane < unit_.group.size() ? unit_.group[lane].scanned->values : VariableColumn();
      columns[lane] = Part(x, first, rows, endings_[lane]);
    }
    for (std::size_t lane = 0; lane < kLanes; lane += kGroup)
      PackDeviations(columns + lane, rows, kNoMeans, {packed_.data() + lane, kLanes});
  }

  using BlockOfColumn = std::array<double, kBlockRows>;

  /// Some rows of a column; of one that ends before them, a copy with missing values at its end.
  static const double* Part(VariableColumn column, std::size_t first, std::size_t rows,
                            BlockOfColumn& copy) {
    const std::size_t there = column.size() > first ? std::min(rows, column.size() - first) : 0;
    if (there == rows) return column.data() + first;
    const auto begin = column.end() - static_cast<std::ptrdiff_t>(there);
    std::fill(std::copy(begin, column.end(), copy.begin()), copy.end(), kMissingValue);
    return copy.data();
  }

  void FindMeans(std::size_t p, std::size_t lane) {
    counts_[p][lane] = CommonObservations(*unit_.group[lane].scanned, *unit_.partners[p].scanned);
    if (counts_[p][lane] == 0) return;
    const auto n = static_cast<double>(counts_[p][lane]);
    sums_[p].mean_x[lane] = sums_[p].sum_x[lane] / n;
    sums_[p].mean_y[lane] = sums_[p].sum_y[lane] / n;
  }

  double Value(std::size_t p, std::size_t lane) const {
    const ScannedVariable& x = *unit_.group[lane].scanned;
    const ScannedVariable& y = *unit_.partners[p].scanned;
    const GappedPairs& sums = sums_[p];
    const std::size_t n = counts_[p][lane];
    const VariableSummary of_x = SummaryFromSums(
        sums.mean_x[lane], sums.s1_x[lane], sums.s2_x[lane], n, IsConstantInPair(x, y), options_);
    const VariableSummary of_y = SummaryFromSums(
        sums.mean_y[lane], sums.s1_y[lane], sums.s2_y[lane], n, IsConstantInPair(y, x), options_);
    return PairValueFromSum(sums.products[lane], n, of_x, of_y, options_);
  }

  const Unit& unit_;
  PairOptions options_;
  std::array<GappedPairs, kPartners> sums_{};
  std::array<std::array<std::size_t, kLanes>, kPartners> counts_{};
  std::array<double, kBlockRows * kLanes> packed_;
  std::array<BlockOfColumn, kLanes + kPartners> endings_;
};

/// The variables without gaps, then those with gaps, and the units of all pairs with gaps.
std::vector<Variable> WholeFirst(std::span<const ScannedVariable> variables) {
  std::vector<Variable> order;
  for (const bool gaps : {false, true}) {
    for (std::size_t c = 0; c < variables.size(); ++c) {
      if (variables[c].is_moderate && variables[c].has_gaps() == gaps)
        order.push_back({&variables[c], c});
    }
  }
  return order;
}

std::vector<Unit> UnitsOf(std::span<const Variable> order) {
  const auto first_gapped = static_cast<std::size_t>(
      std::find_if(order.begin(), order.end(),
                   [](const Variable& v) { return v.scanned->has_gaps(); }) -
      order.begin());
  std::vector<Unit> units;
  for (std::size_t g = 0; g < order.size(); g += kLanes) {
    const auto group = order.subspan(g, std::min(kLanes, order.size() - g));
    for (std::size_t p = std::max(g, first_gapped); p < order.size(); p += kPartners)
      units.push_back({group, order.subspan(p, std::min(kPartners, order.size() - p))});
  }
  return units;
}

}  // namespace

bool CalculateModerateGappedPairs(std::span<const ScannedVariable> variables, PairOptions options,
                                  DoubleMatrix& matrix) {
  const std::vector<Variable> order = WholeFirst(variables);
  const std::vector<Unit> units = UnitsOf(order);
  return ParallelCompute(units.size(), [&](std::size_t index) {
    UnitSums(units[index], options).CalculateInto(matrix);
  });
}

namespace {

struct Pair {
  std::size_t i;
  std::size_t j;
};

/// The working memory of one thread, which processes pairs one after the other.
class CompactedPair {
 public:
  explicit CompactedPair(std::size_t most_rows)
      : x_(most_rows), y_(most_rows), present_(most_rows / 64 + 1) {}

  double Value(const ScannedVariable& x, const ScannedVariable& y, PairOptions options) {
    MarkPresent(x, y);
    std::copy(x.values.begin(), x.values.end(), x_.begin());
    std::copy(y.values.begin(), y.values.end(), y_.begin());
    return ValueOfPresent(options);
  }

  double RankValue(const ScannedVariable& x, std::span<const std::uint32_t> order_x,
                   const ScannedVariable& y, std::span<const std::uint32_t> order_y,
                   PairOptions options) {
    MarkPresent(x, y);
    RankPresentInto(order_x, present_, x_);
    RankPresentInto(order_y, present_, y_);
    return ValueOfPresent(options);
  }

 private:
  void MarkPresent(const ScannedVariable& x, const ScannedVariable& y) {
    for (std::size_t w = 0; w < present_.size(); ++w) {
      present_[w] = (x.has_gaps() ? x.present[w] : ~std::uint64_t{0}) &
                    (y.has_gaps() ? y.present[w] : ~std::uint64_t{0});
    }
  }

  double ValueOfPresent(PairOptions options) {
    std::size_t n = 0;
    for (std::size_t row = 0; row < x_.size(); ++row) {
      x_[n] = x_[row];
      y_[n] = y_[row];
      n += std::size_t{IsSet(present_, row)};
    }
    const std::span<const double> x = std::span(x_).first(n);
    const std::span<const double> y = std::span(y_).first(n);
    return PairValue(x, Summarise(x, options), y, Summarise(y, options), options);
  }

  std::vector<double> x_;
  std::vector<double> y_;
  ObservationBits present_;
};

}  // namespace

void CalculateCompactedPairs(std::span<const ScannedVariable> variables,
                             std::span<const BlockArray<std::uint32_t>> orders,
                             bool immoderate_only, PairOptions options, DoubleMatrix& matrix) {
  std::vector<Pair> pairs;
  std::size_t most_rows = 0;
  for (std::size_t j = 0; j < variables.size(); ++j) {
    most_rows = std::max(most_rows, variables[j].values.size());
    for (std::size_t i = 0; i <= j; ++i) {
      const bool has_gaps = variables[i].has_gaps() || variables[j].has_gaps();
      const bool is_moderate = variables[i].is_moderate && variables[j].is_moderate;
      if (has_gaps && !(immoderate_only && is_moderate)) pairs.push_back({i, j});
    }
  }
  const std::size_t parts = std::min(pairs.size(), ParallelThreads());
  std::vector<CompactedPair> scratch(parts, CompactedPair(parts > 0 ? most_rows : 0));
  ParallelCompute(parts, [&](std::size_t part) {
    for (std::size_t p = part; p < pairs.size(); p += parts) {
      const auto [i, j] = pairs[p];
      const double value =
          orders.empty() ? scratch[part].Value(variables[i], variables[j], options)
                         : scratch[part].RankValue(variables[i], orders[i].elements(), variables[j],
                                                   orders[j].elements(), options);
      SetBoth(matrix, i, j, value);
    }
  });
}

}  // namespace zavrel
