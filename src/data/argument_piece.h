#pragma once

#include <optional>
#include <span>

#include "excel/reference.h"
#include "excel/xxloper.h"

namespace zavrel {

/// One of the arguments that form a data set together, decoded once for all that look at it: key,
/// cells, layout. Views the argument, which must outlive it.
struct ArgumentPiece {
  const XLOPER12* record = nullptr;          // never null once it is made
  std::optional<ReferenceView> reference{};  // of a reference that leads to cells

  /// A null pointer is an omitted argument.
  static ArgumentPiece Of(const XLOPER12* argument) {
    if (argument == nullptr) return {&XXloper::Missing().record()};
    return {argument, ReferenceView::Of(*argument)};
  }

  std::span<const XLREF12> areas() const {
    return reference ? reference->areas() : std::span<const XLREF12>();
  }
  /// The cells that come with the argument itself: an array's elements, or the one value. Empty for
  /// a reference, and for an array that has none.
  std::span<const XLOPER12> values() const {
    if (reference) return {};
    return TypeOf(*record) == xltypeMulti ? ElementsIn(*record) : std::span(record, 1);
  }
};

using Pieces = std::span<const ArgumentPiece>;

}  // namespace zavrel
