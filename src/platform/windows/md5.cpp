#include "platform/md5.h"

#include <windows.h>

#include <bcrypt.h>

namespace zavrel {
namespace {

/// Null if the system has no MD5. It stays open, since opening takes far longer than a digest.
BCRYPT_ALG_HANDLE Algorithm() {
  static const BCRYPT_ALG_HANDLE algorithm = [] {
    BCRYPT_ALG_HANDLE opened = nullptr;
    return BCRYPT_SUCCESS(BCryptOpenAlgorithmProvider(&opened, BCRYPT_MD5_ALGORITHM, nullptr, 0))
               ? opened
               : nullptr;
  }();
  return algorithm;
}

class Hash {
 public:
  Hash() {
    if (Algorithm() != nullptr &&
        !BCRYPT_SUCCESS(BCryptCreateHash(Algorithm(), &handle_, nullptr, 0, nullptr, 0, 0)))
      handle_ = nullptr;
  }
  ~Hash() {
    if (handle_ != nullptr) BCryptDestroyHash(handle_);
  }
  Hash(const Hash&) = delete;
  Hash& operator=(const Hash&) = delete;

  bool Add(std::span<const std::byte> bytes) {
    auto* data = reinterpret_cast<PUCHAR>(const_cast<std::byte*>(bytes.data()));
    return handle_ != nullptr &&
           BCRYPT_SUCCESS(BCryptHashData(handle_, data, static_cast<ULONG>(bytes.size()), 0));
  }
  bool Finish(Md5Digest& digest) {
    return BCRYPT_SUCCESS(BCryptFinishHash(handle_, reinterpret_cast<PUCHAR>(digest.data()),
                                           static_cast<ULONG>(digest.size()), 0));
  }

 private:
  BCRYPT_HASH_HANDLE handle_ = nullptr;
};

}  // namespace

std::optional<Md5Digest> Md5(std::span<const std::byte> bytes) {
  Hash hash;
  Md5Digest digest;
  if (!hash.Add(bytes) || !hash.Finish(digest)) return std::nullopt;
  return digest;
}

}  // namespace zavrel
