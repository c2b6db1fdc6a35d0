#pragma once
// Programs and libraries in this process, and their exports.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace zavrel {

/// The address of an export; the caller knows its actual type and casts it with AsFunction.
using ExportAddress = void*;

template <typename Function>
Function* AsFunction(ExportAddress address) {
  return reinterpret_cast<Function*>(address);
}

/// A module that another owner keeps loaded.
class LoadedModule {
 public:
  /// The module loaded under this name ("XLCall32"; ".DLL" is implied); its use count does not
  /// change.
  static std::optional<LoadedModule> ByName(const std::u16string& name);
  /// The program itself. On systems with a single symbol space, that whole space.
  static LoadedModule HostExecutable();

  /// Null if there is no such export. A number finds no export on systems whose exports have only
  /// names.
  ExportAddress FindExport(const char* name) const;
  ExportAddress FindExport(std::uint16_t number) const;
  /// The system's handle; null for the program on systems that have none for it.
  void* handle() const { return handle_; }

 private:
  friend class Module;
  explicit LoadedModule(void* handle) : handle_(handle) {}

  void* handle_;
};

/// Owner of a loaded library, which its destructor unloads.
class Module {
 public:
  /// Loads a library by its full path, or the program itself by the program's path. Imports are
  /// searched only in the library's own folder and among the system's libraries, never in the
  /// current folder or the search path. Nothing if the path is not absolute or the library cannot
  /// be loaded; the system shows no error box, and `problem` receives its message. Throws
  /// std::bad_alloc if there was no memory for it.
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

/// The name of a library's file, by product, version and bitness: "Pdflib8_x64.DLL" on Windows,
/// "libPdflib8.so" elsewhere.
std::filesystem::path LibraryFileName(const std::string& product, std::int32_t version);

/// Full path of the running program; empty if the system does not provide it.
std::filesystem::path HostExecutablePath();

/// Keeps the module that contains this address loaded until the process ends. False if the system
/// refuses.
bool PinModuleContaining(const void* address) noexcept;

/// Full path of the module that contains this address; empty if there is none. Throws
/// std::bad_alloc.
std::filesystem::path PathOfModuleContaining(const void* address);

}  // namespace zavrel
