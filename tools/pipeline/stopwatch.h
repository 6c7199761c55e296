// Time spent on one kind of work, added up over many short pieces.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace vrk::tool {

struct stage_time {
  std::string name;
  std::vector<std::string> flags;  // of a stage of the library, in words
  double seconds;
};

class stopwatch {
  using clock = std::chrono::steady_clock;

 public:
  template <class Work>
  decltype(auto) time(const Work& work) {
    const piece running(*this);
    return work();
  }
  double seconds() const { return std::chrono::duration<double>(total_).count(); }

 private:
  struct piece {
    explicit piece(stopwatch& owner) : owner_(owner), start_(clock::now()) {}
    ~piece() { owner_.total_ += clock::now() - start_; }
    piece(const piece&) = delete;
    piece& operator=(const piece&) = delete;

    stopwatch& owner_;
    clock::time_point start_;
  };

  clock::duration total_{};
};

}  // namespace vrk::tool
