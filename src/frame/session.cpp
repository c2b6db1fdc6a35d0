#include "frame/session.h"

#include <exception>
#include <ranges>
#include <utility>

#include "diagnostics/log_line.h"
#include "platform/memory_status.h"
#include "platform/never_destroyed.h"
#include "platform/operating_system.h"
#include "platform/registry.h"
#include "platform/utf.h"

namespace zavrel {
namespace {

constexpr const char16_t* kLoadedMutexName = u"Zavrel   is loaded mutex name 098487234";

// The value with an installed companion's help file, under the key from ApplicationTable::HelpKey.
constexpr const char16_t* kHelpValue = u"HelpLocation";

// The key below the add-in's in the user's hive. It holds the language that each companion, by its
// application id, last announced, for a set-up program or a viewer of the log.
constexpr const char16_t* kLanguagesKey = u"\\Languages";

/// Never destroyed: when Excel unloads the library without closing it, or the process ends, Excel
/// may no longer be called.
std::unique_ptr<Session>& Slot() {
  static NeverDestroyed<std::unique_ptr<Session>> session;
  return *session;
}

std::string Describe(const Announcement& announced) {
  return fmt::format(
      "excelApplication={}, library={}, appid={}, fileName={}, languageId={}, version={}, help={}",
      fmt::ptr(announced.excel_application), fmt::ptr(announced.companion),
      announced.application_id, Utf8FromUtf16(announced.workbook_file), announced.language_id,
      Utf8FromUtf16(announced.version), Utf8FromUtf16(announced.help_location));
}

}  // namespace

SessionServices SessionServices::OfThisMachine() {
  return {
      .messages = [] { return MessageLibrary::Open(LibraryIdentity::OfThisLibrary().folder()); },
      .memory_load = [] { return ReadMemoryStatus().load_percent; },
      .machine_text = [](const std::u16string& key,
                         const std::u16string& name) -> std::optional<std::u16string> {
        const auto opened = RegistryKey::Open(RegistryHive::kMachineWide, key);
        return opened ? opened->ReadText(name) : std::nullopt;
      },
      .write_user_number =
          [](const std::u16string& key, const std::u16string& name, std::uint32_t number) {
            std::string problem;
            if (auto made = RegistryKey::Create(RegistryHive::kPerUser, key, &problem))
              made->WriteNumber(name, number, &problem);
            if (!problem.empty())
              LogLine("Registry: {} cannot be written: {}\n", Utf8FromUtf16(key), problem);
          },
  };
}

Session* Session::Current() noexcept { return Slot().get(); }

void Session::Open(AddIn add_in, SessionServices services) {
  if (Current() != nullptr) return;
  std::unique_ptr<Session> session(new Session(add_in, std::move(services)));
  session->RegisterFor(0);
  Slot() = std::move(session);
}

void Session::Close() noexcept { Slot().reset(); }

Session::Session(AddIn add_in, SessionServices services)
    : add_in_(add_in),
      services_(std::move(services)),
      language_id_(ThreadPrimaryLanguage()),
      messages_(services_.messages()),
      data_cache_(std::make_shared<ExcelDataCache>()),
      parm_cache_(std::make_shared<DatasetParmCache>()),
      registrations_(add_in.tables.begin(), add_in.tables.end()) {
  SetSessionCaches(data_cache_, parm_cache_);
}

Session::~Session() {
  KeepUpCaches(UpkeepMode::kClearAll);
  SetSessionCaches(nullptr, nullptr);
  UnregisterAll();
  for (Registration& table : registrations_) table.DeleteUnusedNames();
}

void Session::Announce(const Announcement& announcement) {
  const ScopedTrace trace("InitializeXlaInformationPrivate",
                          [&] { return Describe(announcement); });
  if (announcement.application_id >= kApplications) {
    LogLine("Application id {} has no slot: ignored\n", announcement.application_id);
    return;
  }
  language_id_ = announcement.language_id;
  excel_application_ = AutomationObject(announcement.excel_application);
  applications_.Store(announcement);
  RememberLanguage(*applications_.Find(announcement.application_id));
  RegisterFor(applications_.Mask());
}

void Session::Withdraw(std::uint16_t application_id) {
  const ScopedTrace trace("UninitializeXlaInformation",
                          [&] { return fmt::format("appid={}", application_id); });
  if (applications_.Remove(application_id)) RegisterFor(applications_.Mask());
}

void Session::RegisterFor(std::uint32_t application_mask) {
  UnregisterAll();
  const RegistrationSources sources = Sources();
  for (Registration& table : registrations_) table.Register(application_mask, sources);
  is_loaded_ = NamedMutex::Open(kLoadedMutexName);
}

void Session::UnregisterAll() noexcept {
  for (Registration& table : registrations_ | std::views::reverse) table.Unregister();
}

void Session::RememberLanguage(const ApplicationRecord& record) const noexcept {
  try {
    services_.write_user_number(ProductKey(add_in_.name) + kLanguagesKey,
                                Utf16FromUtf8(std::to_string(record.application_id)),
                                record.language_id);
  } catch (...) {  // nothing depends on the value
  }
}

RegistrationSources Session::Sources() const {
  return {
      .library_path = Utf16FromPath(LibraryIdentity::OfThisLibrary().path),
      .message = [this](std::uint32_t id) { return MessageText(static_cast<std::int32_t>(id)); },
      .help_file = [this](unsigned application) { return HelpFile(application); }};
}

// The announced location takes precedence over the installed one: the application may run from
// another folder.
std::u16string Session::HelpFile(unsigned application_id) const {
  const ApplicationRecord* record = applications_.Find(application_id);
  if (record != nullptr && !record->help_location.empty()) return record->help_location;
  if (auto installed = services_.machine_text(applications_.HelpKey(application_id), kHelpValue))
    return *installed;
  return HelpFileInFolder();
}

std::u16string Session::HelpFileInFolder() const {
  constexpr std::uint32_t kPrimaryLanguage = 0x3FF;
  const auto in_folder = [](std::u16string_view file) {
    const std::filesystem::path path = LibraryIdentity::OfThisLibrary().folder() / file;
    std::error_code ignored;
    return std::filesystem::exists(path, ignored) ? Utf16FromPath(path) : std::u16string();
  };
  for (const auto& [language, file] : add_in_.help_files) {
    if (language != (language_id_ & kPrimaryLanguage)) continue;
    if (std::u16string found = in_folder(file); !found.empty()) return found;
  }
  return add_in_.help_files.empty() ? std::u16string() : in_folder(add_in_.help_files.front().file);
}

void Session::KeepUpCaches(UpkeepMode mode) noexcept {
  const UpkeepSteps steps = StepsOfUpkeep(mode, services_.memory_load(), flush_);
  if (steps.prune_parameters) parm_cache_->Prune();
  if (steps.clear_parameters) {
    parm_cache_->Clear();
    kept_.ClearCaches();
  }
  if (steps.clear_data) data_cache_->Clear();
  if (steps.prune_data) data_cache_->Prune();
}

}  // namespace zavrel
