#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "diagnostics/log.h"
#include "platform/temporary_folder.h"

namespace zavrel::tests {

/// An empty folder for logs; closes the session's log before it goes.
class LogFolder {
 public:
  explicit LogFolder(std::string_view marker = {})
      : path_(TemporaryFolder() / u"zavrel log test \u00e4 ") {
    path_ += std::to_string(getpid());  // tests run side by side
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
    if (!marker.empty()) std::ofstream(path_ / marker) << "";
  }
  ~LogFolder() {
    CloseLog();
    std::filesystem::remove_all(path_);
  }
  LogFolder(const LogFolder&) = delete;
  LogFolder& operator=(const LogFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path file() const { return path_ / "Session8.log"; }
  std::string content() const {
    const std::ifstream file(this->file(), std::ios::binary);
    std::ostringstream all;
    all << file.rdbuf();
    return all.str();
  }
  /// What the session's log got since it was opened; closes it.
  std::string closed_lines() const {
    CloseLog();
    return lines();
  }
  /// Without the line that holds the time.
  std::string lines() const {
    const std::string all = content();
    return all.substr(all.find('\n') + 1);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace zavrel::tests
