#include "platform/windows/private_access.h"

#include "platform/windows/system_handle.h"

namespace zavrel {
namespace {

struct User {
  alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> bytes;

  PSID id() { return reinterpret_cast<TOKEN_USER*>(bytes.data())->User.Sid; }
};

bool ReadUser(User& user) noexcept {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return false;
  const SystemHandle owner(token);
  DWORD size = 0;
  return GetTokenInformation(token, TokenUser, user.bytes.data(),
                             static_cast<DWORD>(user.bytes.size()), &size) != FALSE;
}

}  // namespace

bool PrivateAccess::Complete() noexcept {
  User user;
  std::array<std::byte, SECURITY_MAX_SID_SIZE> system;
  auto system_size = static_cast<DWORD>(system.size());
  auto* const list = reinterpret_cast<ACL*>(list_.data());
  return ReadUser(user) &&
         CreateWellKnownSid(WinLocalSystemSid, nullptr, system.data(), &system_size) &&
         InitializeAcl(list, static_cast<DWORD>(list_.size()), ACL_REVISION) &&
         AddAccessAllowedAce(list, ACL_REVISION, GENERIC_ALL, user.id()) &&
         AddAccessAllowedAce(list, ACL_REVISION, GENERIC_ALL, system.data()) &&
         InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) &&
         SetSecurityDescriptorDacl(&descriptor_, TRUE, list, FALSE) &&
         SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
}

}  // namespace zavrel
