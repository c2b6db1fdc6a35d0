// Entry points by which a macro shows the progress of its own long work.
#include <memory>

#include "frame/macro_call.h"
#include "frame/session.h"
#include "platform/export.h"
#include "platform/windows/ole_owners.h"
#include "services/progress_dialog.h"

namespace zavrel {
namespace {

/// The work of the macro that runs. Its dialog has no owner to disable, since a macro that is
/// stopped never enables it again.
struct MacroProgress {
  struct Work {
    explicit Work(std::u16string_view title) : dialog(progress, nullptr, title, true) {}
    services::Progress progress;
    services::ProgressDialog dialog;
  };
  std::unique_ptr<Work> work;
};

/// Null without a session.
MacroProgress* KeptProgress() {
  Session* const session = Session::Current();
  return session == nullptr ? nullptr : &session->Kept<MacroProgress>();
}

}  // namespace

/// Long work begins, in place of any that began before. A dialog with this title appears after a
/// second. Returns a failure number.
ZAV_EXPORT std::uint32_t ZavrelBeginProgressVB(BSTR title) {
  return MacroCall("ZavrelBeginProgressVB", [&] {
    MacroProgress* const kept = KeptProgress();
    if (kept == nullptr) return;
    kept->work.reset();
    kept->work = std::make_unique<MacroProgress::Work>(BstrView(title));
    kept->work->progress.Advance(0);
  });
}

/// The step that begins now, and the share of the work that is done, 0 to 1. Returns 1 if the user
/// has cancelled, otherwise 0; also 0 if no work has begun. Work that says nothing for a minute
/// loses its dialog.
ZAV_EXPORT std::int32_t ZavrelStepProgressVB(BSTR text, double share) {
  constexpr std::int32_t kGoOn = 0, kCancelled = 1;
  return MacroStatus("ZavrelStepProgressVB", kGoOn, [&]() -> std::int32_t {
    const MacroProgress* const kept = KeptProgress();
    if (kept == nullptr || kept->work == nullptr) return kGoOn;
    kept->work->progress.Step(BstrView(text), share);
    return kept->work->progress.cancelled() ? kCancelled : kGoOn;
  });
}

/// The work is done: the dialog goes. Returns a failure number.
ZAV_EXPORT std::uint32_t ZavrelEndProgressVB() {
  return MacroCall("ZavrelEndProgressVB", [&] {
    if (MacroProgress* const kept = KeptProgress()) kept->work.reset();
  });
}

}  // namespace zavrel
