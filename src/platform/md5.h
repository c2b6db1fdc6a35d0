#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace zavrel {

using Md5Digest = std::array<std::byte, 16>;

/// The MD5 digest (RFC 1321) by the system's cryptography: for spreading bits, nothing that needs
/// to be secret or genuine. Nothing when the system refuses.
std::optional<Md5Digest> Md5(std::span<const std::byte> bytes);

}  // namespace zavrel
