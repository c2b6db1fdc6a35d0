#pragma once
// A loaded library: the add-in as the operating system sees it.

#include <filesystem>
#include <string>

namespace zavhost {

class Module {
 public:
  /// Loads a library; the running program itself where `file` is the program's own file and the
  /// system can open that as a library. Throws WorkbookError with one clear line.
  explicit Module(const std::filesystem::path& file);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  /// The file as the system names it.
  const std::filesystem::path& file() const { return file_; }
  /// The address of an export by its name or its number; null when there is none.
  void* Find(const std::string& name) const;
  void* Find(std::uint16_t ordinal) const;

 private:
  void* handle_ = nullptr;
  std::filesystem::path file_;
};

/// The handle of the running program, as an add-in may ask for it; null where there is none.
void* ProgramHandle();

}  // namespace zavhost
