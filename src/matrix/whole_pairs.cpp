#include "matrix/whole_pairs.h"

#include <algorithm>
#include <utility>

#include "matrix/association_kernels.h"
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
  PairProducts(const WholeVariables& variables, PairOptions options)
      : variables_(variables),
        options_(options),
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
    std::vector<Tile> tiles;
    dense::Storage packed;
  };

  void MakeParts() {
    const std::size_t all = groups_ * (groups_ + 1) / 2;
    const std::size_t count = std::clamp<std::size_t>(groups_ / 2, 1, ParallelThreads());
    std::size_t done = 0;
    Tile next{0, 0, 0};
    for (std::size_t p = 0; p < count; ++p) {
      const std::size_t end = all * (p + 1) / count;
      // The widest vectors read a group more than there is.
      Part part{{}, dense::Storage({groups_ - next.a + 1, block_rows_ * kGroup})};
      while (done < end) {
        next.groups = std::min(groups_ - next.b, end - done);
        part.tiles.push_back(next);
        done += next.groups;
        next.b += next.groups;
        if (next.b == groups_) next.b = ++next.a;
      }
      parts_.push_back(std::move(part));
    }
  }

  void AddUp(Part& part) {
    const Packed packed{part.packed.data(), (groups_ - part.tiles.front().a) * kGroup};
    std::fill_n(packed.values + block_rows_ * packed.stride, kLanes - kGroup, 0.0);
    for (std::size_t row = 0; row < variables_.rows(); row += block_rows_)
      AddBlock(part.tiles, packed, row, std::min(block_rows_, variables_.rows() - row));
  }

  void AddBlock(std::span<const Tile> tiles, Packed packed, std::size_t first_row,
                std::size_t rows) {
    const std::size_t first_group = tiles.front().a;
    const auto packed_group = [&](std::size_t group) {
      return Packed{packed.values + (group - first_group) * kGroup, packed.stride};
    };
    for (std::size_t g = first_group; g < groups_; ++g) {
      const double* columns[kGroup];
      for (std::size_t lane = 0; lane < kGroup; ++lane)
        columns[lane] = columns_[g * kGroup + lane].From(first_row);
      PackDeviations(columns, rows, &means_[g * kGroup], packed_group(g));
    }
    for (const Tile& tile : tiles) {
      AddProducts(packed_group(tile.a).values, packed_group(tile.b), rows, tile.groups * kGroup,
                  sums_.data() + (tile.a * stride_ + tile.b) * kGroup, stride_);
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
  std::size_t groups_;
  std::size_t stride_;
  std::size_t block_rows_;
  std::vector<double> ones_;
  std::vector<Column> columns_;
  std::vector<double> means_;
  dense::Storage sums_;
  std::vector<Part> parts_;
};

}  // namespace

ModeratePairs CalculateModeratePairs(const WholeVariables& variables, PairOptions options,
                                     DoubleMatrix& matrix) {
  if (variables.size() == 0) return {};
  return PairProducts(variables, options).CalculateInto(matrix);
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
