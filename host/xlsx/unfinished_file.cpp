#include "host/xlsx/unfinished_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <random>
#include <string_view>
#include <system_error>

#include "host/workbook/text.h"
#include "host/workbook/workbook.h"

namespace zavhost {
namespace fs = std::filesystem;
namespace {

constexpr std::size_t kDigits = 16;
constexpr std::string_view kEnding = ".tmp";

/// Whether a file's name is one that UnfinishedFile makes for a target's.
bool IsTemporaryFor(std::string_view name, std::string_view target) {
  if (name.size() != target.size() + 1 + kDigits + kEnding.size()) return false;
  const std::string_view digits = name.substr(target.size() + 1, kDigits);
  return name.starts_with(target) && name[target.size()] == '.' && name.ends_with(kEnding) &&
         digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

}  // namespace

UnfinishedFile::UnfinishedFile(const fs::path& target) : path_(target) {
  RemoveRemains(target);
  if (unfinished::IsWriteProtected(target)) throw WorkbookError("the file is write-protected");
  std::random_device random;
  path_ += fmt::format(".{:08x}{:08x}{}", random(), random(), kEnding);
  unfinished::Note(path_);
  hold_ = unfinished::Hold(path_);
}

UnfinishedFile::~UnfinishedFile() {
  std::error_code ignored;
  if (!moved_) fs::remove(path_, ignored);
  unfinished::Release(hold_);
  unfinished::Forget(path_);
}

void UnfinishedFile::MoveTo(const fs::path& target) {
  std::error_code error;
  fs::rename(path_, target, error);
  if (error) throw WorkbookError("the file cannot be replaced; it may be open in another program");
  moved_ = true;
}

void RemoveRemains(const fs::path& target) noexcept {
  try {
    const std::string name = Utf8FromPath(target.filename());
    std::error_code error;
    for (fs::directory_iterator next(fs::absolute(target).parent_path(), error);
         !error && next != fs::directory_iterator(); next.increment(error)) {
      std::error_code ignored;
      if (IsTemporaryFor(Utf8FromPath(next->path().filename()), name) &&
          next->is_regular_file(ignored))
        unfinished::RemoveUnlessHeld(next->path());
    }
  } catch (const std::exception&) {  // they stay until the next time
  }
}

}  // namespace zavhost
