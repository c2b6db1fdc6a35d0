#pragma once
// The calls of a function in a document, found by the values that they pass.

#include <cstdint>
#include <map>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "calc/call_sites.h"
#include "host/workbook/value.h"

namespace zavcalc {

/// Calls that pass the same values of the same kinds, whatever their formulas compute meanwhile.
struct AlikeCalls {
  const CallSite* one;
  std::size_t count;
};

/// What the document's cells say of a range that a call passes.
class RangeContents {
 public:
  RangeContents() = default;
  RangeContents(const RangeContents&) = delete;
  RangeContents& operator=(const RangeContents&) = delete;
  virtual ~RangeContents() = default;
  /// A mark of the kinds of the cells.
  virtual std::uint64_t KindsMark(const SheetRange& range) = 0;
  virtual bool HasFormulas(const SheetRange& range) = 0;
  /// The values of a range without formulas, row by row.
  virtual std::vector<zavhost::Value> ValuesOf(const SheetRange& range) = 0;
};

/// Mixes a value into a mark. Marks of different contents differ but for chance.
std::uint64_t Mixed(std::uint64_t mark, std::uint64_t value);

class CallIndex {
 public:
  /// A call that passes the same cells as another is the same call.
  void Add(CallSite site);
  /// All calls that can have passed these values, as far as literals, shapes and constants say.
  std::vector<AlikeCalls> Find(std::span<const zavhost::Operand> arguments,
                               RangeContents& contents);

 private:
  /// Which arguments are literals and which references, a bit for each, and how many there are.
  struct Form {
    std::uint64_t literals = 0;
    std::uint64_t references = 0;
    std::size_t count = 0;
    auto operator<=>(const Form&) const = default;
  };
  /// The calls of a form with the same literals and shapes; by their constants when that is asked
  /// for.
  struct Group {
    std::vector<CallSite> sites;
    bool is_sorted = false;
    std::map<std::uint64_t, std::unordered_map<std::uint64_t, std::vector<AlikeCalls>>>
        by_constants;
  };

  static void Sort(Group& group, RangeContents& contents);
  static void FindIn(Group& group, std::span<const zavhost::Operand> arguments,
                     RangeContents& contents, std::vector<AlikeCalls>& found);

  std::map<Form, std::unordered_map<std::uint64_t, Group>> forms_;
  std::unordered_set<std::uint64_t> known_;  // marks of calls that are wholly described
};

}  // namespace zavcalc
