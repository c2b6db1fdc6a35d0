// ZavrelGetExceptionInfoVB explains a failure number.
#include "excel/wide_text.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "macros/macro_memory.h"
#include "platform/export.h"
#include "platform/windows/ole_owners.h"

namespace zavrel {

/// Writes class name, place and composed message of a recorded failure into the given strings
/// (wide; null ones are skipped) and returns 1. Returns 0 and changes nothing if the number is not,
/// or no longer, in the store.
ZAV_EXPORT std::int32_t ZavrelGetExceptionInfoVB(std::uint32_t failure_number, BSTR* class_name,
                                                 BSTR* place, BSTR* message) {
  return MacroStatus<std::int32_t>("ZavrelGetExceptionInfoVB", 0, [&] {
    Session* session = Session::Current();
    if (session == nullptr) return 0;
    const auto failure = session->failures().Find(failure_number);
    if (!failure) return 0;
    // All three are made before the first is handed over: if memory runs out, nothing is changed.
    OwnedBstr new_class = OwnedBstr::Wide(failure->class_name());
    OwnedBstr new_place = OwnedBstr::Wide(Utf16FromUtf8(failure->place()));
    OwnedBstr new_message = OwnedBstr::Wide(session->MessageOf(*failure));
    if (IsPlaceFor(class_name)) new_class.HandOver(class_name);
    if (IsPlaceFor(place)) new_place.HandOver(place);
    if (IsPlaceFor(message)) new_message.HandOver(message);
    return 1;
  });
}

}  // namespace zavrel
