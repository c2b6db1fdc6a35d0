#include "platform/module.h"

#include "platform/utf.h"
#include "platform/windows/memory_error.h"
#include "platform/windows/system_message.h"
#include "platform/windows/wide.h"

namespace zavrel {
namespace {

HMODULE HandleOf(void* handle) { return static_cast<HMODULE>(handle); }

std::filesystem::path PathOf(HMODULE module) {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return {};
    if (length < path.size()) return path.substr(0, length);
    if (path.size() >= kLongestPath) return {};
    path.resize(path.size() * 2);
  }
}

// While it lives, the system opens no box about a broken library.
class NoErrorBoxes {
 public:
  NoErrorBoxes() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_); }
  ~NoErrorBoxes() { SetThreadErrorMode(before_, nullptr); }
  NoErrorBoxes(const NoErrorBoxes&) = delete;
  NoErrorBoxes& operator=(const NoErrorBoxes&) = delete;

 private:
  DWORD before_ = 0;
};

}  // namespace

std::optional<LoadedModule> LoadedModule::ByName(const std::u16string& name) {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, ToWide(name).c_str(),
                          &module)) {
    return std::nullopt;
  }
  return LoadedModule(module);
}

LoadedModule LoadedModule::HostExecutable() { return LoadedModule(GetModuleHandleW(nullptr)); }

ExportAddress LoadedModule::FindExport(const char* name) const {
  return reinterpret_cast<ExportAddress>(GetProcAddress(HandleOf(handle_), name));
}

ExportAddress LoadedModule::FindExport(std::uint16_t number) const {
  return reinterpret_cast<ExportAddress>(GetProcAddress(
      HandleOf(handle_), reinterpret_cast<const char*>(static_cast<std::uintptr_t>(number))));
}

std::optional<Module> Module::Load(const std::filesystem::path& full_path, std::string* problem) {
  if (!full_path.is_absolute()) return std::nullopt;
  std::filesystem::path native = full_path;
  native.make_preferred();  // the system's search rules understand only backslashes
  const NoErrorBoxes no_error_boxes;
  const HMODULE module = LoadLibraryExW(
      native.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (module != nullptr) return Module(module);
  const DWORD error = GetLastError();
  ThrowIfNoMemory(error);
  if (problem != nullptr) *problem = SystemMessage(error);
  return std::nullopt;
}

Module::~Module() {
  if (handle_ != nullptr) FreeLibrary(HandleOf(handle_));
}

std::filesystem::path LibraryFileName(const std::string& product, std::int32_t version) {
  return product + std::to_string(version) + "_x64.DLL";
}

std::filesystem::path HostExecutablePath() { return PathOf(nullptr); }

bool PinModuleContaining(const void* address) noexcept {
  HMODULE module = nullptr;
  return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                            static_cast<const wchar_t*>(address), &module) != 0;
}

std::filesystem::path PathOfModuleContaining(const void* address) {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          static_cast<const wchar_t*>(address), &module)) {
    return {};
  }
  return PathOf(module);
}

}  // namespace zavrel
