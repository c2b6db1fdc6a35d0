// What a companion macro add-in calls to switch its functions on and off.
#include "addin/announce.h"

#include "addin/announced_text.h"
#include "addin/session.h"
#include "addin/worksheet_function.h"
#include "platform/export.h"

namespace zavrel {

void AnnounceToSession(const Announcement& announcement) {
  Session* session = Session::Current();
  if (session != nullptr) session->Announce(announcement);
}

/// Announces a companion application and registers the functions that it uses.
/// The automation objects may be null, the texts (null-terminated) null or empty. Without an open
/// session, before xlAutoOpen or after xlAutoClose, nothing is registered and nothing is kept: a
/// companion announces itself again when it is loaded again.
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

/// Withdraws it; an id that was never announced is ignored.
ZAV_EXPORT void UninitializeXlaInformation(std::uint16_t application_id) {
  UntracedCall([&] {
    Session* session = Session::Current();
    if (session != nullptr) session->Withdraw(application_id);
  });
}

}  // namespace zavrel
