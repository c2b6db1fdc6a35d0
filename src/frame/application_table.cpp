#include "frame/application_table.h"

#include <optional>

#include "excel/wide_text.h"

namespace zavrel {
namespace {

/// The number at the front of `text`, which is removed; std::nullopt without a digit or with more
/// than four.
std::optional<unsigned> TakeNumber(std::u16string_view& text) {
  unsigned number = 0;
  std::size_t digits = 0;
  while (digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9') {
    if (digits == 4) return std::nullopt;
    number = number * 10 + (text[digits] - u'0');
    ++digits;
  }
  text.remove_prefix(digits);
  return digits > 0 ? std::optional(number) : std::nullopt;
}

}  // namespace

ApplicationRecord::ApplicationRecord(const Announcement& announcement)
    : companion(announcement.companion),
      application_id(announcement.application_id),
      language_id(announcement.language_id),
      version(announcement.version),
      help_location(announcement.help_location) {
  const std::u16string& file = announcement.workbook_file;
  const std::size_t separator = file.find_last_of(u"\\/");
  const std::size_t name = separator == std::u16string::npos ? 0 : separator + 1;
  workbook_folder = file.substr(0, name);
  workbook_name = file.substr(name);
}

std::u16string ProductName(unsigned application_id) {
  if (application_id == kFunctionsCompanion) return u"Zavrel";
  return u"Application" + Utf16FromUtf8(std::to_string(application_id));
}

ProductVersion ParseVersion(std::u16string_view text) {
  const auto major = TakeNumber(text);
  if (!major || !text.starts_with(u'.')) return {};
  text.remove_prefix(1);
  const auto minor = TakeNumber(text);
  if (!minor) return {};
  return {*major, *minor};
}

std::u16string ProductKey(std::u16string_view product, ProductVersion version) {
  return u"Software\\Brennic\\" + std::u16string(product) + u'\\' +
         Utf16FromUtf8(std::to_string(version.major) + '.' + std::to_string(version.minor));
}

bool ApplicationTable::Store(const Announcement& announcement) {
  if (announcement.application_id >= kApplications) return false;
  slots_[announcement.application_id] = std::make_unique<const ApplicationRecord>(announcement);
  return true;
}

bool ApplicationTable::Remove(std::uint16_t application_id) {
  if (Find(application_id) == nullptr) return false;
  slots_[application_id] = nullptr;
  return true;
}

const ApplicationRecord* ApplicationTable::Find(unsigned application_id) const {
  return application_id < kApplications ? slots_[application_id].get() : nullptr;
}

std::uint32_t ApplicationTable::Mask() const {
  std::uint32_t mask = 0;
  for (std::size_t id = 0; id < kApplications; ++id) {
    if (slots_[id] != nullptr) mask |= 1u << id;
  }
  return mask;
}

std::u16string ApplicationTable::HelpKey(unsigned application_id) const {
  const ApplicationRecord* record = Find(application_id);
  return ProductKey(ProductName(application_id),
                    record != nullptr ? ParseVersion(record->version) : ProductVersion());
}

}  // namespace zavrel
