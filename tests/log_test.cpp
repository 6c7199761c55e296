#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "kit/blob.h"
#include "vrk.h"

namespace {

using namespace vrk;
using look_up = std::function<std::uint32_t(std::uint32_t, const void*, vrk_table_ref*)>;

// A blob whose tables hold nothing but their own tags, so that a look-up tells which one it chose.
kit::blob blob_of(const char* type, std::initializer_list<const char*> tags) {
  kit::blob blob{.type = type};
  for (const char* tag : tags) blob.entries.push_back({tag, kit::bytes(tag, tag + std::strlen(tag))});
  return blob;
}

// Asks for the length, then for the bytes, out of a block that is exactly as long as the blob. "" when not found.
std::string find(const look_up& fn, const kit::bytes& image) {
  const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[image.size()]);
  std::copy(image.begin(), image.end(), exact.get());
  vrk_table_ref ref{77, nullptr};
  if (fn(std::uint32_t(image.size()), exact.get(), &ref) == 0) {
    EXPECT_EQ(ref.length, 0u);
    return "";
  }
  std::string found(ref.length + 2, '#');  // one byte of guard on each side
  ref.data = reinterpret_cast<std::uint8_t*>(&found[1]);
  EXPECT_EQ(fn(std::uint32_t(image.size()), exact.get(), &ref), 1u);
  EXPECT_EQ(ref.length + 2, found.size());
  EXPECT_TRUE(found.front() == '#' && found.back() == '#');
  return found.substr(1, ref.length);
}

look_up htone(std::uint16_t family, std::uint32_t levels) {
  return [=](auto size, auto blob, auto ref) { return vrk_log_htone(size, blob, ref, family, levels); };
}
look_up ingamma(std::uint16_t family, int step) {
  return [=](auto size, auto blob, auto ref) { return vrk_log_ingamma(size, blob, ref, family, std::int16_t(step)); };
}
look_up ingamma2(std::uint16_t family, int step) {
  return [=](auto size, auto blob, auto ref) { return vrk_log_ingamma2(size, blob, ref, family, std::int16_t(step)); };
}
look_up outgamma(std::uint16_t family) {
  return [=](auto size, auto blob, auto ref) { return vrk_log_outgamma(size, blob, ref, family); };
}
look_up rank(std::uint16_t family, int step, int ink) {
  return [=](auto size, auto blob, auto ref) {
    return vrk_log_rank(size, blob, ref, family, std::int16_t(step), std::int16_t(ink));
  };
}

TEST(log, tags_that_follow_from_the_arguments) {
  const kit::bytes hatt = blob_of("HATT", {"HH1", "HH4", "HH6", "XH1", "XH4", "XH6"}).encode();
  EXPECT_EQ(find(htone(0, 1), hatt), "HH1");
  EXPECT_EQ(find(htone(1, 6), hatt), "XH6");
  EXPECT_EQ(find(htone(0, 0x104), hatt), "HH4");

  kit::blob ingm = blob_of("INGM", {"HD2", "HD1", "HT", "HB1", "HB2", "XB2", "HB00", "HB+3", "XB-5", "XB+5"});
  const char* const five[] = {"HD2", "HD1", "HT", "HB1", "HB2"};
  for (int step = -2; step <= 2; ++step) EXPECT_EQ(find(ingamma(0, step), ingm.encode()), five[step + 2]);
  EXPECT_EQ(find(ingamma(1, 2), ingm.encode()), "XB2");
  EXPECT_EQ(find(ingamma2(0, 0), ingm.encode()), "HB00");
  EXPECT_EQ(find(ingamma2(0, 3), ingm.encode()), "HB+3");
  EXPECT_EQ(find(ingamma2(1, -5), ingm.encode()), "XB-5");
  ingm.version = "002z";
  EXPECT_EQ(find(ingamma2(1, 5), ingm.encode()), "XB+5");
  EXPECT_EQ(find(ingamma(1, 2), ingm.encode()), "");

  const kit::bytes otgm = blob_of("OTGM", {"XN", "HN"}).encode();
  EXPECT_EQ(find(outgamma(0), otgm), "HN");
  EXPECT_EQ(find(outgamma(1), otgm), "XN");
}

