#pragma once
// The part of swapped_array.cpp that depends on the system.

#include <cstddef>
#include <filesystem>
#include <memory>

#include "platform/swapped_array.h"

namespace zavrel {

/// A new file in the folder, mapped into memory, with all its bytes zero and reserved on disk; null
/// if there can be none. The deleter unmaps and deletes it.
std::shared_ptr<double> MapTemporaryFile(const std::filesystem::path& folder, std::size_t bytes,
                                         SwapFailure& failure);

}  // namespace zavrel
