#pragma once
// What the add-in's log says about registrations that a program refused.

#include <filesystem>
#include <string>
#include <vector>

namespace zavhost {

/// The problems that the latest session in this log had with its registrations, each explained in
/// one line; empty if there were none or if there is no log.
std::vector<std::string> RegistrationProblems(const std::filesystem::path& log);

}  // namespace zavhost
