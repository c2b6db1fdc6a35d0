#pragma once

#include <unistd.h>

#include <utility>

namespace zavrel {

/// Owner of an open file.
class FileDescriptor {
 public:
  explicit FileDescriptor(int file) noexcept : file_(file) {}
  FileDescriptor(FileDescriptor&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(file_, other.file_);
    return *this;
  }
  ~FileDescriptor() {
    if (file_ >= 0) close(file_);
  }

  explicit operator bool() const { return file_ >= 0; }
  /// Negative if there is none.
  int get() const { return file_; }

 private:
  int file_;
};

}  // namespace zavrel