TEST(log, rank_falls_back_to_the_entry_of_all_inks) {
  kit::blob blob = blob_of("HRKT", {"HR+2", "HR-9", "HY-9", "XR00", "XN00", "XK00", "XC00", "XM00", "XD00"});
  EXPECT_EQ(find(rank(0, -9, 3), blob.encode()), "HY-9");
  EXPECT_EQ(find(rank(0, -9, 0), blob.encode()), "HR-9");
  EXPECT_EQ(find(rank(0, 2, 5), blob.encode()), "HR+2");
  const char* const inks[] = {"XK00", "XC00", "XM00", "XR00", "XD00", "XN00"};
  for (int ink = 0; ink < 6; ++ink) EXPECT_EQ(find(rank(1, 0, ink), blob.encode()), inks[ink]);
  EXPECT_EQ(find(rank(1, 9, 0), blob.encode()), "");
  for (int ink : {-1, 6}) EXPECT_EQ(find(rank(0, 2, ink), blob.encode()), "");
  blob.entries[2].length = 1000;  // the ink has its entry, so that is the one that fails
  EXPECT_EQ(find(rank(0, -9, 3), blob.encode()), "");
}

struct csc_case {
  int converter, family, kind;
  char class_code;
  std::uint16_t a, b, c, d;
  const char *full, *plain;  // chosen from a directory with, and without, the preferred variants "?xP "
};

