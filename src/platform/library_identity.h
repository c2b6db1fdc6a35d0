#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace zavrel {

/// The location and version of this library's file. Both are constant while it is loaded.
struct LibraryIdentity {
  std::filesystem::path path;
  std::uint32_t major_version = kNoVersion;
  std::u16string version_text;  // "8.0.0.1"

  /// Major version of a file whose version cannot be read.
  static constexpr std::uint32_t kNoVersion = 0xFFFF;

  /// The identity of this library, read on first use. At process attach it could not be read: the
  /// loader holds its lock then, and no other library may be loaded.
  static const LibraryIdentity& OfThisLibrary();

  std::filesystem::path folder() const { return path.parent_path(); }
};

/// This library's major version.
std::int32_t MajorVersion();

/// The name of an add-in's session and its log: "VekZavrelFuncs8" for "ZavrelFuncs".
std::string SessionName(std::u16string_view add_in);

}  // namespace zavrel
