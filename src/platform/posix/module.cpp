#include "platform/module.h"

#include <dlfcn.h>

#include <cerrno>
#include <system_error>

#include "platform/exhausted_memory.h"
#include "platform/utf.h"

namespace zavrel {

std::optional<LoadedModule> LoadedModule::ByName(const std::u16string& name) {
  void* handle = dlopen(Utf8FromUtf16(name).c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle == nullptr) return std::nullopt;
  dlclose(handle);  // the handle stays valid, since another owner keeps the library loaded
  return LoadedModule(handle);
}

LoadedModule LoadedModule::HostExecutable() { return LoadedModule(RTLD_DEFAULT); }

ExportAddress LoadedModule::FindExport(const char* name) const { return dlsym(handle_, name); }

ExportAddress LoadedModule::FindExport(std::uint16_t) const { return nullptr; }

std::optional<Module> Module::Load(const std::filesystem::path& full_path, std::string* problem) {
  if (!full_path.is_absolute()) return std::nullopt;
  std::error_code ignored;
  const bool is_program = std::filesystem::equivalent(full_path, HostExecutablePath(), ignored);
  errno = 0;
  void* handle = dlopen(is_program ? nullptr : full_path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle != nullptr) return Module(handle);
  ThrowIfNoMemory();
  if (problem != nullptr) *problem = dlerror();
  return std::nullopt;
}

Module::~Module() {
  if (handle_ != nullptr) dlclose(handle_);
}

std::filesystem::path LibraryFileName(const std::string& product, std::int32_t version) {
  return "lib" + product + std::to_string(version) + ".so";
}

std::filesystem::path HostExecutablePath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

bool PinModuleContaining(const void* address) noexcept {
  Dl_info info{};
  return dladdr(address, &info) != 0 &&
         dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE) != nullptr;
}

std::filesystem::path PathOfModuleContaining(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code error;
  std::filesystem::path path = std::filesystem::canonical(info.dli_fname, error);
  ThrowIfNoMemory(error);
  return path;
}

}  // namespace zavrel
