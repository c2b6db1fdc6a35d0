#include "faults/open_functions.h"

#include "frame/session.h"
#include "support/quiet_services.h"

namespace zavrel::tests {

OpenFunctions::OpenFunctions() {
  FillSheet(excel);
  Session::Open(ThisAddIn(), QuietServices());
  Announcement announcement;
  announcement.application_id = kFunctionsCompanion;
  announcement.language_id = 9;
  Session::Current()->Announce(announcement);
}

OpenFunctions::~OpenFunctions() { Session::Close(); }

void OpenFunctions::ClearCaches() {
  Session::Current()->KeepUpCaches(UpkeepMode::kClearAll);
  EnterHandle(excel);
}

}  // namespace zavrel::tests
