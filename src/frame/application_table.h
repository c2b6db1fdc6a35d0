#pragma once
// The companion applications that have announced themselves.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "frame/automation_object.h"

namespace zavrel {

inline constexpr std::size_t kApplications = 10;

// The ids of the companions in whose help the categories of functions are looked up.
inline constexpr unsigned kGeneralCompanion = 0;
inline constexpr unsigned kMultivariateCompanion = 1;
inline constexpr unsigned kTimeSeriesCompanion = 3;
inline constexpr unsigned kFunctionsCompanion = 5;  // the product's own macro add-in

/// What a companion says when it announces itself. The automation objects may be null.
struct Announcement {
  void* excel_application = nullptr;
  void* companion = nullptr;
  std::uint16_t application_id = 0;
  std::u16string workbook_file;  // full name; empty when not told
  std::uint32_t language_id = 0;
  std::u16string version;
  std::u16string help_location;
};

/// What is kept of it. The companion's object is held, and never called: its owner may be gone.
struct ApplicationRecord {
  explicit ApplicationRecord(const Announcement& announcement);

  AutomationObject companion;
  std::uint16_t application_id;
  std::u16string workbook_folder;  // with its separator at the end
  std::u16string workbook_name;
  std::uint32_t language_id;
  std::u16string version;
  std::u16string help_location;
};

/// The product an application belongs to, as its part of a registry key: "Zavrel" for the product's
/// own, and "Application3" for one that has no name of its own here.
std::u16string ProductName(unsigned application_id);

/// Major and minor number at the start of a version text ("8.2.1" gives 8 and 2). Anything that
/// does not begin with two numbers divided by a dot, an empty text above all, gives 8 and 0.
struct ProductVersion {
  unsigned major = 8;
  unsigned minor = 0;
  bool operator==(const ProductVersion&) const = default;
};
ProductVersion ParseVersion(std::u16string_view text);

/// The registry key of a product in either hive.
std::u16string ProductKey(std::u16string_view product, ProductVersion version = {});

/// Ten slots, one per application id.
class ApplicationTable {
 public:
  /// False for an id without a slot; an earlier record of the id is replaced.
  bool Store(const Announcement& announcement);
  /// False when the slot was empty or there is none.
  bool Remove(std::uint16_t application_id);
  /// Null for an empty slot.
  const ApplicationRecord* Find(unsigned application_id) const;
  /// Bit k set for every occupied slot k.
  std::uint32_t Mask() const;

  /// The machine-wide registry key that holds an application's help location, by its product and
  /// the announced version (8.0 when it is not announced).
  std::u16string HelpKey(unsigned application_id) const;

 private:
  std::array<std::unique_ptr<const ApplicationRecord>, kApplications> slots_;
};

}  // namespace zavrel
