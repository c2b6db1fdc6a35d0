// ZavrelShowHelpVB opens the help.
#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "frame/add_in.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "platform/export.h"
#include "platform/utf.h"
#include "platform/windows/ole_owners.h"
#include "services/windows/help_viewer.h"

namespace zavrel {
namespace {

constexpr const char* kPlace = "ZavrelShowHelpVB";

}  // namespace

/// Opens the help, in the session's language, at the page of a function, by its name in formulas, or
/// at another page by its name; null or an empty text: the contents. `name` is wide. Returns 0, or
/// the number of the failure, which ZavrelGetExceptionInfoVB explains: VekParameterError for a name
/// that no page can have, VekErrorOpeningFile where no help could be opened.
ZAV_EXPORT std::uint32_t ZavrelShowHelpVB(BSTR name) {
  return MacroCall(kPlace, [&] {
    Session* const session = Session::Current();
    if (session == nullptr) throw VekUnknownException(kPlace, messages::kMessageUnknownException);
    const auto topic = services::FindHelpTopic(ThisAddIn().tables, BstrView(name));
    if (!topic) throw VekParameterError(kPlace, messages::kMessageParameterError);
    const std::filesystem::path folder = LibraryIdentity::OfThisLibrary().folder();
    if (!session->Kept<services::HelpViewer>().Show(
            services::HelpPlaces(folder, *topic, session->language_id()), *topic)) {
      throw VekErrorOpeningFile(kPlace, messages::kMessageErrorOpeningFile,
                                {Utf16FromPath(folder / "help") + u": " + topic->page});
    }
  });
}

}  // namespace zavrel
