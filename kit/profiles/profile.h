// ICC profiles as the ends of a colour conversion.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "kit/bytes.h"

namespace vrk::profiles {

// A profile that cannot serve, told in one sentence that names it.
struct profile_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A profile of gray, RGB, CMYK or six inks. Several threads may read one at once.
class profile {
 public:
  // icc: the bytes of the profile, which need not live on. name: what messages call it by.
  // Throws profile_error for what is no profile, or none of a device with these.
  profile(std::string name, const kit::bytes& icc);

  static profile srgb();

  const std::string& name() const { return name_; }
  std::string description() const;  // what it calls itself, in ASCII
  unsigned channels() const {
    return channels_;
  }                                             // 1: gray; 3: R, G, B; 4: C, M, Y, K; 6: inks as the profile lists them
  void* lcms() const { return handle_.get(); }  // a cmsHPROFILE

 private:
  struct closer {
    void operator()(void* handle) const;
  };
  using owner = std::unique_ptr<void, closer>;

  profile(std::string name, owner handle);

  std::string name_;
  owner handle_;
  unsigned channels_ = 0;
};

}  // namespace vrk::profiles
