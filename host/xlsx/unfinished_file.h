#pragma once
// Files that are being written beside the ones that they will replace.

#include <filesystem>

namespace zavhost {

/// A temporary file, which replaces its target when it is whole and is deleted if it never is: by
/// its owner, by DeleteUnfinishedFiles if somebody ends the program early, and by the next program
/// that writes to the same target if nothing of this could happen.
class UnfinishedFile {
 public:
  /// Throws WorkbookError (without a file's name) if the target is write-protected.
  explicit UnfinishedFile(const std::filesystem::path& target);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Throws WorkbookError (without a file's name).
  void MoveTo(const std::filesystem::path& target);

 private:
  std::filesystem::path path_;
  bool moved_ = false;
  int hold_ = -1;
};

/// Deletes the temporary files for a target whose program does not write them any more.
void RemoveRemains(const std::filesystem::path& target) noexcept;

/// Deletes this program's temporary files. Safe in a signal handler.
void DeleteUnfinishedFiles() noexcept;

namespace unfinished {

// What each system has of its own.

/// Notes a file for DeleteUnfinishedFiles. A path that is too long, or the fifth at a time, is not.
void Note(const std::filesystem::path& file) noexcept;
void Forget(const std::filesystem::path& file) noexcept;
/// Creates a file and holds it, so that other programs know that it is being written; -1 if the
/// system does not hold files, or this one.
int Hold(const std::filesystem::path& file) noexcept;
void Release(int hold) noexcept;
/// Deletes a file, unless a program still holds it, as far as the system can tell.
void RemoveUnlessHeld(const std::filesystem::path& file) noexcept;
/// Whether there is such a file, and nothing may be written to it.
bool IsWriteProtected(const std::filesystem::path& file) noexcept;

}  // namespace unfinished
}  // namespace zavhost
