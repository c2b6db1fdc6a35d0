#pragma once
// The diagnostic log's files, which the add-in and whoever looks for its log have to agree on. Both
// stand in the user's temporary folder.

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace zavrel {

/// The empty file that switches the log on.
inline constexpr std::string_view kLogMarker = "BrennicLoggingDetail.txt";

/// The second name is what comes of saving the first with an editor that hides extensions.
inline bool LogIsOn(const std::filesystem::path& folder) {
  const std::filesystem::path marker = folder / kLogMarker;
  std::error_code ignored;
  return std::filesystem::is_regular_file(marker, ignored) ||
         std::filesystem::is_regular_file(marker.native() + marker.extension().native(), ignored);
}

/// `session` is the name of the session that writes.
inline std::filesystem::path LogFileIn(const std::filesystem::path& folder,
                                       std::u16string_view session) {
  return folder / (std::u16string(session) + u".log");
}

}  // namespace zavrel
