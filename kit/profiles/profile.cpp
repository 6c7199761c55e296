#include "kit/profiles/profile.h"

#include <lcms2.h>

#include <cstdint>
#include <cstring>
#include <utility>

namespace vrk::profiles {
namespace {

// The library answers with whatever the file has, which need not be one of the enumeration's values.
template <class Signature>
std::uint32_t number_of(const Signature& signature) {
  static_assert(sizeof signature == sizeof(std::uint32_t));
  std::uint32_t number;
  std::memcpy(&number, &signature, sizeof number);
  return number;
}

// 0 for spaces that neither pictures nor tables of the library are in.
unsigned channels_of(std::uint32_t space) {
  switch (space) {
    case cmsSigGrayData:
      return 1;
    case cmsSigRgbData:
      return 3;
    case cmsSigCmykData:
      return 4;
    case cmsSig6colorData:
    case cmsSigMCH6Data:
      return 6;
    default:
      return 0;
  }
}

bool is_device(std::uint32_t what) {
  return what == cmsSigInputClass || what == cmsSigDisplayClass || what == cmsSigOutputClass ||
         what == cmsSigColorSpaceClass;
}

}  // namespace

void profile::closer::operator()(void* handle) const { cmsCloseProfile(handle); }

profile::profile(std::string name, const kit::bytes& icc)
    : profile(std::move(name), owner(cmsOpenProfileFromMem(icc.data(), cmsUInt32Number(icc.size())))) {}

profile profile::srgb() { return {"sRGB", owner(cmsCreate_sRGBProfile())}; }

profile::profile(std::string name, owner handle) : name_(std::move(name)), handle_(std::move(handle)) {
  if (handle_ == nullptr) throw profile_error(name_ + ": is no ICC profile, or a damaged one");
  channels_ = channels_of(number_of(cmsGetColorSpace(lcms())));
  if (channels_ == 0 || !is_device(number_of(cmsGetDeviceClass(lcms())))) {
    throw profile_error(name_ + ": is no profile of a device with gray, RGB, CMYK or six inks");
  }
}

std::string profile::description() const {
  char text[256] = "";
  cmsGetProfileInfoASCII(lcms(), cmsInfoDescription, "en", "US", text, sizeof text);
  return *text != 0 ? text : "a profile without a name";
}

}  // namespace vrk::profiles
