// Each library imports the allocators of the C library and of the automation by itself: its table
// of imports is made to lead here.
#include "failing_memory/library_memory.h"

#include <windows.h>
// The order matters: the automation types build on the basic ones.
#include <oleauto.h>

#include <cstdlib>
#include <cstring>

namespace zavrel::tests {
namespace {

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): in their place.
void* Malloc(std::size_t bytes) { return LibraryMemory::Grants() ? std::malloc(bytes) : nullptr; }
void* Calloc(std::size_t count, std::size_t bytes) {
  return LibraryMemory::Grants() ? std::calloc(count, bytes) : nullptr;
}
void* Realloc(void* block, std::size_t bytes) {
  return LibraryMemory::Grants() ? std::realloc(block, bytes) : nullptr;
}
// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
char* StrDup(const char* text) { return LibraryMemory::Grants() ? _strdup(text) : nullptr; }
BSTR WINAPI AllocStringByteLen(LPCSTR text, UINT bytes) {
  return LibraryMemory::Grants() ? SysAllocStringByteLen(text, bytes) : nullptr;
}
BSTR WINAPI AllocStringLen(const OLECHAR* text, UINT units) {
  return LibraryMemory::Grants() ? SysAllocStringLen(text, units) : nullptr;
}
SAFEARRAY* WINAPI ArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return LibraryMemory::Grants() ? SafeArrayCreate(type, dimensions, bounds) : nullptr;
}
SAFEARRAY* WINAPI ArrayCreateVector(VARTYPE type, LONG first, ULONG count) {
  return LibraryMemory::Grants() ? SafeArrayCreateVector(type, first, count) : nullptr;
}
HRESULT WINAPI ArrayRedim(SAFEARRAY* array, SAFEARRAYBOUND* bound) {
  return LibraryMemory::Grants() ? SafeArrayRedim(array, bound) : E_OUTOFMEMORY;
}
HRESULT WINAPI ChangeType(VARIANT* to, const VARIANT* from, USHORT flags, VARTYPE type) {
  return LibraryMemory::Grants() ? VariantChangeType(to, const_cast<VARIANT*>(from), flags, type)
                                 : E_OUTOFMEMORY;
}
HRESULT WINAPI CopyInd(VARIANT* to, const VARIANT* from) {
  return LibraryMemory::Grants() ? VariantCopyInd(to, const_cast<VARIANT*>(from)) : E_OUTOFMEMORY;
}

/// So little memory that the add-in keeps nothing in its caches.
BOOL WINAPI MemoryStatus(MEMORYSTATUSEX* status) {
  if (!GlobalMemoryStatusEx(status)) return FALSE;
  status->dwMemoryLoad = 99;
  return TRUE;
}

struct Replaced {
  const char* name;
  std::uintptr_t by;
};

template <class Function>
Replaced By(const char* name, Function* function) {
  return {name, reinterpret_cast<std::uintptr_t>(function)};
}

const Replaced kReplaced[] = {By("malloc", &Malloc),
                              By("calloc", &Calloc),
                              By("realloc", &Realloc),
                              By("_strdup", &StrDup),
                              By("SysAllocStringByteLen", &AllocStringByteLen),
                              By("SysAllocStringLen", &AllocStringLen),
                              By("SafeArrayCreate", &ArrayCreate),
                              By("SafeArrayCreateVector", &ArrayCreateVector),
                              By("SafeArrayRedim", &ArrayRedim),
                              By("VariantChangeType", &ChangeType),
                              By("VariantCopyInd", &CopyInd),
                              By("GlobalMemoryStatusEx", &MemoryStatus)};

/// Leads one entry of a table of imports here, if it is one of these.
void Replace(const char* name, std::uintptr_t* entry) {
  for (const Replaced& replaced : kReplaced) {
    if (std::strcmp(replaced.name, name) != 0) continue;
    DWORD before = 0;
    VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before);
    *entry = replaced.by;
    VirtualProtect(entry, sizeof *entry, before, &before);
  }
}

template <class T>
T* At(void* module, std::size_t address) {
  return reinterpret_cast<T*>(static_cast<char*>(module) + address);
}

}  // namespace

void LibraryMemory::Watch(const LoadedModule& library) {
  void* const module = library.handle();
  const auto start = static_cast<std::size_t>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
  const IMAGE_DATA_DIRECTORY& imports =
      At<IMAGE_NT_HEADERS64>(module, start)
          ->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress);
  for (; from->Name != 0; ++from) {
    const auto* name = At<IMAGE_THUNK_DATA64>(module, from->OriginalFirstThunk);
    auto* entry = At<std::uintptr_t>(module, from->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++entry)
      if (!IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal))
        Replace(At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name, entry);
  }
}

}  // namespace zavrel::tests
