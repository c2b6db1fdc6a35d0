#pragma once
// The files of the diagnostic log, for the add-in and for programs that look for its log. Both are
// in the user's temporary folder. The lines here are those that ZavHost doctor looks for.

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace zavrel {

/// The empty file that switches the log on.
inline constexpr std::string_view kLogMarker = "BrennicLoggingDetail.txt";

/// Links do not count. The second name results when an editor that hides extensions saves the
/// first.
inline bool LogIsOn(const std::filesystem::path& folder) {
  const std::filesystem::path marker = folder / kLogMarker;
  std::error_code ignored;
  const auto is_file = [&](const std::filesystem::path& path) {
    return std::filesystem::is_regular_file(std::filesystem::symlink_status(path, ignored));
  };
  return !folder.empty() &&
         (is_file(marker) || is_file(marker.native() + marker.extension().native()));
}

/// `session` is the name of the writing session.
inline std::filesystem::path LogFileIn(const std::filesystem::path& folder,
                                       std::u16string_view session) {
  return folder / (std::u16string(session) + u".log");
}

/// Begins the line of each function that Excel refused to register. Behind it:
/// "ZavMean, return code 32, value #VALUE!".
inline constexpr std::string_view kRegistrationRefused = "Registration refused: ";

/// Begins the line of an add-in that did not find the callback through which it calls Excel.
inline constexpr std::string_view kNoCallback = "Callback of Excel not found: ";

}  // namespace zavrel
