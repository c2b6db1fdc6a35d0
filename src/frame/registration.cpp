#include "frame/registration.h"

#include <algorithm>
#include <array>
#include <map>
#include <new>

#include "contracts/log_files.h"
#include "diagnostics/log_line.h"
#include "excel/excel_call.h"
#include "excel/value_text.h"
#include "excel/wide_text.h"
#include "frame/application_table.h"

namespace zavrel {
namespace {

constexpr std::uint32_t kFirstCategoryMessage = 400;  // the other categories follow it
constexpr std::size_t kFixedArguments = 10;           // the function help is the last
constexpr std::uint32_t kNumeric = xltypeNum | xltypeInt;

std::u16string Resolve(TextReference text, const RegistrationSources& sources) {
  if (text.is_null()) return {};
  return text.is_message_id() ? sources.message(text.message_id()) : Utf16FromUtf8(text.literal());
}

XXloper RegistrationText(std::u16string_view text) {
  return XXloper::Text(CutToUnits(text, kRegistrationTextLimit));
}

/// The function wizard is known to lose the last one or two characters of the last argument help.
/// With two spaces behind the text, it loses only those. The length limit includes the spaces.
XXloper LastArgumentHelp(std::u16string_view text) {
  constexpr std::u16string_view kLost = u"  ";
  if (text.empty()) return XXloper::Text(text);
  std::u16string help(CutToUnits(text, kRegistrationTextLimit - kLost.size()));
  return XXloper::Text(help += kLost);
}

/// Fills the arguments for the argument helps; false when the row has no helps.
bool FillArgumentHelps(const RegistrationRow& row, const RegistrationSources& sources,
                       std::span<XXloper, kArgumentHelps> helps) {
  std::size_t count = 0;
  std::u16string last;
  while (count < kArgumentHelps && !row.argument_helps[count].is_null() &&
         !row.argument_helps[count].is_repeat_marker()) {
    last = Resolve(row.argument_helps[count], sources);
    helps[count] = RegistrationText(last);
    ++count;
  }
  if (count == 0) return false;
  const bool repeat = count < kArgumentHelps && row.argument_helps[count].is_repeat_marker();
  std::fill(helps.begin() + static_cast<std::ptrdiff_t>(count), helps.end(),
            repeat ? helps[count - 1] : XXloper::Missing());
  helps[repeat ? kArgumentHelps - 1 : count - 1] = LastArgumentHelp(last);
  return true;
}

/// A function that Excel knows only while this lives.
class HiddenFunction {
 public:
  explicit HiddenFunction(std::span<const XXloper> registration)
      : id_(CallExcel(xlfRegister, registration).value) {}
  ~HiddenFunction() {
    if (id_.Is(kNumeric)) CallExcelForNothing(xlfUnregister, id_);
  }
  HiddenFunction(const HiddenFunction&) = delete;
  HiddenFunction& operator=(const HiddenFunction&) = delete;

