#include "platform/show_box.h"
#include "platform/message_box.h"

#include "platform/windows/wide.h"

namespace zavrel {

constexpr const wchar_t* kNobodyReads = L"ZAVREL_NO_MESSAGE_BOX";

// Each library has its own copy of this code; they share the process's environment.
void SuppressErrorBoxes() { SetEnvironmentVariableW(kNobodyReads, L"1"); }

bool SystemHasAReader() {
  if (GetEnvironmentVariableW(kNobodyReads, nullptr, 0) > 0) return false;
  USEROBJECTFLAGS flags{};
  return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                   nullptr) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

bool ShowSystemErrorBox(const std::u16string& title, const std::u16string& text) {
  // Without an owner window, only this flag disables the thread's windows meanwhile.
  return MessageBoxW(nullptr, ToWide(text).c_str(), ToWide(title).c_str(),
                     MB_OK | MB_ICONERROR | MB_TASKMODAL) > 0;
}

}  // namespace zavrel
