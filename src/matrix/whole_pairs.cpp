#include "matrix/whole_pairs.h"

#include <algorithm>
#include <utility>

#include "matrix/dense_storage.h"
#include "matrix/matrix_parallel.h"
#include "numbers/floating_point_scope.h"

namespace zavrel {
namespace {

// A block of deviations and its original values fit into the fastest cache together.
constexpr std::size_t kBlockBytes = std::size_t{18} << 10;
constexpr std::size_t kFewestBlockRows = 16;
constexpr std::size_t kBlockRowsStep = 8;  // whole cache lines of every column

/// A group of columns, `a`, with some groups from itself on, starting at `b`.
struct Tile {
  std::size_t a;
  std::size_t b;
  std::size_t groups;
};

/// Column 0 holds ones, so its products with the other columns are the sums of their deviations.
/// The variables follow; columns of ones complete the last group.
class PairProducts {
 public:
  PairProducts(const WholeVariables& variables, PairOptions options,
               const AssociationKernels& kernels)
      : variables_(variables),
        options_(options),
        kernels_(kernels),
        groups_(variables.size() / kGroup + 1),
        stride_(groups_ * kGroup),
        block_rows_(std::max(kBlockBytes / (stride_ * sizeof(double)), kFewestBlockRows) /
                    kBlockRowsStep * kBlockRowsStep),
        ones_(block_rows_, 1.0),
        columns_(stride_, {ones_.data(), 0}),
        means_(stride_),
        sums_({stride_, stride_}) {
    std::fill_n(sums_.data(), stride_ * stride_, 0.0);
    for (std::size_t c = 0; c < variables.size(); ++c) {
      columns_[c + 1] = {variables.column(c).data(), 1};
      means_[c + 1] = variables.variables[c]->sum / static_cast<double>(variables.rows());
    }
    MakeTiles();
    MakeParts();
  }

  ModeratePairs CalculateInto(DoubleMatrix& matrix) {
    const bool left_normal_range =
        ParallelCompute(parts_.size(), [this](std::size_t index) { AddUp(parts_[index]); });
    ModeratePairs pairs = Finish(matrix);
    pairs.left_normal_range |= left_normal_range;
    return pairs;
  }

 private:
  struct Column {
    const double* values;
    std::size_t step;  // 1, or 0 if it is the same in all blocks

    const double* From(std::size_t row) const { return values + row * step; }
  };

  /// Processes one thread's share of the tiles, one after the other. It packs all its data itself,
  /// since waiting for other threads would take longer.
  struct Part {
    std::span<const Tile> tiles;
    dense::Storage packed;
  };

  void MakeTiles() {
    for (std::size_t a = 0; a < groups_; ++a) {
      for (std::size_t b = a; b < groups_; b += tiles_.back().groups) {
        const std::size_t left = groups_ - b;
        // Takes three if one would be left over, since a tile of one group waits for its own sums.
        tiles_.push_back({a, b, left % 2 == 1 && left > 1 ? 3 : std::min<std::size_t>(left, 2)});
      }
    }
  }

  void MakeParts() {
    const std::size_t all = groups_ * (groups_ + 1) / 2;
    const std::size_t count = std::clamp<std::size_t>(tiles_.size() / 2, 1, ParallelThreads());
    std::size_t begin = 0;
    std::size_t done = 0;
    for (std::size_t p = 0; p < count; ++p) {
      // The first parts pack the most, so they get less than their share of the tiles.
      std::size_t end = begin;
      while (end < tiles_.size() && done + tiles_[end].groups <= all * (p + 1) / count)
        done += tiles_[end++].groups;
      if (begin == end) continue;
      parts_.push_back({std::span(tiles_).subspan(begin, end - begin),
                        dense::Storage({groups_ - tiles_[begin].a, block_rows_ * kGroup})});
      begin = end;
    }
  }

  void AddUp(Part& part) {
    for (std::size_t row = 0; row < variables_.rows(); row += block_rows_)
      AddBlock(part, row, std::min(block_rows_, variables_.rows() - row));
  }

