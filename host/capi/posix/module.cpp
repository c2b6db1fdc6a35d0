#include <dlfcn.h>

#include "host/capi/module.h"
#include "host/workbook/workbook.h"

namespace zavhost {

Module::Module(const std::filesystem::path& file) : file_(std::filesystem::absolute(file)) {
  std::error_code ignored;
  const bool is_program = std::filesystem::equivalent(file, "/proc/self/exe", ignored);
  handle_ = dlopen(is_program ? nullptr : file_.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr)
    throw WorkbookError("the add-in " + file.string() + " cannot be loaded: " + dlerror());
}

Module::~Module() { dlclose(handle_); }

void* Module::Find(const std::string& name) const { return dlsym(handle_, name.c_str()); }
void* Module::Find(std::uint16_t) const { return nullptr; }

void* ProgramHandle() { return nullptr; }

}  // namespace zavhost
