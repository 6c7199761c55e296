#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <type_traits>

#include "kit/blob.h"
#include "tests/guard.h"
#include "vrk.h"

namespace {

using namespace vrk;
using look_up = std::function<std::uint32_t(std::uint32_t, const void*, vrk_table_ref*)>;

// One of the look-ups with what follows its first three arguments.
template <class... Selectors>
look_up with(std::uint32_t(VRK_CALL* fn)(std::uint32_t, const void*, vrk_table_ref*, Selectors...),
             std::type_identity_t<Selectors>... selectors) {
  return [=](auto size, auto blob, auto ref) { return fn(size, blob, ref, selectors...); };
}

// A blob whose tables hold nothing but their own tags, so that a look-up tells which one it chose.
kit::blob blob_of(const std::string& type, const std::vector<std::string>& tags) {
  kit::blob blob{.type = type};
  for (const std::string& tag : tags) blob.entries.push_back({tag, kit::bytes(tag.begin(), tag.end())});
  return blob;
}

// Asks for the length, then for the bytes. "" when not found. The blob ends at an unreadable page.
std::string find(const look_up& fn, const kit::bytes& blob) {
  test::guarded_copy image(blob);
  vrk_table_ref ref{77, nullptr};
  if (fn(image.size(), image.data(), &ref) == 0) {
    EXPECT_EQ(ref.length, 0u);
    return "";
  }
  test::fenced_block found(ref.length);
  ref.data = found.data();
  EXPECT_EQ(fn(image.size(), image.data(), &ref), 1u);
  EXPECT_EQ(ref.length, found.contents().size());
  EXPECT_TRUE(found.fences_intact());
  return {found.contents().begin(), found.contents().end()};
}

const struct {
  look_up fn;
  std::string kind, tag;  // kind: type of blob and newest version
} tag_cases[] = {
    {with(vrk_log_htone, 0, 1), "HATT001z", "HH1"},
    {with(vrk_log_htone, 1, 6), "HATT001z", "XH6"},
    {with(vrk_log_htone, 0, 0x104), "HATT001z", "HH4"},
    {with(vrk_log_outgamma, 0), "OTGM001z", "HN"},
    {with(vrk_log_outgamma, 1), "OTGM001z", "XN"},
    {with(vrk_log_ingamma, 0, -2), "INGM001z", "HD2"},
    {with(vrk_log_ingamma, 0, -1), "INGM001z", "HD1"},
    {with(vrk_log_ingamma, 0, 0), "INGM001z", "HT"},
    {with(vrk_log_ingamma, 0, 1), "INGM001z", "HB1"},
    {with(vrk_log_ingamma, 1, 2), "INGM001z", "XB2"},
    {with(vrk_log_ingamma2, 0, 0), "INGM002z", "HB00"},
    {with(vrk_log_ingamma2, 0, 3), "INGM002z", "HB+3"},
    {with(vrk_log_ingamma2, 1, -5), "INGM002z", "XB-5"},
    {with(vrk_log_rank, 0, -9, 3), "HRKT001z", "HY-9"},
    {with(vrk_log_rank, 1, 0, 0), "HRKT001z", "XK00"},
    {with(vrk_log_rank, 1, 0, 1), "HRKT001z", "XC00"},
    {with(vrk_log_rank, 1, 0, 2), "HRKT001z", "XM00"},
    {with(vrk_log_rank, 1, 9, 4), "HRKT001z", "XD+9"},
    {with(vrk_log_rank, 1, 0, 5), "HRKT001z", "XN00"},
    {with(vrk_log_csc1, 0, 1, 0, 0, 0, 0), "CS1T001z", "HT"},
    {with(vrk_log_csc2, 0, 6, 0, 0, 0, 0), "CS2T001z", "HS"},
};

TEST(look_up, tags_that_follow_from_the_arguments) {
  for (const auto& [fn, kind, tag] : tag_cases) {
    kit::blob blob = blob_of(kind.substr(0, 4), {"H", "X", "HR-9", "XR00", "XR+9", tag});
    blob.entries.push_back({tag, {9}});  // the first of two wins
    for (const std::string version : {"0010", "001z", "0020", "002z", "0030", "\260010"}) {
      blob.version = version;
      EXPECT_EQ(find(fn, blob.encode()), version <= kind.substr(4) ? tag : "") << tag << " in version " << version;
    }
    blob.version = "0010";
    blob.type = "TYPE";
    EXPECT_EQ(find(fn, blob.encode()), "") << tag;
  }
}

TEST(look_up, rank_falls_back_to_the_entry_of_all_inks) {
  kit::blob blob = blob_of("HRKT", {"HR+2", "HR-9", "HY-9"});
  EXPECT_EQ(find(with(vrk_log_rank, 0, -9, 0), blob.encode()), "HR-9");
  EXPECT_EQ(find(with(vrk_log_rank, 0, 2, 5), blob.encode()), "HR+2");
  EXPECT_EQ(find(with(vrk_log_rank, 1, 2, 0), blob.encode()), "");
  EXPECT_EQ(find(with(vrk_log_rank, 0, 2, -1), blob.encode()) + find(with(vrk_log_rank, 0, 2, 6), blob.encode()), "");
  blob.entries[2].length = 1000;  // the ink has its entry, so that is the one that fails
  EXPECT_EQ(find(with(vrk_log_rank, 0, -9, 3), blob.encode()), "");
}

struct csc_case {
  int converter;
  std::uint16_t family, kind;
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

TEST(look_up, converter_tags) {
  for (const csc_case& c : csc_cases) {
    kit::blob blob = blob_of(c.converter == 1 ? "CS1T" : "CS2T", {"HT", "HP", "HS", "HC", "HG", "HBK", "HSC", "HN",
                                                                  "HPG", "XT", "XP", "XS", "XC", "XN", "XPG", "XNG"});
    blob.class_code = c.class_code;
    const look_up fn = with(c.converter == 1 ? vrk_log_csc1 : vrk_log_csc2, c.family, c.kind, c.a, c.b, c.c, c.d);
    SCOPED_TRACE(testing::Message() << "csc" << c.converter << " family " << c.family << " kind " << c.kind << " class "
                                    << c.class_code << " select " << c.a << c.b << c.c << c.d);
    EXPECT_EQ(find(fn, blob.encode()), c.plain);
    const kit::blob preferred = blob_of("", {"HPP", "HSP", "HCP", "HNP", "XPP", "XSP", "XCP", "XNP"});
    blob.entries.insert(blob.entries.end(), preferred.entries.begin(), preferred.entries.end());
    EXPECT_EQ(find(fn, blob.encode()), c.full);
  }
  const look_up untested = with(vrk_log_csc2, 0, 4, 0, 1, 0, 1);
  EXPECT_EQ(find(untested, blob_of("CS2T", {"HPG", "HNP"}).encode()), "HNP") << "in place of HPP, which is missing";
}

TEST(look_up, blobs_that_do_not_hold_up) {
  const std::pair<const char*, std::function<void(kit::blob&)>> faults[] = {
      {"magic", [](auto& b) { b.magic = "ISTC"; }},
      {"end mark", [](auto& b) { b.end_mark = 0; }},
      {"no entries", [](auto& b) { b.entry_count = 0; }},
      {"directory runs past the blob", [](auto& b) { b.entry_count = 2; }},
      {"data one byte past the blob", [](auto& b) { ++*b.entries[0].length; }},
      {"offset past the blob", [](auto& b) { b.entries[0].offset = 1000; }},
      {"offset and length wrap around", [](auto& b) { b.entries[0].offset = 0xFFFFFFFF; }},
  };
  for (const auto& [fn, kind, tag] : tag_cases) {
    for (const auto& [what, make] : faults) {
      kit::blob bad = blob_of(kind.substr(0, 4), {tag});
      bad.entries[0].length = tag.size();
      make(bad);
      EXPECT_EQ(find(fn, bad.encode()), "") << tag << ": " << what;
    }
  }
  kit::bytes part = blob_of("OTGM", {"HN"}).encode();
  for (part.pop_back(); !part.empty(); part.pop_back()) EXPECT_EQ(find(with(vrk_log_outgamma, 0), part), "");
}

TEST(look_up, blobs_that_just_hold_up) {
  std::vector<std::string> tags(300, "X");
  tags.push_back("HN");
  EXPECT_EQ(find(with(vrk_log_outgamma, 0), blob_of("OTGM", tags).encode()), "HN");

  for (const auto& [offset, found] : {std::pair{52u, 1u}, {53u, 0u}}) {  // of nothing, at the blob's end and behind it
    const kit::bytes blob = kit::blob{.type = "OTGM", .entries = {{"HN", {}, offset}}}.encode();
    vrk_table_ref ref{77, nullptr};
    EXPECT_EQ(vrk_log_outgamma(52, blob.data(), &ref, 0), found);
    EXPECT_EQ(ref.length, 0u);
  }
}

TEST(look_up, arguments_out_of_range_leave_the_length_alone) {
  kit::bytes image = blob_of("OTGM", {"HN"}).encode();
  const auto kept = [&](const look_up& fn, std::size_t size, const void* blob) {
    vrk_table_ref ref{77, nullptr};
    return fn(std::uint32_t(size), blob, &ref) == 0 && ref.length == 77;
  };
  for (const look_up& fn :
       {with(vrk_log_outgamma, 2), with(vrk_log_htone, 2, 1), with(vrk_log_ingamma, 2, 0), with(vrk_log_ingamma2, 2, 0),
        with(vrk_log_rank, 2, 0, 0), with(vrk_log_csc1, 2, 0, 1, 0, 0, 0), with(vrk_log_htone, 0, 2),
        with(vrk_log_ingamma, 0, 3), with(vrk_log_ingamma, 0, -3), with(vrk_log_ingamma2, 0, 6),
        with(vrk_log_ingamma2, 0, -6), with(vrk_log_rank, 0, 10, 0), with(vrk_log_rank, 0, -10, 0)}) {
    EXPECT_TRUE(kept(fn, image.size(), image.data()));
  }
  for (const auto& [fn, kind, tag] : tag_cases) {
    EXPECT_TRUE(kept(fn, 0, image.data()) && kept(fn, image.size(), nullptr));
    EXPECT_EQ(fn(std::uint32_t(image.size()), image.data(), nullptr), 0u);
  }
}

}  // namespace
