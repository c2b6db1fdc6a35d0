#pragma once
// A limit that the system sets this process, while there is one.

#include <sys/resource.h>

namespace zavrel::tests {

class ProcessLimit {
 public:
  /// At most so much of a resource, as RLIMIT_FSIZE: the length of files in bytes.
  ProcessLimit(__rlimit_resource resource, rlim_t most) : resource_(resource) {
    getrlimit(resource, &before_);
    const rlimit limit{most, before_.rlim_max};
    setrlimit(resource, &limit);
  }
  ~ProcessLimit() { setrlimit(resource_, &before_); }
  ProcessLimit(const ProcessLimit&) = delete;
  ProcessLimit& operator=(const ProcessLimit&) = delete;

 private:
  __rlimit_resource resource_;
  rlimit before_{};
};

}  // namespace zavrel::tests
