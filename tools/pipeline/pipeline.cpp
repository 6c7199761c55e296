#include "tools/pipeline/pipeline.h"

#include <algorithm>
#include <cstring>

namespace vrk::tool {

pipeline::workspace::workspace(const pipeline& stages) : clocks_(stages.stages_.size()) {
  std::size_t longest = 0;
  for (const auto& stage : stages.stages_) longest = std::max(longest, stage->output().pixel_bytes() * stages.width_);
  for (auto& line : lines_) line.resize(longest);
}

void pipeline::append(std::unique_ptr<stage> next) {
  stages_.push_back(std::move(next));
  seconds_.push_back(0);
}

void pipeline::convert(const void* line, std::uint8_t* out, workspace& space) const {
  if (stages_.empty()) std::memcpy(out, line, source_bytes());
  for (std::size_t i = 0; i < stages_.size(); ++i) {
    std::uint8_t* const to = i + 1 == stages_.size() ? out : space.lines_[i % 2].data();
    space.clocks_[i].time([&] { stages_[i]->run(line, width_, to); });
    line = to;
  }
}

void pipeline::collect(const workspace& space) {
  for (std::size_t i = 0; i < stages_.size(); ++i) seconds_[i] += space.clocks_[i].seconds();
}

std::vector<stage_time> pipeline::times() const {
  std::vector<stage_time> all;
  for (std::size_t i = 0; i < stages_.size(); ++i) {
    all.push_back({std::string(stages_[i]->name()), stages_[i]->flags(), seconds_[i]});
  }
  all.push_back({std::string(halftone_->name()), halftone_->flags(), halftone_clock_.seconds()});
  return all;
}

}  // namespace vrk::tool
