#include "platform/md5.h"

#include <md5.h>

#include <cstdint>

namespace zavrel {

std::optional<Md5Digest> Md5(std::span<const std::byte> bytes) {
  MD5_CTX state;
  MD5Init(&state);
  MD5Update(&state, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  Md5Digest digest;
  MD5Final(reinterpret_cast<std::uint8_t*>(digest.data()), &state);
  return digest;
}

}  // namespace zavrel
