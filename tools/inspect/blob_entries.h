// The entries of a parameter blob of unknown origin.
#pragma once

#include <optional>
#include <vector>

#include "kit/blob.h"
#include "kit/explain.h"

namespace vrk::tool {

struct entry_state {
  kit::refusal refused{};                // its data cannot be had; else
  std::optional<std::size_t> same_as{};  // the number of an entry before it that has the very same bytes
};

// For every entry. The data of those that are neither refused nor the same as others add up to at most twice the blob.
std::vector<entry_state> look_at_entries(const kit::blob& directory, const kit::bytes& blob);

}  // namespace vrk::tool
