#include "host/formula/elementwise.h"

namespace zavhost {
namespace {

constexpr std::int64_t kFreelySpreadCells = 4'000'000;

}  // namespace

void Spread::Include(const Operand& operand) {
  const ArrayPtr* held = std::get_if<ArrayPtr>(&operand);
  if (held == nullptr) return;
  const Array& array = **held;
  is_array = true;
  rows = std::max(rows, array.rows);
  columns = std::max(columns, array.columns);
  largest_ = std::max(largest_, std::int64_t{array.rows} * array.columns);
}

bool Spread::IsReasonable() const {
  const std::int64_t cells = std::int64_t{rows} * columns;
  return cells <= largest_ || cells <= kFreelySpreadCells;
}

std::size_t NewTextLength(const Value& value) {
  const Text* text = value.shared_text();
  return text != nullptr && !text->IsShared() ? (*text)->size() : 0;
}

Value ElementAt(const Operand& operand, std::int32_t row, std::int32_t column) {
  if (const Value* value = std::get_if<Value>(&operand)) return *value;
  const ArrayPtr* held = std::get_if<ArrayPtr>(&operand);
  if (held == nullptr) return Value();
  const Array& array = **held;
  if (array.rows == 1) row = 0;
  if (array.columns == 1) column = 0;
  if (row >= array.rows || column >= array.columns) return ErrorCode::kNA;
  return array.At(row, column);
}

}  // namespace zavhost
