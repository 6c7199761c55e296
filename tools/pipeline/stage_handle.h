// What the wrappers of all stages share: the memory of a handle, and what is said when a stage refuses a table.
#pragma once

#include <vrk.h>

#include <memory>
#include <string>

#include "tools/pipeline/table.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

// Memory of one handle, by the protocol of every create function: asked for the size, then given the memory.
class handle {
 public:
  // `create` calls the create function with the memory that it is given; false when the stage refused its tables.
  template <class Create>
  bool build(const Create& create) {
    const std::uint32_t size = create(nullptr);
    if (size == 0) return false;
    memory_ = std::make_unique<std::uint32_t[]>((std::size_t{size} + 3) / 4);
    return create(memory_.get()) != 0;
  }
  void* get() const { return memory_.get(); }

 private:
  std::unique_ptr<std::uint32_t[]> memory_;  // words, because a handle lies at a multiple of 4
};

// why: of kit/explain.h
[[noreturn]] inline void refuse(const table& refused, const std::string& why) {
  throw user_error(refused.name + ": " + (why.empty() ? "is refused: what follows its header does not hold up" : why));
}

}  // namespace vrk::tool
