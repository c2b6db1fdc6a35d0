#pragma once
// The strict judge: finds violations of the rules for add-ins while the add-in runs.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zavhost {

enum class ViolationKind {
  kMissingBracket,     // a call without the host's messages enabled around it
  kUnbalancedBracket,  // messages left enabled, enabled twice or disabled without enabling
  kNotFreed,           // the add-in still holds a value of the host
  kFreedTwice,
  kFreedForeign,  // xlFree of memory that the host did not hand out
  kArgumentWritten,
  kMalformedResult,
  kNameLeft,       // a function was unregistered, and its name was not deleted
  kMalformedCall,  // an invalid callback argument, or a call where none is allowed
  kCrash,
};

/// The place of a violation: a formula and its cell, both empty outside a formula.
struct Place {
  std::string formula;  // "=ZavMean(A1:A9)"
  std::string cell;     // "Sheet1!B7"
};

struct Violation {
  ViolationKind kind;
  std::string detail;   // what exactly, in words
  std::string formula;  // empty outside a formula
  std::string cell;     // "Sheet1!B7"; empty outside a cell
};

/// "Sheet1!B7: =ZavMean(A1:A9): a string of 40,000 characters was returned (malformed result)".
std::string DescribeViolation(const Violation& violation);

class Judge {
 public:
  /// Sets the place to which findings are attributed from now on.
  void SetPlace(std::string cell, std::string formula);
  /// That place, to be stored for a possible later finding.
  const std::shared_ptr<const Place>& place() const { return place_; }

  void Report(ViolationKind kind, std::string detail) { Report(kind, std::move(detail), *place_); }
  void Report(ViolationKind kind, std::string detail, const Place& place);

  /// The first 1,000 violations; the count includes all.
  const std::vector<Violation>& violations() const { return violations_; }
  std::uint64_t count() const { return count_; }

 private:
  std::vector<Violation> violations_;
  std::uint64_t count_ = 0;
  std::shared_ptr<const Place> place_ = std::make_shared<Place>();
};

}  // namespace zavhost
