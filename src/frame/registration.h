#pragma once
// Registers the rows of a table with Excel and takes them back.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "excel/xxloper.h"
#include "frame/add_in.h"

namespace zavrel {

/// Longest text that a registration takes; longer ones make Excel refuse the row.
inline constexpr std::size_t kRegistrationTextLimit = 255;

/// The type text as Excel's XLOPER12 interface has it: P becomes Q, R becomes U, and a `$` at the
/// end (thread-safe) goes.
std::u16string WideTypeText(std::string_view type_text);

/// The companion application whose help has the topics of a category. `application_mask`: the
/// announced ones.
unsigned HelpOwner(WizardCategory category, std::uint32_t application_mask);

/// "FILE!TOPIC", or nothing when there is no help file or no topic.
std::u16string HelpTopic(std::u16string_view help_file, int topic_id);

/// What a registration needs to know from outside.
struct RegistrationSources {
  std::u16string library_path;
  std::function<std::u16string(std::uint32_t message_id)> message;
  std::function<std::u16string(unsigned application)> help_file;
};

/// The registrations of one table. Never throws for what Excel answers: a row that it refuses is
/// left out and the next one follows.
class Registration {
 public:
  explicit Registration(const FunctionTable& table) : table_(table) {}
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

  /// Takes back what is registered, then registers the rows that any application of the mask, or
  /// everyone (bit 31), wants, if what the table needs is available.
  void Register(std::uint32_t application_mask, const RegistrationSources& sources);
  void Unregister();

  /// Excel's numbers of what is registered now.
  const std::vector<double>& ids() const { return ids_; }

 private:
  void RegisterRow(const RegistrationRow& row, const std::u16string& category,
                   const std::u16string& help_file, const RegistrationSources& sources);

  FunctionTable table_;
  std::vector<double> ids_;
};

}  // namespace zavrel
