// Options of jobs: what the command line of `vrk print` says, said by name.
#include "tools/queue/job_options.h"

#include "tests/tools/scratch.h"

namespace {

using namespace vrk::test;
using vrk::tool::job_kind;
using vrk::tool::job_options;
using vrk::tool::read_job_options;

class job : public scratch {};

TEST_F(job, has_the_options_of_a_print_before_those_of_its_settings) {
  const std::string settings = save("a.conf", "levels=4\nfilter=fan\nsize=A4\nno-preview=true\nbalance=1,2,3\n");
  const job_options read = read_job_options({{"filter", "shiau-fan"},
                                             {"settings", settings},
                                             {"curve", "r=gamma:2"},
                                             {"curve", "s:0.3"},
                                             {"split", "true"},
                                             {"width16", "false"},
                                             {"order", "banded"}},
                                            job_kind::pages);
  EXPECT_EQ(read.print.dots.filter, "shiau-fan");
  EXPECT_EQ(read.print.dots.levels, 4U);
  EXPECT_EQ(read.print.tone.balance, (std::vector<std::int16_t>{1, 2, 3}));
  EXPECT_EQ(read.print.tone.curves, (std::vector<std::string>{"r=gamma:2", "s:0.3"}));
  EXPECT_TRUE(read.print.inks.split && !read.print.width16 && read.print.pictures.drawn);
  EXPECT_EQ(read.print.order, vrk::tool::plane_order::banded);
  EXPECT_FALSE(read.page.paper);
  EXPECT_TRUE(read_job_options({{"size", "A4"}, {"fill", "true"}}, job_kind::picture).page.fill);
}

TEST_F(job, comes_before_its_queue) {
  const std::string of_job = save("job.conf", "levels=4\nlift=1\n");
  const std::string of_queue = save("queue.conf", "levels=8\nlift=2\ncontrast=3\nsplit=true\nintent=relative\n");
  const job_options read =
      read_job_options({{"settings", of_job}, {"filter", "fan"}, {"split", "false"}, {"bpc", "false"}}, job_kind::pages,
                       {{"settings", of_queue},
                        {"filter", "line"},
                        {"lift", "5"},
                        {"curve", "s:1"},
                        {"curve", "r=s:1"},
                        {"profile", "x"}});
  EXPECT_EQ(read.print.dots.filter, "fan");
  EXPECT_EQ(read.print.dots.levels, 4U);
  EXPECT_EQ(read.print.tone.lift, 1);
  EXPECT_EQ(read.print.tone.contrast, 3);
  EXPECT_EQ(read.print.tone.curves.size(), 2U);
  EXPECT_EQ(read.print.inks.profile.intent, "relative");
  EXPECT_FALSE(read.print.inks.split);
  EXPECT_EQ(complaint([] {
              read_job_options({}, job_kind::pages, {{"levels", "1"}});
            }),
            "the queue: --levels: Value 1 not in range 2 to 255");
}

TEST_F(job, has_options_by_names_of_print_queues) {
  using vrk::tool::job_option_name;
  for (const char* const name : {"vrk-ink-limit", "VrkInkLimit", "ink-limit", "inklimit", "VRKINKLIMIT"}) {
    EXPECT_EQ(job_option_name(name, job_kind::pages), "ink-limit") << name;
  }
  for (const char* const name : {"vrk", "", "vrk-size", "media", "copies", "queue", "vrk-help", "image", "o"}) {
    EXPECT_FALSE(job_option_name(name, job_kind::pages)) << name;
  }
  EXPECT_EQ(job_option_name("VrkSize", job_kind::picture), "size");
}

TEST_F(job, is_refused_with_the_sentence_of_the_command_line) {
  const struct {
    const char *name, *value, *said;
  } cases[] = {{"levels", "300", "--levels: Value 300 not in range 2 to 255"},
               {"filter", "fam", "--filter: fam not in {"},
               {"filter", "", "--filter"},
               {"balance", "1,2", "--balance"},
               {"intent", "relative", "--intent requires --profile"},
               {"split", "perhaps", "perhaps"},
               {"settings", "/nowhere", "/nowhere: No such file"},
               {"output", "x", "\"output\" is no option of a job"},
               {"help", "true", "\"help\" is no option of a job"},
               {"json", "true", "\"json\" is no option of a job"},
               {"preview-size", "99", "\"preview-size\" is no option of a job"},
               {"size", "A4", "\"size\" is no option of a job"},
               {"save-settings", "x", "\"save-settings\" is no option of a job"},
               {"levels=4 --filter", "fan", "is no option of a job"},
               {"queue", "true", "\"queue\" is no option of a job"},
               {"media-table", "Glossy", "expected TYPE=FILE"},
               {"", "", "\"\" is no option of a job"}};
  for (const auto& [name, value, said] : cases) {
    const std::string complained = complaint([&, n = name, v = value] { read_job_options({{n, v}}, job_kind::pages); });
    EXPECT_NE(complained.find(said), std::string::npos) << name << ": " << complained;
  }
}

}  // namespace
