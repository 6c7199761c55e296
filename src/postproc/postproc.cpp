#include "postproc/postproc_kernels.h"
#include "postproc/postproc_setup.h"
#include "vrk.h"

using namespace vrk;

extern "C" {

uint32_t VRK_CALL vrk_create_postproc(uint32_t planes, uint32_t main_on, const void* main_table, uint32_t k_on,
                                      const void* k_table, uint32_t c_on, const void* c_table, uint32_t m_on,
                                      const void* m_table, uint32_t y_on, const void* y_table, uint32_t fifth_on,
                                      const void* fifth_table, uint32_t sixth_on, const void* sixth_table,
                                      uint32_t flags, void* mem) {
  const postproc_request request{planes & 0xFF,
                                 {main_on, main_table},
                                 {{{k_on, k_table},
                                   {c_on, c_table},
                                   {m_on, m_table},
                                   {y_on, y_table},
                                   {fifth_on, fifth_table},
                                   {sixth_on, sixth_table}}},
                                 flags};
  postproc_plan plan;
  if (!postproc_check(request, plan)) return 0;
  const u64 size = postproc_handle_size(request, plan);
  if (mem == nullptr || size == 0) return u32(size);
  carver block(mem, size);
  return postproc_build(request, plan, block) ? u32(block.used()) : 0;
}

uint32_t VRK_CALL vrk_query_postproc_hint(const void* handle) { return record_of<postproc_handle>(handle).flags; }

uint32_t VRK_CALL vrk_xform_postproc(void* handle, const void* src, uint32_t pixel_count, void* dst) {
  return postproc_transform(record_of<postproc_handle>(handle), static_cast<const u8*>(src), pixel_count,
                            static_cast<u8*>(dst));
}

void VRK_CALL vrk_free_postproc(void*) {}

}  // extern "C"
