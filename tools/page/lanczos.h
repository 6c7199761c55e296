// Lanczos filters of floating-point planes, by zimg.
#pragma once

#include <cstddef>
#include <memory>

#include "tools/page/axis.h"

struct zimg_filter_graph;

namespace vrk::tool {

// Rows of samples, each where vector instructions want it.
class float_plane {
 public:
  float_plane(std::size_t width, std::size_t rows);

  std::size_t stride() const { return stride_; }  // samples from one row to the next
  float* row(std::size_t y) { return samples_.get() + y * stride_; }
  const float* row(std::size_t y) const { return samples_.get() + y * stride_; }

 private:
  struct release {
    void operator()(float* samples) const;
  };

  std::size_t stride_;
  std::unique_ptr<float[], release> samples_;
};

class lanczos {
 public:
  // Resamples one side; the other has `other` pixels, before and after.
  static lanczos across(const axis& along, unsigned other);
  static lanczos down(const axis& along, unsigned other);

  // Both planes have at least the rows of the picture and of the result.
  void run(const float_plane& from, float_plane& to);

 private:
  struct release {
    void operator()(zimg_filter_graph* graph) const;
  };
  struct shape;
  explicit lanczos(const shape& of);

  std::unique_ptr<zimg_filter_graph, release> graph_;
  float_plane space_;
};

}  // namespace vrk::tool