const csc_case csc_cases[] = {
    {1, 0, 0, 'C', 1, 1, 1, 0, "HT", "HT"},   {1, 0, 0, ' ', 1, 1, 1, 0, "HPP", "HP"},
    {1, 0, 0, 'C', 1, 0, 0, 0, "HP", "HP"},   {1, 0, 0, 'C', 2, 2, 1, 0, "HSP", "HS"},
    {1, 1, 0, ' ', 3, 0, 1, 0, "XCP", "XC"},  {1, 1, 0, 'C', 9, 1, 0, 0, "XT", "XT"},
    {1, 1, 0, ' ', 2, 0, 257, 0, "XS", "XS"}, {1, 0, 0, ' ', 0, 0, 1, 0, "", ""},
    {1, 1, 0, ' ', 4, 1, 1, 0, "", ""},       {1, 0, 0, ' ', 257, 0, 0, 0, "", ""},
    {1, 0, 1, ' ', 0, 0, 0, 0, "HT", "HT"},   {1, 1, 1, 'C', 0, 0, 0, 0, "XT", "XT"},
    {1, 0, 2, ' ', 0, 0, 0, 0, "HC", "HC"},   {1, 1, 2, ' ', 0, 0, 0, 256, "XT", "XT"},
    {1, 0, 3, 'C', 0, 0, 0, 0, "HT", "HT"},   {1, 1, 3, ' ', 1, 1, 1, 0, "XC", "XC"},
    {1, 0, 4, 'C', 0, 0, 1, 0, "HG", "HG"},   {1, 1, 4, 'C', 0, 0, 1, 0, "XT", "XT"},
    {1, 1, 4, ' ', 0, 0, 1, 0, "XPP", "XP"},  {1, 1, 4, 'c', 0, 1, 0, 0, "XP", "XP"},
    {1, 0, 5, 'C', 0, 0, 0, 0, "HBK", "HBK"}, {1, 0, 6, ' ', 0, 0, 0, 0, "HSC", "HSC"},
    {1, 1, 5, 'C', 0, 0, 0, 0, "XT", "XT"},   {1, 1, 5, ' ', 0, 0, 0, 0, "XS", "XS"},
    {1, 1, 6, 'C', 0, 0, 0, 0, "XT", "XT"},   {1, 1, 6, ' ', 0, 0, 0, 0, "XS", "XS"},
    {1, 0, 7, ' ', 1, 1, 1, 1, "", ""},

    {2, 0, 0, 'C', 1, 1, 0, 0, "HPP", "HP"},  {2, 0, 0, 'C', 1, 0, 1, 0, "HP", "HP"},
    {2, 1, 0, 'C', 2, 1, 0, 0, "XSP", "XS"},  {2, 0, 0, 'C', 3, 257, 0, 0, "HC", "HC"},
    {2, 1, 0, 'C', 3, 1, 0, 0, "XCP", "XC"},  {2, 0, 0, 'C', 4, 1, 0, 0, "", ""},
    {2, 0, 0, 'C', 0, 1, 0, 0, "HNP", "HN"},  {2, 0, 0, 'C', 0, 0, 1, 0, "HN", "HN"},
    {2, 1, 0, ' ', 4, 1, 0, 0, "XNP", "XN"},  {2, 1, 0, ' ', 1, 0, 0, 0, "XN", "XN"},
    {2, 0, 1, 'C', 0, 1, 0, 0, "HNP", "HN"},  {2, 1, 1, 'C', 0, 0, 0, 0, "XN", "XN"},
    {2, 0, 1, ' ', 0, 1, 0, 0, "HN", "HN"},   {2, 0, 2, 'C', 0, 0, 0, 0, "HC", "HC"},
    {2, 1, 3, 'C', 0, 0, 1, 0, "XN", "XN"},   {2, 1, 2, ' ', 0, 0, 0, 0, "XN", "XN"},
    {2, 0, 4, ' ', 0, 1, 0, 1, "HPP", "HPG"}, {2, 0, 4, ' ', 0, 1, 0, 0, "HPP", "HP"},
    {2, 0, 4, 'C', 0, 1, 0, 0, "HP", "HP"},   {2, 0, 4, ' ', 0, 0, 0, 257, "HPG", "HPG"},
    {2, 1, 4, 'C', 0, 1, 0, 1, "XPG", "XPG"}, {2, 1, 4, 'C', 0, 1, 0, 2, "XP", "XP"},
    {2, 1, 4, ' ', 0, 1, 0, 1, "XNP", "XNG"}, {2, 1, 4, ' ', 0, 1, 0, 0, "XNP", "XN"},
    {2, 1, 4, ' ', 0, 2, 0, 1, "XNG", "XNG"}, {2, 0, 5, ' ', 0, 0, 0, 1, "HPG", "HPG"},
    {2, 0, 5, 'C', 0, 0, 0, 0, "HS", "HS"},   {2, 1, 5, 'C', 0, 0, 0, 1, "XPG", "XPG"},
    {2, 1, 5, 'C', 0, 0, 0, 0, "XS", "XS"},   {2, 1, 5, ' ', 0, 0, 0, 1, "XNG", "XNG"},
    {2, 1, 5, ' ', 0, 0, 0, 0, "XN", "XN"},   {2, 0, 6, ' ', 0, 0, 0, 1, "HS", "HS"},
    {2, 1, 6, 'C', 0, 0, 0, 0, "XS", "XS"},   {2, 1, 6, ' ', 0, 0, 0, 0, "XN", "XN"},
    {2, 1, 7, ' ', 1, 1, 1, 1, "", ""},
};

look_up csc(const csc_case& c) {
  return [=](auto size, auto blob, auto ref) {
    const auto fn = c.converter == 1 ? vrk_log_csc1 : vrk_log_csc2;
    return fn(size, blob, ref, std::uint16_t(c.family), std::uint16_t(c.kind), c.a, c.b, c.c, c.d);
  };
}

TEST(log, converter_tags) {
  for (const csc_case& c : csc_cases) {
    const char* const type = c.converter == 1 ? "CS1T" : "CS2T";
    kit::blob plain = blob_of(
        type, {"HT", "HP", "HS", "HC", "HG", "HBK", "HSC", "HN", "HPG", "XT", "XP", "XS", "XC", "XN", "XPG", "XNG"});
    kit::blob full = plain;
    const kit::blob preferred = blob_of(type, {"HPP", "HSP", "HCP", "HNP", "XPP", "XSP", "XCP", "XNP"});
    full.entries.insert(full.entries.end(), preferred.entries.begin(), preferred.entries.end());
    plain.class_code = full.class_code = c.class_code;
    SCOPED_TRACE(testing::Message() << "csc" << c.converter << " family " << c.family << " kind " << c.kind << " class "
                                    << c.class_code << " select " << c.a << c.b << c.c << c.d);
    EXPECT_EQ(find(csc(c), full.encode()), c.full);
    EXPECT_EQ(find(csc(c), plain.encode()), c.plain);
  }
}

