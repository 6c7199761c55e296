// `rastertovrk`: a filter of CUPS, from the pages of a raster stream to the dots of the printer's inks.
#include <vrk.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "tools/command_line/printable.h"
#include "tools/files/ending_signals.h"
#include "tools/pipeline/user_error.h"
#include "tools/rastertovrk/filter_job.h"

namespace {

int fail(const std::string& why) {
  std::fprintf(stderr, "ERROR: %s\n", vrk::tool::printable(why).c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const vrk::tool::ending_signals signals;
  if (argc != 6 && argc != 7) {
    std::fprintf(stderr, "rastertovrk %s: a filter of CUPS\n", vrk_get_version());
    return fail("usage: rastertovrk JOB USER TITLE COPIES OPTIONS [FILE]");
  }
  try {
    vrk::tool::print_filter_job({argv, argv + argc});
    return 0;
  } catch (const vrk::tool::user_error& error) {
    return fail(error.what());
  } catch (const std::bad_alloc&) {
    return fail("there is not enough memory for this");
  } catch (const std::exception& error) {
    return fail(std::string("internal error: ") + error.what());
  }
}
