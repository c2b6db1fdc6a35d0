#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zavrel::services {

/// Excel's object model takes no longer text as a replacement, nor as an array formula. Of that it
/// counts the characters in R1C1 style, which are more for some references.
inline constexpr std::size_t kMostCharactersOfPiece = 255;
inline constexpr std::size_t kMostCharactersOfFirst = 200;

/// A formula that is entered in pieces: first a short one with names in the places of arguments,
/// and then for each name what stands there. With each step the formula is a valid one.
struct FormulaPieces {
  struct Piece {
    std::u16string name;
    std::u16string text;
  };
  std::u16string first;
  std::vector<Piece> pieces;  // in the order in which they are put in
};

/// The formula, with its "=", cut so that no text is longer than Excel takes; nothing if an
/// argument is longer and has no arguments itself.
std::optional<FormulaPieces> InPieces(std::u16string_view formula);

}  // namespace zavrel::services
