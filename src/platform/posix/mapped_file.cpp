#include "platform/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace zavrel {
namespace {

/// A file without a name, which others cannot open. Where the file system has no such files, one
/// that loses its name at once.
FileDescriptor OpenNameless(const std::filesystem::path& folder) {
  FileDescriptor file(
      open(folder.c_str(), O_TMPFILE | O_EXCL | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (file) return file;
  std::string name = folder / "zavrel-XXXXXX";
  FileDescriptor named(mkostemp(name.data(), O_CLOEXEC));
  if (named) unlink(name.c_str());
  return named;
}

/// Beyond the limit for files, the system would not only refuse but also end the process.
bool IsWithinFileLimit(std::size_t bytes) {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY ||
         bytes <= limit.rlim_cur;
}

bool Reserve(const FileDescriptor& file, std::size_t bytes) {
  int error = EINTR;
  while (error == EINTR) error = posix_fallocate(file.get(), 0, static_cast<off_t>(bytes));
  return error == 0;
}

}  // namespace

std::shared_ptr<double> MapTemporaryFile(const std::filesystem::path& folder, std::size_t bytes,
                                         SwapFailure& failure) {
  failure = SwapFailure::kNoFile;
  const FileDescriptor file = OpenNameless(folder);
  if (!file) return nullptr;
  failure = SwapFailure::kNoSpace;
  if (!IsWithinFileLimit(bytes) || !Reserve(file, bytes)) return nullptr;
  failure = SwapFailure::kNoAddresses;
  // The mapping keeps the file.
  void* address = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  if (address == MAP_FAILED) return nullptr;
  return {static_cast<double*>(address), [bytes](double* first) { munmap(first, bytes); }};
}

}  // namespace zavrel
