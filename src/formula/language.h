#pragma once
// The languages of Excel: the names of functions, and the notation.

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "formula/notation.h"

namespace formula {

class Language {
 public:
  Notation notation;

  /// Adds the own name of an English function; both in capitals. False if either has one already.
  bool Add(std::u16string_view english, std::u16string_view own);
  /// The other name of a function, in capitals; empty if there is none. `name` may be in any case.
  std::u16string_view Own(std::u16string_view english) const;
  std::u16string_view English(std::u16string_view own) const;

  using Names = std::map<std::u16string, std::u16string, std::less<>>;
  /// The own names by the English ones.
  const Names& names() const { return own_; }

 private:
  Names own_;
  Names english_;
};

}  // namespace formula
