#include "matrix/dense_storage.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "platform/temporary_folder.h"
#include "platform/utf.h"

namespace zavrel::dense {
namespace {

// The tile size of a transposition: a cache line of doubles, so that both sides use whole lines.
constexpr std::size_t kTile = 8;

constexpr std::size_t kLine = 64;

// The storage of so large a matrix is first requested in one piece. On systems that do not
// overcommit memory, a hopeless request then fails at once and not after filling the available
// memory.
constexpr std::size_t kProbedCount = std::size_t{1} << 27;

SwappedArray OnDisk(std::size_t count) {
  constexpr const char* kPlace = "dense::Storage";
  SwapFailure failure{};
  if (auto array = SwappedArray::Make(count, failure)) return *std::move(array);
  if (failure == SwapFailure::kNoAddresses) throw std::bad_alloc();
  const std::u16string folder = Utf16FromPath(TemporaryFolder());
  if (failure == SwapFailure::kNoSpace)
    throw VekErrorWritingFile(kPlace, messages::kMessageErrorWritingFile, {folder});
  throw VekErrorOpeningFile(kPlace, messages::kMessageErrorOpeningFile, {folder});
}

}  // namespace

Storage::Storage(Shape shape) {
  const std::size_t count = CheckedCount(shape);
  if (ExceedsMemoryBudget(count * sizeof(double))) {
    numbers_ = swapped_.emplace(OnDisk(count)).elements().data();
    return;
  }
  block_.Reserve(count + kLine / sizeof(double));
  const auto address = reinterpret_cast<std::uintptr_t>(block_.data());
  numbers_ = reinterpret_cast<double*>((address + kLine - 1) / kLine * kLine);
}

Shape ShapeOf(const DoubleMatrix& matrix, const char* place) {
  if (matrix.empty()) return {};
  const Shape shape{matrix.size(), matrix.front().size()};
  for (const std::vector<double>& row : matrix)
    if (row.size() != shape.columns)
      throw VekArraySizeError(place, messages::kMessageArraySizeError);
  return shape;
}

std::size_t SizeOfSquare(const DoubleMatrix& matrix, const char* place) {
  const Shape shape = ShapeOf(matrix, place);
  if (shape.rows != shape.columns) {
    throw VekMatrixNotSquare(
        place, messages::kMessageMatrixNotSquare,
        {static_cast<std::int64_t>(shape.rows), static_cast<std::int64_t>(shape.columns)});
  }
  return shape.rows;
}

DoubleMatrix MakeMatrix(Shape shape) {
  if (const std::size_t count = CheckedCount(shape); count >= kProbedCount)
    BlockArray<double>().Reserve(count);
  DoubleMatrix matrix(shape.rows);
  for (std::vector<double>& row : matrix) row.resize(shape.columns);
  return matrix;
}

void CopyRows(const DoubleMatrix& from, Shape shape, double* to) noexcept {
  for (std::size_t r = 0; r < shape.rows; ++r)
    std::copy_n(from[r].data(), shape.columns, to + r * shape.columns);
}

void CopyToColumns(const DoubleMatrix& from, Shape shape, double* to) noexcept {
  std::size_t r = 0;
  for (; r + kTile <= shape.rows; r += kTile) {
    std::array<const double*, kTile> rows;
    for (std::size_t i = 0; i < kTile; ++i) rows[i] = from[r + i].data();
    double* line = to + r;
    for (std::size_t c = 0; c < shape.columns; ++c, line += shape.rows)
      for (std::size_t i = 0; i < kTile; ++i) line[i] = rows[i][c];
  }
  for (; r < shape.rows; ++r)
    for (std::size_t c = 0; c < shape.columns; ++c) to[c * shape.rows + r] = from[r][c];
}

void CopyFromColumns(const double* from, Shape shape, std::size_t first_column,
                     DoubleMatrix& to) noexcept {
  std::size_t r = 0;
  for (; r + kTile <= shape.rows; r += kTile) {
    std::array<double*, kTile> rows;
    for (std::size_t i = 0; i < kTile; ++i) rows[i] = to[r + i].data() + first_column;
    const double* line = from + r;
    for (std::size_t c = 0; c < shape.columns; ++c, line += shape.rows)
      for (std::size_t i = 0; i < kTile; ++i) rows[i][c] = line[i];
  }
  for (; r < shape.rows; ++r)
    for (std::size_t c = 0; c < shape.columns; ++c)
      to[r][first_column + c] = from[c * shape.rows + r];
}

bool IsFinite(const double* numbers, std::size_t count) noexcept {
  // Zero times a finite number is zero; zero times anything else is a not-a-number.
  double sum = 0;
  for (std::size_t i = 0; i < count; ++i) sum += 0 * numbers[i];
  return sum == 0;
}

}  // namespace zavrel::dense
