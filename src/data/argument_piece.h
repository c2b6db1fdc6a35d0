#pragma once

#include <optional>
#include <span>

#include "excel/reference.h"
#include "excel/xxloper.h"

namespace zavrel {

/// One of the arguments that together form a data set, decoded once for its key, its cells and its
/// layout. A view: the argument must outlive it.
struct ArgumentPiece {
  const XLOPER12* record = nullptr;          // never null in a piece that Of() made
  std::optional<ReferenceView> reference{};  // set for a reference that leads to cells

  /// A null pointer is an omitted argument.
  static ArgumentPiece Of(const XLOPER12* argument) {
    if (argument == nullptr) return {&XXloper::Missing().record()};
    return {argument, ReferenceView::Of(*argument)};
  }

  std::span<const XLREF12> areas() const {
    return reference ? reference->areas() : std::span<const XLREF12>();
  }
  /// The cells that come with the argument itself: an array's elements, or the one value. Empty for
  /// a reference that leads to cells and for an array without elements.
  std::span<const XLOPER12> values() const {
    if (reference) return {};
    return TypeOf(*record) == xltypeMulti ? ElementsIn(*record) : std::span(record, 1);
  }
};

using Pieces = std::span<const ArgumentPiece>;

}  // namespace zavrel
