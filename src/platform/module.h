#pragma once
// Programs and libraries in this process, and what they export.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace zavrel {

/// The address of an export; the caller knows its real type and casts with AsFunction.
using ExportAddress = void*;

template <typename Function>
Function* AsFunction(ExportAddress address) {
  return reinterpret_cast<Function*>(address);
}

/// A module that somebody else keeps loaded.
class LoadedModule {
 public:
  /// The module loaded under this name ("XLCall32"; ".DLL" is understood); its use count stays as
  /// it is.
  static std::optional<LoadedModule> ByName(const std::u16string& name);
  /// The program itself. On systems with one space of symbols, that whole space.
  static LoadedModule HostExecutable();

  /// Null when there is no such export; a number finds none where exports have names alone.
  ExportAddress FindExport(const char* name) const;
  ExportAddress FindExport(std::uint16_t number) const;
  /// The system's handle. Null for the program where it has none.
  void* handle() const { return handle_; }

 private:
  friend class Module;
  explicit LoadedModule(void* handle) : handle_(handle) {}

  void* handle_;
};

/// Owner of a loaded library: it is unloaded when the owner goes.
class Module {
 public:
  /// Loads a library by its full path; by the program's own, the program. What it imports is looked
  /// for in its own folder and among the system's libraries, never in the current folder or the
  /// search path. Nothing when the path is not absolute or the library cannot be loaded; the system
  /// shows no error box, and what it has to say goes to `problem`.
  static std::optional<Module> Load(const std::filesystem::path& full_path,
                                    std::string* problem = nullptr);

  Module(Module&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Module& operator=(Module&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Module();

  /// As LoadedModule's. Not to be called once the module is unloaded.
  ExportAddress FindExport(const char* name) const {
    return LoadedModule(handle_).FindExport(name);
  }
  ExportAddress FindExport(std::uint16_t number) const {
    return LoadedModule(handle_).FindExport(number);
  }

 private:
  explicit Module(void* handle) : handle_(handle) {}

  void* handle_;
};

/// Full path of the running program; empty when the system does not tell.
std::filesystem::path HostExecutablePath();

/// Keeps the module whose code or data holds this address loaded until the process ends. False when
/// the system refuses.
bool PinModuleContaining(const void* address) noexcept;

/// Full path of the module whose code or data holds this address; empty when no module does.
std::filesystem::path PathOfModuleContaining(const void* address);

}  // namespace zavrel
