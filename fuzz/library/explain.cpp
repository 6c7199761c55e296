// The kit explains an image exactly when the library refuses it.
#include "kit/explain.h"

#include "fuzz/library/curves.h"
#include "fuzz/library/handle.h"
#include "kit/read_tables.h"

namespace {

using namespace vrk::fuzz;
using vrk::kit::refusal;

// The library's verdict: both calls, where the handle is not too large to be built here.
template <class Create>
void expect_agreement(const refusal& why, Create create, headers examined = headers::by_both_calls) {
  const std::uint32_t size = create(nullptr);
  if (size > most_handle_bytes) return;
  const handle h(create, 5, examined);
  require(bool(why) != bool(h), h ? "the kit has a reason, the library none" : "the library refuses without a reason");
  require(!why || !why.text().empty(), "a reason has words");
}

// Look-ups of every kind of blob.
bool any_look_up(const exact_memory& blob) {
  const std::uint32_t size = std::uint32_t(blob.size());
  vrk_table_ref ref{0, nullptr};
  std::uint32_t found = vrk_log_outgamma(size, blob.data(), &ref, 0);
  for (std::uint16_t kind = 0; kind < 7; ++kind) {
    for (std::uint16_t a = 0; a < 4; ++a) {
      found |= vrk_log_csc1(size, blob.data(), &ref, kind % 2, kind, a, 1, a % 2, 0);
      found |= vrk_log_csc2(size, blob.data(), &ref, kind % 2, kind, a, a % 2, 0, 1);
    }
  }
  for (std::int16_t step = -5; step <= 5; ++step) {
    found |= vrk_log_ingamma(size, blob.data(), &ref, 0, step) | vrk_log_ingamma2(size, blob.data(), &ref, 0, step);
    found |= vrk_log_rank(size, blob.data(), &ref, 0, step, 1);
  }
  for (const unsigned levels : {1u, 4u, 6u}) found |= vrk_log_htone(size, blob.data(), &ref, 0, levels);
  return found != 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::kit;
  input in(data, size);
  const unsigned kind = in.u8() % 9, choices = in.u8();
  const byte_span section = in.section(), beside = in.section();
  vrk::fuzz::bytes made(section.begin(), section.end());
  if (kind >= 5 && kind <= 7) made = curve_image_of(section, kind == 6);
  const exact_memory image(made, choices >> 7);
  const std::uint32_t length = std::uint32_t(made.size()), prec12 = (choices & 1) != 0 ? VRK_PREC12 : 0;
  const void* const at = image.data();
  switch (kind) {
    case 0:
      expect_agreement(why_refused_csc1(made, prec12 != 0),
                       [&](void* mem) { return vrk_create_csc1(length, at, prec12, mem); });
      break;
    case 1: {
      const unsigned samples = (choices & 2) != 0 ? 1 : 3;
      expect_agreement(why_refused_csc2(made, samples, prec12 != 0),
                       [&](void* mem) { return vrk_create_csc2(length, at, samples, prec12, mem); });
      break;
    }
    case 2: {
      const exact_memory spread(beside, 0);
      const vrk::kit::bytes rows(beside.begin(), beside.end());
      if (why_refused_edtb(rows)) break;
      expect_agreement(why_refused_edpr(made), [&](void* mem) {
        return vrk_create_ed(5, std::uint32_t(spread.size()), spread.data(), length, at, choices, mem);
      });
      break;
    }
    case 3: {
      const exact_memory levels(beside, 0);
      if (why_refused_edpr(vrk::kit::bytes(beside.begin(), beside.end()))) break;
      expect_agreement(why_refused_edtb(made), [&](void* mem) {
        return vrk_create_ed(5, length, at, std::uint32_t(levels.size()), levels.data(), choices, mem);
      });
      break;
    }
    case 4:
      expect_agreement(why_refused_dith(made),
                       [&](void* mem) { return vrk_create_dither(7, length, at, choices, mem); });
      break;
    case 5: {
      const unsigned count = (choices & 2) != 0 ? 3 : 1;
      expect_agreement(
          why_refused_curves(made, count),
          [&](void* mem) { return vrk_create_preproc(nullptr, 0, 0, count == 1, at, count == 3, at, 0, mem); },
          headers::by_size_call);
      break;
    }
    case 6: {
      const unsigned planes = choices % 3 == 0 ? 1 : choices % 3 == 1 ? 4 : 6;
      const refusal why = why_refused_main_curves(made, planes);
      const auto create = [&](void* mem) {
        return vrk_create_postproc(planes, 1, at, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                                   nullptr, 0, mem);
      };
      if (!why) expect_agreement(why, create);  // pixels of other counts are the transform's to refuse
      break;
    }
    case 7:
      expect_agreement(why_refused_plane_curve(made), [&](void* mem) {
        return vrk_create_postproc(1, 0, nullptr, 1, at, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                                   mem);
      });
      break;
    default:
      require(!why_refused_blob(made) || !any_look_up(image), "a blob with a reason holds nothing");
  }
  return 0;
}
