#include "matrix/whole_pairs.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "matrix/matrix_parallel.h"
#include "stats/floating_point_scope.h"

namespace zavrel {
namespace {

// A block of deviations stays in the fastest cache, with some room for the products.
constexpr std::size_t kBlockBytes = 28 * 1024;
constexpr std::size_t kFewestBlockRows = 16;

void SetBoth(DoubleMatrix& matrix, std::size_t i, std::size_t j, double value) {
  matrix[i][j] = value;
  matrix[j][i] = value;
}

/// kGroup rows of the triangle of pairs against one or two groups of its columns.
struct Tile {
  std::size_t a;
  std::size_t b;
  std::size_t groups;  // b, and b + 1 when it is 2
  double* products;
};

class ModeratePairs {
 public:
  ModeratePairs(const WholeVariables& variables, PairForm form, const AssociationKernels& kernels)
      : variables_(variables),
        form_(form),
        kernels_(kernels),
        groups_((variables.size() + kGroup - 1) / kGroup),
        columns_(groups_ * kGroup),
        means_(groups_ * kGroup),
        deviation_sums_(groups_),
        block_rows_(std::max(kBlockBytes / (groups_ * kGroup * sizeof(double)), kFewestBlockRows) &
                    ~std::size_t{1}) {
    // The last group may be filled up with a variable that is there already.
    for (std::size_t c = 0; c < columns_.size(); ++c) {
      const ScannedVariable& variable = *variables.variables[std::min(c, variables.size() - 1)];
      columns_[c] = variable.values.data();
      means_[c] = variable.sum / static_cast<double>(variables.rows());
    }
    MakeTiles();
    MakeParts();
  }

  std::vector<VariableSummary> CalculateInto(DoubleMatrix& matrix) {
    ParallelCompute(parts_.size(), [this](std::size_t index) { AddUp(parts_[index]); });
    return Finish(matrix);
  }

 private:
  /// A share of the tiles, one after the other, for one thread. It packs what it needs itself:
  /// waiting for others takes longer.
  struct Part {
    std::span<const Tile> tiles;
    std::unique_ptr<double[]> packed;
    /// The groups whose tile on the diagonal is among them: their deviations are summed here.
    std::size_t first_diagonal;
    std::size_t end_of_diagonals;
  };

  void MakeTiles() {
    products_.resize(groups_ * (groups_ + 1) / 2 * kGroup * kGroup);
    double* products = products_.data();
    for (std::size_t a = 0; a < groups_; ++a) {
      for (std::size_t b = a; b < groups_; b += 2) {
        const std::size_t groups = std::min<std::size_t>(groups_ - b, 2);
        tiles_.push_back({a, b, groups, products});
        products += groups * kGroup * kGroup;
      }
    }
  }

  void MakeParts() {
    const std::size_t count = std::clamp<std::size_t>(tiles_.size() / 2, 1, ParallelThreads());
    for (std::size_t p = 0; p < count; ++p) {
      const std::size_t begin = tiles_.size() * p / count;
      const std::size_t end = tiles_.size() * (p + 1) / count;
      const std::size_t packed_groups = groups_ - tiles_[begin].a;
      parts_.push_back({std::span(tiles_).subspan(begin, end - begin),
                        std::make_unique<double[]>(packed_groups * block_rows_ * kGroup),
                        DiagonalsBefore(begin), DiagonalsBefore(end)});
    }
  }

  std::size_t DiagonalsBefore(std::size_t tile) const {
    return tile < tiles_.size() ? tiles_[tile].a + std::size_t{tiles_[tile].a != tiles_[tile].b}
                                : groups_;
  }

  void AddUp(const Part& part) {
    for (std::size_t row = 0; row < variables_.rows(); row += block_rows_)
      AddBlock(part, row, std::min(block_rows_, variables_.rows() - row));
  }

