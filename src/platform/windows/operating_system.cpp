#include "platform/operating_system.h"

#include "platform/module.h"
#include "platform/registry.h"
#include "platform/utf.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

// The documented GetVersionEx returns the version that the program's manifest claims to support,
// not the running one.
std::string VersionNumber() {
  const auto library = LoadedModule::ByName(u"ntdll");
  const ExportAddress address = library ? library->FindExport("RtlGetVersion") : nullptr;
  RTL_OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (address == nullptr || AsFunction<LONG WINAPI(RTL_OSVERSIONINFOW*)>(address)(&version) != 0)
    return "of unknown version";
  return std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) +
         "." + std::to_string(version.dwBuildNumber);
}

}  // namespace

std::u16string OperatingSystemDescription() {
  std::u16string name = u"Windows";
  const auto key = RegistryKey::Open(RegistryHive::kMachineWide,
                                     u"Software\\Microsoft\\Windows NT\\CurrentVersion");
  if (const auto product = key ? key->ReadText(u"ProductName") : std::nullopt) name = *product;
  return name + u" " + Utf16FromUtf8(VersionNumber());
}

std::uint32_t ThreadPrimaryLanguage() { return GetThreadLocale() & 0x3FF; }

void NameThisThread(const char* name) noexcept {
  try {
    // Looked up, since some supported versions of Windows lack it.
    const auto library = LoadedModule::ByName(u"kernelbase");
    const ExportAddress address = library ? library->FindExport("SetThreadDescription") : nullptr;
    if (address != nullptr)
      AsFunction<HRESULT WINAPI(HANDLE, PCWSTR)>(address)(GetCurrentThread(),
                                                          ToWide(Utf16FromUtf8(name)).c_str());
  } catch (...) {  // a thread without a name works as well
  }
}

}  // namespace zavrel
