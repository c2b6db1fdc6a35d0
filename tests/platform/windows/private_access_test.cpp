// Who may open what the add-in creates by name. Wine keeps the lists of mutexes and shows them;
// that the system refuses other users, only Windows can show.
#include <doctest/doctest.h>
#include <windows.h>

// After windows.h.
#include <aclapi.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/named_mutex.h"
#include "platform/windows/private_access.h"
#include "platform/windows/system_handle.h"

namespace zavrel {
namespace {

/// Owner of the access list of an object.
class AccessList {
 public:
  explicit AccessList(HANDLE object) {
    GetSecurityInfo(object, SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list_,
                    nullptr, &descriptor_);
  }
  ~AccessList() { LocalFree(descriptor_); }
  AccessList(const AccessList&) = delete;
  AccessList& operator=(const AccessList&) = delete;

  std::vector<ACCESS_ALLOWED_ACE*> entries() const {
    std::vector<ACCESS_ALLOWED_ACE*> entries;
    void* entry = nullptr;
    for (DWORD i = 0; list_ != nullptr && GetAce(list_, i, &entry); ++i)
      entries.push_back(static_cast<ACCESS_ALLOWED_ACE*>(entry));
    return entries;
  }

 private:
  ACL* list_ = nullptr;
  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
};

/// "DOMAIN\name" of an entry.
std::wstring NameOf(ACCESS_ALLOWED_ACE* entry) {
  wchar_t name[256], domain[256];
  DWORD name_size = 256, domain_size = 256;
  SID_NAME_USE use{};
  if (!LookupAccountSidW(nullptr, &entry->SidStart, name, &name_size, domain, &domain_size, &use))
    return {};
  return name;
}

TEST_CASE("a named mutex is for its user and the system only") {
  const auto mutex = NamedMutex::Open(u"Zavrel   test mutex of one user");
  REQUIRE(mutex);
  const SystemHandle opened(
      OpenMutexW(SYNCHRONIZE | READ_CONTROL, FALSE, L"Zavrel   test mutex of one user"));
  REQUIRE(opened);
  const AccessList list(opened.get());
  const auto entries = list.entries();
  REQUIRE(entries.size() == 2);
  wchar_t user[256];
  DWORD size = 256;
  REQUIRE(GetUserNameW(user, &size));
  CHECK(NameOf(entries[0]) == user);
  CHECK(IsWellKnownSid(&entries[1]->SidStart, WinLocalSystemSid));
  for (const ACCESS_ALLOWED_ACE* const entry : entries)
    CHECK(entry->Header.AceType == ACCESS_ALLOWED_ACE_TYPE);
  CHECK(NamedMutex::Open(u"Zavrel   test mutex of one user"));
}

TEST_CASE("the access list inherits nothing") {
  PrivateAccess access;
  REQUIRE(access);
  SECURITY_DESCRIPTOR_CONTROL control{};
  DWORD revision = 0;
  REQUIRE(GetSecurityDescriptorControl(access.get()->lpSecurityDescriptor, &control, &revision));
  CHECK((control & SE_DACL_PROTECTED) != 0);
  CHECK_FALSE(access.get()->bInheritHandle);
}

}  // namespace
}  // namespace zavrel
