// The entry points that a macro calls before the worksheet functions that fill its arrays with
// category names and positions. functions.json gives the form of the strings.
#include "contracts/message_ids.h"
#include "diagnostics/vek_exception.h"
#include "excel/wide_text.h"
#include "frame/macro_call.h"
#include "frame/session.h"
#include "macros/macro_handshakes.h"
#include "macros/macro_memory.h"
#include "macros/windows/macro_variant.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// The address of a macro's VARIANT, which must last beyond the call.
std::uint64_t Wanted(const char* place, const VARIANT* array) {
  const std::uint64_t address = LastingAddress(array);
  if (address == 0) throw VekParameterError(place, messages::kMessageParameterError);
  return address;
}

using MakeId = OwnedBstr (*)(std::u16string_view text);

/// Enters the array under a new id and hands the id over; without an open session it is empty.
std::uint32_t Enter(const char* place, BSTR* id, MakeId make, auto make_pending) {
  return MacroCall(place, [&] {
    if (!IsPlaceFor(id)) throw VekParameterError(place, messages::kMessageParameterError);
    PendingArrays pending = make_pending();
    Session* session = Session::Current();
    make(session == nullptr
             ? std::u16string()
             : Utf16FromUtf8(session->Kept<MacroHandshakes>().Enter(std::move(pending))))
        .HandOver(id);
  });
}

}  // namespace

/// Arranges that the next ZavCategoryNames writes the names into `names`, as an array of strings,
/// and returns their number. Returns 0, or the number of the failure, after which nothing new is
/// arranged.
ZAV_EXPORT std::uint32_t ZavrelCategoryNamesGetArrayVB(const VARIANT* names) {
  return MacroCall("ZavrelCategoryNamesGetArrayVB", [&] {
    const std::uint64_t address = Wanted("ZavrelCategoryNamesGetArrayVB", names);
    if (Session* session = Session::Current())
      session->Kept<MacroHandshakes>().next_category_names() = address;
  });
}

/// The same for the ZavCategoryNamesPrivate call that passes the `id` handed out here (ANSI).
ZAV_EXPORT std::uint32_t ZavrelCategoryNamesSetArrayPrivateVB(const VARIANT* names, BSTR* id) {
  constexpr const char* kPlace = "ZavrelCategoryNamesSetArrayPrivateVB";
  return Enter(kPlace, id, &OwnedBstr::Ansi,
               [&] { return PendingCategoryNames{Wanted(kPlace, names)}; });
}

/// The same with a wide id.
ZAV_EXPORT std::uint32_t ZavrelCategoryNamesSetArrayPrivateWVB(const VARIANT* names, BSTR* id) {
  constexpr const char* kPlace = "ZavrelCategoryNamesSetArrayPrivateWVB";
  return Enter(kPlace, id, &OwnedBstr::Wide,
               [&] { return PendingCategoryNames{Wanted(kPlace, names)}; });
}

/// Arranges that the next ZavCategoryIndices writes the positions, from 1, into `array`, as an
/// array of 32-bit integers, and returns their number. Returns 0, or the number of the failure,
/// after which nothing new is arranged.
ZAV_EXPORT std::uint32_t ZavrelCategoryIndicesSetArrayVB(const VARIANT* array) {
  return MacroCall("ZavrelCategoryIndicesSetArrayVB", [&] {
    const std::uint64_t address = Wanted("ZavrelCategoryIndicesSetArrayVB", array);
    if (Session* session = Session::Current())
      session->Kept<MacroHandshakes>().next_category_indices() = address;
  });
}

/// The same for the ZavCategoryIndicesPrivate call that passes the `id` handed out here (ANSI).
ZAV_EXPORT std::uint32_t ZavrelCategoryIndicesSetArrayPrivateVB(const VARIANT* array, BSTR* id) {
  constexpr const char* kPlace = "ZavrelCategoryIndicesSetArrayPrivateVB";
  return Enter(kPlace, id, &OwnedBstr::Ansi,
               [&] { return PendingCategoryIndices{Wanted(kPlace, array)}; });
}

}  // namespace zavrel