  void AddBlock(const Part& part, std::size_t first_row, std::size_t rows) {
    const std::size_t first_group = part.tiles.front().a;
    const auto packed = [&](std::size_t group) {
      return part.packed.get() + (group - first_group) * block_rows_ * kGroup;
    };
    for (std::size_t g = first_group; g < groups_; ++g) {
      const bool is_summed_here = part.first_diagonal <= g && g < part.end_of_diagonals;
      kernels_.pack_deviations(&columns_[g * kGroup], first_row, rows, &means_[g * kGroup],
                               packed(g), is_summed_here ? &deviation_sums_[g] : nullptr);
    }
    for (const Tile& tile : part.tiles) {
      const double* a = packed(tile.a);
      const double* b_next = tile.groups > 1 ? packed(tile.b + 1) : nullptr;
      kernels_.add_products(a, packed(tile.b), b_next, rows, tile.products);
    }
  }

  std::vector<VariableSummary> Finish(DoubleMatrix& matrix) const {
    const FloatingPointScope environment;
    std::vector<VariableSummary> summaries;
    for (std::size_t c = 0; c < variables_.size(); ++c) summaries.push_back(SummaryOf(c));
    for (const Tile& tile : tiles_) {
      const std::size_t stride = tile.groups * kGroup;
      for (std::size_t p = 0; p < kGroup * stride; ++p) {
        const std::size_t i = tile.a * kGroup + p / stride;
        const std::size_t j = tile.b * kGroup + p % stride;
        if (i > j || j >= variables_.size()) continue;
        SetBoth(matrix, variables_.places[i], variables_.places[j],
                PairValueFromSum(tile.products[p], variables_.rows(), summaries[i], summaries[j],
                                 form_));
      }
    }
    return Settled(std::move(summaries));
  }

  VariableSummary SummaryOf(std::size_t c) const {
    const std::span<const double> values = variables_.column(c);
    if (IsConstant(values)) return SummaryOfConstant(means_[c], values.size(), form_);
    const DeviationSums& sums = deviation_sums_[c / kGroup];
    const std::size_t lane = c % kGroup;
    const double s1 = sums.s1[0][lane] + sums.s1[1][lane];
    const double s2 = sums.s2[0][lane] + sums.s2[1][lane];
    return SummaryFromSums(means_[c], s1, s2, values.size(), form_);
  }

  const WholeVariables& variables_;
  PairForm form_;
  const AssociationKernels& kernels_;
  std::size_t groups_;
  std::vector<const double*> columns_;
  std::vector<double> means_;
  std::vector<DeviationSums> deviation_sums_;
  std::size_t block_rows_;  // even
  std::vector<double> products_;
  std::vector<Tile> tiles_;
  std::vector<Part> parts_;
};

}  // namespace

std::vector<VariableSummary> CalculateModeratePairs(const WholeVariables& variables, PairForm form,
                                                    const AssociationKernels& kernels,
                                                    DoubleMatrix& matrix) {
  if (variables.size() == 0) return {};
  return ModeratePairs(variables, form, kernels).CalculateInto(matrix);
}

void CalculateOtherPairs(const WholeVariables& moderate,
                         std::span<const VariableSummary> moderate_summaries,
                         const WholeVariables& others, PairForm form, DoubleMatrix& matrix) {
  std::vector<VariableSummary> summaries(others.size());
  ParallelCompute(others.size(),
                  [&](std::size_t c) { summaries[c] = Summarise(others.column(c), form); });
  ParallelCompute(others.size(), [&](std::size_t j) {
    const auto set = [&](std::span<const double> x, const VariableSummary& of_x,
                         std::size_t place) {
      SetBoth(matrix, place, others.places[j],
              PairValue(x, of_x, others.column(j), summaries[j], form));
    };
    for (std::size_t i = 0; i < moderate.size(); ++i)
      set(moderate.column(i), moderate_summaries[i], moderate.places[i]);
    for (std::size_t i = 0; i <= j; ++i) set(others.column(i), summaries[i], others.places[i]);
  });
}

}  // namespace zavrel
