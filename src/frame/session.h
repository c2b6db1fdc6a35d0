#pragma once
// The state of the add-in between xlAutoOpen and xlAutoClose. Excel's main thread only.

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "data/session_caches.h"
#include "diagnostics/failure_store.h"
#include "diagnostics/message_library.h"
#include "excel/result_holder.h"
#include "frame/add_in.h"
#include "frame/application_table.h"
#include "frame/automation_object.h"
#include "frame/cache_upkeep.h"
#include "frame/kept_objects.h"
#include "frame/registration.h"
#include "platform/library_identity.h"
#include "platform/named_mutex.h"

namespace zavrel {

/// The services of the machine that the session uses; a test supplies its own.
struct SessionServices {
  std::function<MessageLibrary()> messages;
  std::function<unsigned()> memory_load;  // percent of physical memory in use
  /// A text from the machine-wide registry hive; std::nullopt if it does not exist.
  std::function<std::optional<std::u16string>(const std::u16string& key,
                                              const std::u16string& value_name)>
      machine_text;
  /// Writes into the per-user hive; may throw.
  std::function<void(const std::u16string& key, const std::u16string& value_name,
                     std::uint32_t value)>
      write_user_number;

  static SessionServices OfThisMachine();
};

class Session {
 public:
  /// Null while the add-in is not open.
  static Session* Current() noexcept;

  /// Opens the session and registers what is always registered. Does nothing if one is open. If it
  /// throws (a VekException or any other exception), nothing is left behind.
  static void Open(AddIn add_in, SessionServices services);
  /// Unregisters everything and ends the session. Does nothing if none is open.
  static void Close() noexcept;

  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  /// Replaces an earlier announcement of the same application and registers afresh. An id without a
  /// slot (10 and up) only gets a line in the log.
  void Announce(const Announcement& announcement);
  /// Registers afresh for the remaining applications. Does nothing if the id is not announced.
  void Withdraw(std::uint16_t application_id);

  /// Runs the cache upkeep for the machine's current memory load.
  void KeepUpCaches(UpkeepMode mode) noexcept;
  /// While set, every upkeep after a call drops everything cached, so that nothing outlives a call.
  /// For investigating a value that may be stale.
  void SetFlushFlag(bool flush) { flush_ = flush; }
  /// The object of this type that a family of functions keeps in the session: made at the first
  /// call, destroyed with the session. A cache (an object with Clear()) is cleared together with
  /// the DatasetParmCache.
  template <class Object>
  Object& Kept() {
    return kept_.Get<Object>();
  }

  FailureStore& failures() { return failures_; }
  const ApplicationTable& applications() const { return applications_; }
  /// The language of the texts: the thread's when the session opens, then that of the latest
  /// announcement. With or without a country (0x0407, 7).
  std::uint32_t language_id() const { return language_id_; }
  /// A text of the message library in the session's language.
  std::u16string MessageText(std::int32_t id) const { return messages_.Text(id, language_id_); }
  /// The composed message of a failure.
  std::u16string MessageOf(const VekException& failure) const {
    return ComposeMessage(MessageText(failure.message_id()), failure.arguments());
  }
  /// Excel's automation object from the latest announcement; may be null.
  void* excel_application() const { return excel_application_.get(); }

 private:
  Session(AddIn add_in, SessionServices services);
  void RegisterFor(std::uint32_t application_mask);
  void UnregisterAll() noexcept;
  void RememberLanguage(const ApplicationRecord& record) const noexcept;
  RegistrationSources Sources() const;
  std::u16string HelpFile(unsigned application_id) const;
  std::u16string HelpFileInFolder() const;

  struct ResultHolderOwner {
    ResultHolderOwner() { OpenResultHolder(); }
    ~ResultHolderOwner() { CloseResultHolder(); }
    ResultHolderOwner(const ResultHolderOwner&) = delete;
    ResultHolderOwner& operator=(const ResultHolderOwner&) = delete;
  };

  AddIn add_in_;
  SessionServices services_;
  std::uint32_t language_id_;
  ResultHolderOwner result_holder_;
  MessageLibrary messages_;
  FailureStore failures_;
  std::shared_ptr<ExcelDataCache> data_cache_;
  std::shared_ptr<DatasetParmCache> parm_cache_;
  KeptObjects kept_;
  bool flush_ = false;
  ApplicationTable applications_;
  AutomationObject excel_application_;
  std::deque<Registration> registrations_;  // one for each table of the add-in
  std::optional<NamedMutex> is_loaded_;
};

}  // namespace zavrel
