#pragma once
// An add-in's registrations with Excel as data: one row per worksheet function. The build makes the
// rows from the add-in's functions.json (function_tables.py).

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace zavrel {

/// A text of the table in one 64-bit value: an id of the message library below 1714, or a pointer
/// to a narrow (UTF-8) literal. Two values are not texts: null ends a list of argument helps, and
/// the repeat marker repeats the help before it in all remaining positions.
class TextReference {
 public:
  static constexpr std::uint64_t kFirstPointer = 1714;
  static constexpr std::uint64_t kRepeatMarker = static_cast<std::uint64_t>(-2);

  constexpr TextReference() : value_{.bits = 0} {}
  constexpr TextReference(int message_id)  // NOLINT(google-explicit-constructor): a table's entry
      : value_{.bits = static_cast<std::uint64_t>(message_id)} {}
  constexpr TextReference(const char* literal)  // NOLINT(google-explicit-constructor)
      : value_{.literal = literal} {}
  static constexpr TextReference RepeatLast() { return TextReference(-2); }

  std::uint64_t bits() const { return std::bit_cast<std::uint64_t>(value_); }
  bool is_null() const { return bits() == 0; }
  bool is_repeat_marker() const { return bits() == kRepeatMarker; }
  /// A value that is neither null nor the repeat marker is a message id or, if not, a literal.
  bool is_message_id() const { return bits() < kFirstPointer; }
  std::uint32_t message_id() const { return static_cast<std::uint32_t>(bits()); }
  const char* literal() const { return std::bit_cast<const char*>(value_); }

 private:
  union {
    std::uint64_t bits;
    const char* literal;
  } value_;
};
static_assert(sizeof(TextReference) == 8);

inline constexpr std::size_t kArgumentHelps = 20;

/// Categories of the function wizard, in the order of their names in the message library.
enum class WizardCategory : std::uint8_t {
  kGeneral,
  kDataPreparation,
  kSampling,
  kMultivariateAnalysis,
  kTimeSeries,
  kRegression,
  kAnalysisOfVariance,
  kStatisticalFunctions,
  kDistributionFunctions,
  kHypothesisTests,
  kQualityControl,
  kCharts,
};
inline constexpr std::size_t kWizardCategories = 12;

/// Bit k of an application mask stands for companion application k (0..9).
inline constexpr std::uint32_t kAlwaysRegistered = 1u << 31;

struct RegistrationRow {
  std::uint32_t application_mask;  // registered while one of these is announced
  const char* export_name;
  const char* type_text;  // in the single-byte form; see WideTypeText
  const char* visible_name;
  TextReference argument_text;
  std::uint16_t macro_type;    // 1: listed in the function wizard, 0: hidden
  std::int16_t help_topic_id;  // -1: no topic
  WizardCategory category;
  TextReference function_help;
  std::array<TextReference, kArgumentHelps> argument_helps;
};

}  // namespace zavrel
