#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

#include "tests/tools/scratch.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/user_error.h"
#include "tools/sandbox/open_pages.h"
#include "tools/sandbox/sandbox.h"

namespace {

using namespace vrk::tool;
using vrk::test::complaint;

class sandbox : public vrk::test::scratch {
 protected:
  // What is said of a picture whose decoder does this with its first line.
  std::string said_of_decoder(const std::function<void()>& deed) {
    struct acting final : image_reader {
      explicit acting(std::function<void()> does) : image_reader("acting"), deed(std::move(does)) {
        width_ = height_ = 2;
        channels_ = 1;
      }
      void read_line(void* line) override {
        deed();
        static_cast<char*>(line)[0] = static_cast<char*>(line)[1] = 'x';
      }
      std::function<void()> deed;
    };
    const auto pages = open_confined(
        open_input(picture_), {},
        [&](picture_input, end_of_stream) -> page_supply { return [&] { return std::make_unique<acting>(deed); }; },
        {});
    char line[2] = "";
    const std::string said = complaint([&] { pages()->read_line(line); });
    EXPECT_EQ(said.empty(), line[0] == 'x');
    return said;
  }

  std::string picture_ = save("two.pgm", std::string("P5 2 2 255\nabcd"));
};

TEST_F(sandbox, ends_a_decoder_that_tries_what_it_must_not) {
  const std::string forbidden = picture_ + ": its decoder was ended: it tried what its sandbox forbids";
  const int open_file = open(picture_.c_str(), O_RDWR | O_CLOEXEC);
  const struct {
    const char* name;
    std::function<void()> deed;
    std::string said;
  } cases[] = {{"nothing", [] {}, ""},
               {"opens a file", [&] { open(picture_.c_str(), O_RDONLY); }, forbidden},
               {"makes one", [&] { creat(path("made").c_str(), 0600); }, forbidden},
               {"removes one", [&] { unlink(picture_.c_str()); }, forbidden},
               {"reaches the network", [] { socket(AF_INET, SOCK_STREAM, 0); }, forbidden},
               {"starts a program", [] { execl("/bin/true", "true", nullptr); }, forbidden},
               {"starts a process", [] { fork(); }, forbidden},
               {"ends another process", [] { kill(getppid(), SIGTERM); }, forbidden},
               {"breaks down", [] { std::raise(SIGKILL); }, picture_ + ": its decoder was ended by signal 9"},
               {"ends", [] { _exit(0); }, picture_ + ": its decoder has ended before the picture"},
               {"throws", [] { throw user_error("line 1 is damaged"); }, "line 1 is damaged"},
               {"writes to a file of this process",
                [&] {
                  if (pwrite(open_file, "!", 1, 0) == 1) throw user_error("has written");
                },
                forbidden}};
  for (const auto& c : cases) EXPECT_EQ(said_of_decoder(c.deed), c.said) << c.name;
  close(open_file);
  EXPECT_EQ(access(path("made").c_str(), F_OK), -1);
  EXPECT_EQ(access(picture_.c_str(), F_OK), 0);
}

// What it sends is not believed.
TEST_F(sandbox, takes_no_page_beyond_its_limits) {
  const auto page_of = [&](unsigned width, const picture_limits& limits) {
    struct wide final : image_reader {
      explicit wide(unsigned width) : image_reader("wide") {
        width_ = width;
        height_ = channels_ = 1;
      }
      void read_line(void*) override {}
    };
    return open_confined(
        open_input(picture_), limits,
        [&](picture_input, end_of_stream) -> page_supply { return [=] { return std::make_unique<wide>(width); }; }, {});
  };
  EXPECT_EQ(page_of(7, {1 << 20, 7, 1})()->width(), 7u);
  EXPECT_EQ(complaint([&] { page_of(8, {1 << 20, 7, 1})(); }), picture_ + ": its confined decoder tells of no picture");
}

}  // namespace
