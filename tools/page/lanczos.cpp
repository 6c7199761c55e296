#include "tools/page/lanczos.h"

#include <zimg.h>

#include <algorithm>
#include <new>
#include <stdexcept>

namespace vrk::tool {
namespace {

constexpr std::align_val_t alignment{64};
constexpr std::size_t aligned_samples = std::size_t(alignment) / sizeof(float);

void check(bool works) {
  if (works) return;
  char text[200] = "";
  zimg_get_last_error(text, sizeof text);
  throw std::runtime_error(std::string("resampling: ") + text);
}

}  // namespace

float_plane::float_plane(std::size_t width, std::size_t rows)
    : stride_((width + aligned_samples - 1) / aligned_samples * aligned_samples),
      samples_(static_cast<float*>(::operator new[](stride_* rows * sizeof(float), alignment))) {
  std::fill_n(samples_.get(), stride_ * rows, 0.0F);
}

void float_plane::release::operator()(float* samples) const { ::operator delete[](samples, alignment); }

struct lanczos::shape {
  unsigned width, height, result_width, result_height;
  double left, top, part_width, part_height;
};

lanczos lanczos::across(const axis& along, unsigned other) {
  return lanczos({along.pixels, other, along.result, other, along.start, 0, along.length, double(other)});
}
lanczos lanczos::down(const axis& along, unsigned other) {
  return lanczos({other, along.pixels, other, along.result, 0, along.start, double(other), along.length});
}

lanczos::lanczos(const shape& of) : space_(0, 0) {
  zimg_image_format from;
  zimg_image_format_default(&from, ZIMG_API_VERSION);
  from.pixel_type = ZIMG_PIXEL_FLOAT;
  zimg_image_format to = from;
  from.width = of.width;
  from.height = of.height;
  from.active_region = {of.left, of.top, of.part_width, of.part_height};
  to.width = of.result_width;
  to.height = of.result_height;
  zimg_graph_builder_params how;
  zimg_graph_builder_params_default(&how, ZIMG_API_VERSION);
  how.resample_filter = ZIMG_RESIZE_LANCZOS;
  how.filter_param_a = lanczos_lobes;
  graph_.reset(zimg_filter_graph_build(&from, &to, &how));
  check(graph_ != nullptr);
  std::size_t bytes = 0;
  check(zimg_filter_graph_get_tmp_size(graph_.get(), &bytes) == ZIMG_ERROR_SUCCESS);
  space_ = float_plane(bytes / sizeof(float) + 1, 1);
}

void lanczos::run(const float_plane& from, float_plane& to) {
  zimg_image_buffer_const in{ZIMG_API_VERSION, {}};
  zimg_image_buffer out{ZIMG_API_VERSION, {}};
  in.plane[0] = {from.row(0), std::ptrdiff_t(from.stride() * sizeof(float)), ZIMG_BUFFER_MAX};
  out.plane[0] = {to.row(0), std::ptrdiff_t(to.stride() * sizeof(float)), ZIMG_BUFFER_MAX};
  check(zimg_filter_graph_process(graph_.get(), &in, &out, space_.row(0), nullptr, nullptr, nullptr, nullptr) ==
        ZIMG_ERROR_SUCCESS);
}

void lanczos::release::operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }

}  // namespace vrk::tool
