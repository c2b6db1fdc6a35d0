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

// The ids of the companions whose help covers the categories of functions.
inline constexpr unsigned kGeneralCompanion = 0;
inline constexpr unsigned kMultivariateCompanion = 1;
inline constexpr unsigned kTimeSeriesCompanion = 3;
inline constexpr unsigned kFunctionsCompanion = 5;  // the product's own macro add-in

/// A companion's announcement of itself. The automation objects may be null.
struct Announcement {
  void* excel_application = nullptr;
  void* companion = nullptr;
  std::uint16_t application_id = 0;
  std::u16string workbook_file;  // full name; empty if not given
  std::uint32_t language_id = 0;
  std::u16string version;
  std::u16string help_location;
};

/// What is kept of an announcement. The companion's object is held but never called: its owner may
/// be gone.
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

/// The product that an application belongs to, as part of a registry key: "Zavrel" for the
/// product's own application, "Application3" and so on for the others.
std::u16string ProductName(unsigned application_id);

/// Major and minor number at the start of a version text ("8.2.1" gives 8 and 2). A text that does
/// not begin with two numbers and a dot between them, such as an empty one, gives 8 and 0.
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
  /// Replaces an earlier record of the id. False for an id without a slot.
  bool Store(const Announcement& announcement);
  /// False when the slot was empty or there is none.
  bool Remove(std::uint16_t application_id);
  /// Null for an empty slot.
  const ApplicationRecord* Find(unsigned application_id) const;
  /// Bit k set for every occupied slot k.
  std::uint32_t Mask() const;

  /// The registry key that holds an application's help location in the machine-wide hive, by its
  /// product and its announced version (8.0 if it is not announced).
  std::u16string HelpKey(unsigned application_id) const;

 private:
  std::array<std::unique_ptr<const ApplicationRecord>, kApplications> slots_;
};

}  // namespace zavrel