 private:
  XXloper id_;
};

/// Writes into the log what Excel refused, and its answer.
void LogRefusal(std::string_view what, std::string_view name, const ExcelResult& answer) {
  if (EnabledLog() == nullptr) return;
  const XLOPER12& record = answer.value.record();
  LogLine("{}{}, return code {}, value {}\n", what, name, answer.return_code,
          answer.value.Is(xltypeErr) ? ErrorName(record.val.err) : ValueText(record));
}

}  // namespace

std::u16string WideTypeText(std::string_view type_text) {
  if (type_text.ends_with('$')) type_text.remove_suffix(1);
  std::u16string wide = Utf16FromUtf8(type_text);
  std::replace(wide.begin(), wide.end(), u'P', u'Q');
  std::replace(wide.begin(), wide.end(), u'R', u'U');
  return wide;
}

unsigned HelpOwner(WizardCategory category, std::uint32_t application_mask) {
  switch (category) {
    case WizardCategory::kMultivariateAnalysis:
      return (application_mask & 1u << kMultivariateCompanion) != 0 ? kMultivariateCompanion
                                                                    : kGeneralCompanion;
    case WizardCategory::kTimeSeries:
      return kTimeSeriesCompanion;
    case WizardCategory::kStatisticalFunctions:
    case WizardCategory::kDistributionFunctions:
      return kFunctionsCompanion;
    default:
      return kGeneralCompanion;
  }
}

std::u16string HelpTopic(std::u16string_view help_file, int topic_id) {
  if (help_file.empty() || topic_id == -1) return {};
  return std::u16string(help_file) + u'!' + Utf16FromUtf8(std::to_string(topic_id));
}

void Registration::Register(std::uint32_t application_mask, const RegistrationSources& sources) {
  Unregister();
  library_path_ = sources.library_path;
  RegisterRows(application_mask, sources);
  DeleteUnusedNames();
}

void Registration::RegisterRows(std::uint32_t application_mask,
                                const RegistrationSources& sources) {
  const auto is_wanted = [mask = application_mask | kAlwaysRegistered](const RegistrationRow& row) {
    return (row.application_mask & mask) != 0;
  };
  if (std::none_of(table_.rows.begin(), table_.rows.end(), is_wanted)) return;
  if (table_.is_available != nullptr && !table_.is_available()) return;

  std::array<std::u16string, kWizardCategories> categories;
  for (std::size_t i = 0; i < kWizardCategories; ++i) {
    categories[i] = sources.message(kFirstCategoryMessage + static_cast<std::uint32_t>(i));
  }
  std::map<unsigned, std::u16string> help_files;  // one lookup for each owner

  registered_.reserve(table_.rows.size());
  named_.reserve(table_.rows.size());
  for (const RegistrationRow& row : table_.rows) {
    if (!is_wanted(row)) continue;
    const unsigned owner = HelpOwner(row.category, application_mask);
    auto known = help_files.find(owner);
    if (known == help_files.end()) {
      known = help_files.emplace(owner, sources.help_file(owner)).first;
    }
    RegisterRow(row, categories[static_cast<std::size_t>(row.category)], known->second, sources);
  }
}

void Registration::RegisterRow(const RegistrationRow& row, const std::u16string& category,
                               const std::u16string& help_file,
                               const RegistrationSources& sources) {
  std::array<XXloper, kFixedArguments + kArgumentHelps> arguments;
  const std::u16string topic = HelpTopic(help_file, row.help_topic_id);
  const bool has_helps = FillArgumentHelps(
      row, sources, std::span(arguments).subspan<kFixedArguments, kArgumentHelps>());

  arguments[0] = RegistrationText(sources.library_path);
  arguments[1] = RegistrationText(Utf16FromUtf8(row.export_name));
  arguments[2] = RegistrationText(WideTypeText(row.type_text));
  arguments[3] = RegistrationText(Utf16FromUtf8(row.visible_name));
  arguments[4] = RegistrationText(Resolve(row.argument_text, sources));
  arguments[5] = XXloper::Number(row.macro_type);
  arguments[6] = RegistrationText(category);
  arguments[7] = XXloper::Text(u"");  // no shortcut
  arguments[8] = topic.empty() ? XXloper::Missing() : RegistrationText(topic);
  arguments[9] = RegistrationText(Resolve(row.function_help, sources));

  const std::size_t count = has_helps ? arguments.size() : kFixedArguments;
  const ExcelResult answer = CallExcel(xlfRegister, std::span(arguments).first(count));
  if (!answer.value.Is(kNumeric)) return LogRefusal(kRegistrationRefused, row.visible_name, answer);
  registered_.push_back({answer.value, &row});  // there is room for every row
  if (std::find(named_.begin(), named_.end(), &row) == named_.end()) named_.push_back(&row);
}

void Registration::Unregister() noexcept {
  for (const Registered& function : registered_) CallExcelForNothing(xlfUnregister, function.id);
  registered_.clear();
}

bool Registration::IsRegistered(const RegistrationRow* row) const {
  return std::any_of(registered_.begin(), registered_.end(),
                     [row](const Registered& function) { return function.row == row; });
}

void Registration::DeleteUnusedNames() noexcept {
  std::erase_if(named_, [this](const RegistrationRow* row) {
    return !IsRegistered(row) && DeleteName(row->visible_name);
  });
}

// Excel is documented to delete a name that xlfSetName is given alone, and known not to do so for a
// worksheet function: the function wizard goes on showing it. It does so once a hidden function
// has the name, so an export that does nothing is registered as one.
bool Registration::DeleteName(const char* visible_name) const noexcept try {
  const XXloper name = RegistrationText(Utf16FromUtf8(visible_name));
  const XXloper hidden[] = {RegistrationText(library_path_),
                            XXloper::Text(u"xlAutoRemove"),
                            XXloper::Text(u"J"),
                            name,
                            XXloper::Missing(),
                            XXloper::Number(0)};
  const HiddenFunction function(hidden);
  const ExcelResult answer = CallExcel(xlfSetName, {name});
  if (!answer.ok()) LogRefusal("Name not deleted: ", visible_name, answer);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace zavrel
