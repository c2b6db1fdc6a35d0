#pragma once
// Where the help has what about a function.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/add_in.h"

namespace zavrel::services {

/// A page of the help by its name ("ZavMean"; "pairs" about pairs of data), and its number in
/// compiled help if it has one.
struct HelpTopic {
  std::u16string page;
  std::optional<int> number;
};

/// The page of a function of these tables, by its visible name in any letter case. Other pages are
/// found by their exact names, letters, digits and hyphens; the empty name is the contents. Nothing
/// for any other name.
std::optional<HelpTopic> FindHelpTopic(std::span<const FunctionTable> tables,
                                       std::u16string_view name);

/// A file to open, and what of it.
struct HelpPlace {
  std::filesystem::path file;  // compiled help, or the page itself
  bool is_compiled;
  bool operator==(const HelpPlace&) const = default;
};

/// The files below the add-in's folder that may show the page, best first: in the session's
/// language the compiled help and the page, then the same in English. `language_id` is Windows',
/// with or without a country. Files that are missing are left out, and on Windows also compiled
/// help that came from the internet and was not unblocked: Windows would show empty pages of it.
std::vector<HelpPlace> HelpPlaces(const std::filesystem::path& folder, const HelpTopic& topic,
                                  std::uint32_t language_id);

}  // namespace zavrel::services