TEST(log, csc2_takes_what_it_tested_when_the_preferred_table_is_missing) {
  EXPECT_EQ(find(csc({2, 0, 4, ' ', 0, 1, 0, 1, "", ""}), blob_of("CS2T", {"HPG", "HNP"}).encode()), "HNP");
}

TEST(log, blobs_that_do_not_hold_up) {
  const kit::blob good = blob_of("OTGM", {"HN"});
  struct fault {
    const char* name;
    std::function<void(kit::blob&)> make;
  };
  const fault faults[] = {
      {"magic", [](kit::blob& b) { b.magic = "ISTC"; }},
      {"type", [](kit::blob& b) { b.type = "INGM"; }},
      {"version", [](kit::blob& b) { b.version = "001{"; }},
      {"end mark", [](kit::blob& b) { b.end_mark = 0; }},
      {"no entries", [](kit::blob& b) { b.entry_count = 0; }},
      {"directory runs past the blob", [](kit::blob& b) { b.entry_count = 2; }},
      {"tag missing", [](kit::blob& b) { b.entries[0].tag = "HN0"; }},
      {"data one byte past the blob", [](kit::blob& b) { b.entries[0].length = 3; }},
      {"offset past the blob", [](kit::blob& b) { b.entries[0].offset = 55; }},
      {"offset and length wrap around", [](kit::blob& b) { b.entries[0].offset = 0xFFFFFFFF; }},
  };
  EXPECT_EQ(find(outgamma(0), good.encode()), "HN");
  for (const fault& f : faults) {
    kit::blob bad = good;
    f.make(bad);
    EXPECT_EQ(find(outgamma(0), bad.encode()), "") << f.name;
  }
  kit::bytes prefix = good.encode();
  for (prefix.pop_back(); !prefix.empty(); prefix.pop_back()) EXPECT_EQ(find(outgamma(0), prefix), "");
}

TEST(log, first_of_two_entries_with_one_tag_wins) {
  kit::blob blob = blob_of("OTGM", {"HN", "HN"});
  blob.entries[1].data = {9};
  EXPECT_EQ(find(outgamma(0), blob.encode()), "HN");
  blob.entries[0].data.clear();  // an empty table is found as well
  vrk_table_ref ref{77, nullptr};
  const kit::bytes image = blob.encode();
  EXPECT_EQ(vrk_log_outgamma(std::uint32_t(image.size()), image.data(), &ref, 0), 1u);
  EXPECT_EQ(ref.length, 0u);
}

TEST(log, arguments_out_of_range_leave_the_length_alone) {
  const kit::bytes image = blob_of("OTGM", {"HN"}).encode();
  const auto kept = [&](const look_up& fn, std::uint32_t size, const void* blob) {
    vrk_table_ref ref{77, nullptr};
    return fn(size, blob, &ref) == 0 && ref.length == 77;
  };
  const auto size = std::uint32_t(image.size());
  for (const look_up& fn :
       {outgamma(2), htone(2, 1), ingamma(2, 0), ingamma2(2, 0), rank(2, 0, 0), csc({1, 2, 0, ' ', 1, 0, 0, 0, "", ""}),
        htone(0, 2), ingamma(0, 3), ingamma(0, -3), ingamma2(0, 6), ingamma2(0, -6), rank(0, 10, 0), rank(0, -10, 0)}) {
    EXPECT_TRUE(kept(fn, size, image.data()));
  }
  for (const look_up& fn : {outgamma(0), htone(0, 1), ingamma(0, 0), ingamma2(0, 0), rank(0, 0, 0),
                            csc({2, 0, 7, ' ', 1, 0, 0, 0, "", ""})}) {
    EXPECT_TRUE(kept(fn, 0, image.data()));
    EXPECT_TRUE(kept(fn, size, nullptr));
    EXPECT_EQ(fn(size, image.data(), nullptr), 0u);
  }
}

}  // namespace
