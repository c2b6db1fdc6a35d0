#pragma once

#include <string_view>

namespace zavrel::services {

/// Whether the content of a file's Zone.Identifier stream says that the file is not this machine's
/// own: it names any zone but 0. An empty one says nothing.
constexpr bool IsFromElsewhere(std::string_view zone_mark) {
  constexpr std::string_view kZone = "ZoneId=";
  const std::size_t at = zone_mark.find(kZone);
  if (at == std::string_view::npos) return false;
  const std::string_view zone = zone_mark.substr(at + kZone.size());
  return !zone.starts_with('0');
}

}  // namespace zavrel::services
