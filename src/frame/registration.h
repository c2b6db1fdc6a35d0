#pragma once
// Registers the rows of a table with Excel, and unregisters them.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "excel/xxloper.h"
#include "frame/add_in.h"

namespace zavrel {

/// The longest text that a registration can have; Excel refuses a row with a longer one.
inline constexpr std::size_t kRegistrationTextLimit = 255;

/// The type text in the form of Excel's XLOPER12 interface: P becomes Q, R becomes U, and a `$` at
/// the end (thread-safe) is removed.
std::u16string WideTypeText(std::string_view type_text);

/// The companion application whose help has the topics of a category. `application_mask` has the
/// announced applications.
unsigned HelpOwner(WizardCategory category, std::uint32_t application_mask);

/// "FILE!TOPIC"; empty if there is no help file or no topic.
std::u16string HelpTopic(std::u16string_view help_file, int topic_id);

/// What a registration needs from the session.
struct RegistrationSources {
  std::u16string library_path;
  std::function<std::u16string(std::uint32_t message_id)> message;
  std::function<std::u16string(unsigned application)> help_file;
};

/// The registrations of one table. If Excel refuses a row, nothing is thrown: the row is left out,
/// the log gets a line, and the next one is registered.
class Registration {
 public:
  explicit Registration(const FunctionTable& table) : table_(table) {}
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

  /// Unregisters everything, then registers the rows that an application of the mask wants and
  /// those that are always registered (bit 31), provided that what the table needs is available.
  /// Deletes the names of rows that were registered before and no longer are.
  void Register(std::uint32_t application_mask, const RegistrationSources& sources);
  /// Unregisters everything. Excel keeps the names, which the next registration replaces. Takes no
  /// memory.
  void Unregister() noexcept;
  /// Deletes the names of the rows that are not registered now, and keeps in mind those for which
  /// there is no memory.
  void DeleteUnusedNames() noexcept;

  /// The number of functions registered now.
  std::size_t size() const { return registered_.size(); }

 private:
  struct Registered {
    XXloper id;  // Excel's
    const RegistrationRow* row;
  };

  void RegisterRows(std::uint32_t application_mask, const RegistrationSources& sources);
  void RegisterRow(const RegistrationRow& row, const std::u16string& category,
                   const std::u16string& help_file, const RegistrationSources& sources);
  bool IsRegistered(const RegistrationRow* row) const;
  bool DeleteName(const char* visible_name) const noexcept;

  FunctionTable table_;
  std::u16string library_path_;
  std::vector<Registered> registered_;
  std::vector<const RegistrationRow*> named_;  // Excel knows their names
};

}  // namespace zavrel
