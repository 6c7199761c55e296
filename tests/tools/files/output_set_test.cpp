// Files of one run: all of them under their names, or none.
#include <gtest/gtest.h>

#include "tests/tools/scratch.h"
#include "tools/files/output_set.h"

namespace {

using namespace vrk::tool;
using vrk::test::complaint;
namespace fs = std::filesystem;

struct output : vrk::test::scratch {
  // Names and contents of a directory; of a directory in it, the name.
  std::map<std::string, std::string> found(const std::string& directory) const {
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::directory_iterator(path(directory))) {
      all[entry.path().filename()] = entry.is_directory() ? "" : load(entry.path());
    }
    return all;
  }
};

TEST_F(output, appears_whole_and_takes_what_is_obsolete_away) {
  fs::create_directories(path("out/folder"));
  for (const char* name : {"out/a", "out/b", "out/z"}) save(name, std::string("old"));
  fs::create_symlink(path("out/z"), path("out/link"));
  fs::create_symlink(path("out/z"), path("out/c"));  // in the way of a new file: goes, but not what it points to
  output_set files(path("out"));
  for (const char* name : {"a", "c", "d"}) files.add(name).write("new");
  EXPECT_EQ(load(path("out/a")), "old");
  files.keep([] { return std::vector<std::string>{"b", "folder", "link", "a", "none", "b"}; });
  const std::map<std::string, std::string> expected{{"a", "new"}, {"c", "new"},   {"d", "new"},
                                                    {"z", "old"}, {"folder", ""}, {"link", "old"}};
  EXPECT_EQ(found("out"), expected);
}

TEST_F(output, that_cannot_be_kept_leaves_everything_as_it_was) {
  fs::create_directories(path("out"));
  save("out/a", std::string("old"));
  save("out/b", std::string("old"));
  const auto before = found("out");
  for (const char* in_the_way : {"a", "new", "deep/new"}) {
    const std::string said = complaint([&] {
      output_set files(path("out"));
      for (const char* name : {"b", "a", "deep/new", "new"}) files.add(name).write("new");
      fs::remove(path("out") + "/" + in_the_way);
      fs::create_directory(path("out") + "/" + in_the_way);
      files.keep([] { return std::vector<std::string>{"b"}; });
    });
    EXPECT_EQ(said, path("out") + "/" + in_the_way + ": is a directory, expected a file or nothing");
    fs::remove(path("out") + "/" + in_the_way);
    fs::remove(path("out/deep"));
    save("out/a", std::string("old"));
    EXPECT_EQ(found("out"), before) << in_the_way;
  }
}

TEST_F(output, that_is_not_kept_leaves_no_trace) {
  {
    output_set files(path("above/out"));
    files.add("below/a").write("new");
    for (const auto& entry : fs::directory_iterator(path("above/out"))) {
      if (entry.path().filename() == "below") continue;
      EXPECT_EQ(entry.status().permissions() & fs::perms::others_all, fs::perms::none) << entry.path();
    }
  }
  EXPECT_TRUE(fs::is_empty(dir_));
}

}  // namespace
