// The entry points by which a companion macro add-in switches its functions on and off.
#include "frame/announce.h"

#include "frame/announced_text.h"
#include "frame/macro_call.h"
#include "frame/opening.h"
#include "frame/session.h"
#include "platform/export.h"

namespace zavrel {

void AnnounceToSession(const Announcement& announcement) {
  // Excel closes the add-in before it asks whether to save. A user who cancels goes on working, and
  // Excel may not open the add-in again. A companion that announces itself then still needs it.
  if (Session::Current() == nullptr) ReopenAddIn();
  Session* session = Session::Current();
  if (session != nullptr) session->Announce(announcement);
}

/// Announces a companion application and registers the functions that it uses.
/// The automation objects may be null, the texts (null-terminated) null or empty. Before the first
/// xlAutoOpen nothing is registered and nothing is kept; after xlAutoClose the add-in opens again.
ZAV_EXPORT void InitializeXlaInformationW(void* excel_application, void* companion,
                                          std::uint16_t application_id,
                                          const char16_t* workbook_file, std::int32_t language_id,
                                          const char16_t* version, const char16_t* help_location) {
  UntracedCall([&] {
    AnnounceToSession({.excel_application = excel_application,
                       .companion = companion,
                       .application_id = application_id,
                       .workbook_file = AnnouncedText(workbook_file),
                       .language_id = static_cast<std::uint32_t>(language_id),
                       .version = AnnouncedText(version),
                       .help_location = AnnouncedText(help_location)});
  });
}

/// Withdraws a companion application; an id that is not announced is ignored.
ZAV_EXPORT void UninitializeXlaInformation(std::uint16_t application_id) {
  UntracedCall([&] {
    Session* session = Session::Current();
    if (session != nullptr) session->Withdraw(application_id);
  });
}

}  // namespace zavrel
