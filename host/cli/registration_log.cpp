#include "host/cli/registration_log.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <string_view>

#include "contracts/log_files.h"
#include "excel/xloper12.h"
#include "host/cli/commands.h"
#include "host/workbook/text.h"

namespace zavhost {
namespace {

constexpr std::string_view kProgram = "Exe fileName=";
constexpr std::string_view kReturnCode = "return code ";
constexpr std::size_t kMostUnits = 400;  // of a line that is shown

/// The number behind "return code "; -1 if there is none.
int ReturnCodeIn(std::string_view line) {
  const std::size_t at = line.find(kReturnCode);
  if (at == std::string_view::npos) return -1;
  const std::string_view digits = line.substr(at + kReturnCode.size());
  int code = -1;
  std::from_chars(digits.data(), digits.data() + digits.size(), code);
  return code;
}

/// What a return code of xlfRegister says about the reason.
std::string_view MeaningOf(int code) {
  switch (code) {
    case xlretSuccess:
      return "one of the arguments was rejected, such as a name that is not allowed or an export "
             "that the file lacks";
    case xlretAbort:
      return "the user stopped the command";
    case xlretInvXlfn:
      return "the program does not know the call";
    case xlretInvCount:
      return "the program does not take this number of arguments";
    case xlretInvXloper:
      return "an argument has a type that the program does not take";
    case xlretStackOvfl:
      return "the program's stack was exhausted";
    case xlretFailed:
      return "the call failed, as it does outside a command or while the program closes";
    case xlretUncalced:
      return "a cell was not calculated yet";
    default:
      return "the C API's documentation explains the code";
  }
}

/// The text behind `head`, cut to a line's worth; nothing if the line begins otherwise.
std::optional<std::string> Behind(std::string_view head, std::string_view line) {
  if (!line.starts_with(head)) return std::nullopt;
  line.remove_prefix(head.size());
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
  return PrintableUtf8(Utf16FromUtf8(line.substr(0, kMostUnits)));
}

}  // namespace

std::vector<std::string> RegistrationProblems(const std::filesystem::path& log) {
  std::ifstream file(log, std::ios::binary);
  std::string program = "the program", first;
  std::size_t refused = 0;
  for (std::string line; std::getline(file, line);) {
    if (const auto path = Behind(kProgram, line))
      program = path->substr(path->find_last_of("\\/") + 1);
    if (const auto reason = Behind(zavrel::kNoCallback, line))
      return {fmt::format("in {}, the add-in could not call Excel, so it registered nothing: {}",
                          program, *reason)};
    if (auto name = Behind(zavrel::kRegistrationRefused, line)) {
      if (refused++ == 0) first = std::move(*name);
    }
  }
  if (refused == 0) return {};
  return {fmt::format("{} refused {}, the first of them {}: {}", program,
                      Plural(refused, "function"), first, MeaningOf(ReturnCodeIn(first)))};
}

}  // namespace zavhost
