// ZavrelGetExceptionInfoVB: what a failure number stands for.
#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oleauto.h>

#include <array>
#include <string_view>

#include "addin/session.h"
#include "addin/worksheet_function.h"
#include "excel/wide_text.h"
#include "platform/export.h"

namespace zavrel {
namespace {

/// Owns a fresh automation string until it is handed over.
class NewString {
 public:
  explicit NewString(std::u16string_view text)
      : text_(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                static_cast<UINT>(text.size()))) {
    if (text_ == nullptr) throw std::bad_alloc();
  }
  NewString(const NewString&) = delete;
  NewString& operator=(const NewString&) = delete;
  ~NewString() { SysFreeString(text_); }

  /// Puts the string in the caller's place, whose old one goes; a null place is left alone.
  void HandOver(BSTR* place) {
    if (place == nullptr) return;
    SysFreeString(*place);
    *place = std::exchange(text_, nullptr);
  }

 private:
  BSTR text_;
};

}  // namespace

/// Writes class name, place and composed message of a recorded failure into the strings that are
/// given (wide; null ones are left out) and returns 1. Returns 0 and touches nothing when the
/// number is not, or no longer, in the store.
ZAV_EXPORT std::int32_t ZavrelGetExceptionInfoVB(std::uint32_t failure_number, BSTR* class_name,
                                                 BSTR* place, BSTR* message) {
  return MacroStatus<std::int32_t>("ZavrelGetExceptionInfoVB", 0, [&] {
    Session* session = Session::Current();
    if (session == nullptr) return 0;
    const auto failure = session->failures().Find(failure_number);
    if (!failure) return 0;
    // All three are made before the first is handed over: without memory nothing is touched.
    NewString new_class(failure->class_name());
    NewString new_place(Utf16FromUtf8(failure->place()));
    NewString new_message(session->MessageOf(*failure));
    new_class.HandOver(class_name);
    new_place.HandOver(place);
    new_message.HandOver(message);
    return 1;
  });
}

}  // namespace zavrel