  void AddBlock(Part& part, std::size_t first_row, std::size_t rows) {
    const std::size_t first_group = part.tiles.front().a;
    const auto packed = [&](std::size_t group) {
      return part.packed.data() + (group - first_group) * block_rows_ * kGroup;
    };
    for (std::size_t g = first_group; g < groups_; ++g) {
      const double* columns[kGroup];
      for (std::size_t lane = 0; lane < kGroup; ++lane)
        columns[lane] = columns_[g * kGroup + lane].From(first_row);
      kernels_.pack_deviations(columns, rows, &means_[g * kGroup], packed(g));
    }
    for (const Tile& tile : part.tiles) {
      const double* b[kMostGroups];
      for (std::size_t g = 0; g < tile.groups; ++g) b[g] = packed(tile.b + g);
      kernels_.add_products[tile.groups - 1](
          packed(tile.a), b, rows, sums_.data() + (tile.a * stride_ + tile.b) * kGroup, stride_);
    }
  }

  ModeratePairs Finish(DoubleMatrix& matrix) const {
    const FloatingPointScope environment;
    std::vector<VariableSummary> summaries;
    summaries.reserve(variables_.size());
    for (std::size_t c = 0; c < variables_.size(); ++c) summaries.push_back(SummaryOf(c));
    for (std::size_t i = 0; i < variables_.size(); ++i) {
      for (std::size_t j = i; j < variables_.size(); ++j) {
        const double value = PairValueFromSum(SumOf(i + 1, j + 1), variables_.rows(), summaries[i],
                                              summaries[j], options_);
        SetBoth(matrix, variables_.places[i], variables_.places[j], value);
      }
    }
    summaries = Settled(std::move(summaries));
    return {std::move(summaries), environment.LeftNormalRange()};
  }

  VariableSummary SummaryOf(std::size_t c) const {
    const std::span<const double> values = variables_.column(c);
    return SummaryFromSums(means_[c + 1], SumOf(0, c + 1), SumOf(c + 1, c + 1), values.size(),
                           IsConstant(values), options_);
  }

  /// The index of the products of two columns, i <= j.
  double SumOf(std::size_t i, std::size_t j) const { return sums_.data()[i * stride_ + j]; }

  const WholeVariables& variables_;
  PairOptions options_;
  const AssociationKernels& kernels_;
  std::size_t groups_;
  std::size_t stride_;
  std::size_t block_rows_;
  std::vector<double> ones_;
  std::vector<Column> columns_;
  std::vector<double> means_;
  dense::Storage sums_;
  std::vector<Tile> tiles_;
  std::vector<Part> parts_;
};

}  // namespace

ModeratePairs CalculateModeratePairs(const WholeVariables& variables, PairOptions options,
                                     const AssociationKernels& kernels, DoubleMatrix& matrix) {
  if (variables.size() == 0) return {};
  return PairProducts(variables, options, kernels).CalculateInto(matrix);
}

void CalculateOtherPairs(const WholeVariables& moderate,
                         std::span<const VariableSummary> moderate_summaries,
                         const WholeVariables& others, PairOptions options, DoubleMatrix& matrix) {
  std::vector<VariableSummary> summaries(others.size());
  ParallelCompute(others.size(),
                  [&](std::size_t c) { summaries[c] = Summarise(others.column(c), options); });
  ParallelCompute(others.size(), [&](std::size_t j) {
    const auto set = [&](std::span<const double> x, const VariableSummary& of_x,
                         std::size_t place) {
      SetBoth(matrix, place, others.places[j],
              PairValue(x, of_x, others.column(j), summaries[j], options));
    };
    for (std::size_t i = 0; i < moderate.size(); ++i)
      set(moderate.column(i), moderate_summaries[i], moderate.places[i]);
    for (std::size_t i = 0; i <= j; ++i) set(others.column(i), summaries[i], others.places[i]);
  });
}

}  // namespace zavrel
