// Memory for the library's handles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vrk::tool {

// Memory of one handle, by the protocol of every create function: asked for the size, then given the memory.
class stage_handle {
 public:
  // `create` calls the create function with the memory that it is given. Returns false when the library refuses the
  // tables.
  template <class Create>
  bool build(const Create& create) {
    const std::uint32_t size = create(nullptr);
    if (size == 0) return false;
    memory_ = std::make_unique<std::byte[]>(size);
    return create(memory_.get()) != 0;
  }
  void* get() const { return memory_.get(); }

 private:
  std::unique_ptr<std::byte[]> memory_;
};

}  // namespace vrk::tool
