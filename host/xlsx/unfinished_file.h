#pragma once
// The temporary file that is being written, for whoever ends the program early.

#include <filesystem>

namespace zavhost {

/// Notes the file that is being written; an empty path: none is any more. Paths that are too long
/// to note are not.
void NoteUnfinishedFile(const std::filesystem::path& file) noexcept;

/// Deletes the file that is being written, if any. Safe in a signal handler.
void DeleteUnfinishedFile() noexcept;

}  // namespace zavhost
