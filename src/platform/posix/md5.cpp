#include "platform/md5.h"

#include <openssl/evp.h>

namespace zavrel {

std::optional<Md5Digest> Md5(std::span<const std::byte> bytes) {
  Md5Digest digest;
  unsigned size = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), reinterpret_cast<unsigned char*>(digest.data()), &size,
                 EVP_md5(), nullptr) != 1 ||
      size != digest.size()) {
    return std::nullopt;
  }
  return digest;
}

}  // namespace zavrel
