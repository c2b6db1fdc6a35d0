#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace zavrel {

using Md5Digest = std::array<std::byte, 16>;

/// The MD5 digest (RFC 1321), computed by the system; only for mixing bits, not for security.
/// Nothing if the system refuses.
std::optional<Md5Digest> Md5(std::span<const std::byte> bytes);

}  // namespace zavrel
