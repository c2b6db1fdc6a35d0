#pragma once
// Texts with the wildcards of worksheet functions.

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zavhost {

/// A text in which "?" stands for any one character and "*" for any number of them; "~" takes
/// the next character literally, whichever it is. Letter case makes no difference.
///
/// It is run as an automaton whose states are bits, so that the time is linear in the text however
/// many "*" there are.
class WildcardPattern {
 public:
  /// Excel's limit.
  static constexpr std::size_t kLongest = 255;

  /// A pattern beyond the limit is cut.
  explicit WildcardPattern(std::u16string_view pattern);
  /// The only text for which the pattern stands, in lower case; null if it has wildcards.
  const std::u16string* plain() const { return has_wildcards_ ? nullptr : &plain_; }
  /// True if the pattern stands for the whole text.
  bool Matches(std::u16string_view text) const;

 private:
  using States = std::bitset<kLongest + 1>;

  void Add(char16_t unit, bool is_any);

  std::size_t length_ = 0;  // without each "*"
  std::u16string plain_;    // the literal text
  bool has_wildcards_ = false;
  States stays_;                                // where a "*" takes further characters
  States takes_any_;                            // where a "?" takes the next character
  std::unordered_map<char16_t, States> takes_;  // where this character, in lower case, is next
};

}  // namespace zavhost
