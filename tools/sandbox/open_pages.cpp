#include "tools/sandbox/open_pages.h"

#include <cups/cups.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <new>
#include <utility>

#include "tools/files/spool.h"
#include "tools/files/temporary_directory.h"
#include "tools/pipeline/user_error.h"
#include "tools/raster/raster_stream.h"
#include "tools/sandbox/page_pipe.h"
#include "tools/sandbox/sandbox.h"

namespace vrk::tool {
namespace {

using open_input_as = std::function<page_supply(picture_input, end_of_stream)>;

page_supply open_here(picture_input input, const picture_limits& limits, end_of_stream ended) {
  if (!begins_raster_stream(input.first, input.second)) {
    const auto picture = std::make_shared<std::unique_ptr<image_reader>>(read_image(std::move(input), limits));
    return [picture] { return std::move(*picture); };
  }
  const auto stream = std::make_shared<raster_stream>(std::move(input.file), input.name, limits, std::move(ended));
  return [stream] { return stream->next_page(); };
}

// TIFF is read at any place, and a confined process makes no temporary file.
void make_seekable(picture_input& input) {
  if ((input.first != 'I' && input.first != 'M') || fseeko(input.file.get(), 0, SEEK_CUR) == 0) return;
  spool bytes;
  bytes.append_rest(input.file.get(), input.name);
  const int copy = fcntl(bytes.descriptor(), F_DUPFD_CLOEXEC, 0);
  std::FILE* const file = copy < 0 || lseek(copy, 0, SEEK_SET) != 0 ? nullptr : fdopen(copy, "rb");
  if (file == nullptr) throw user_error(input.name + ": " + std::strerror(errno));
  input.file.reset(file);
}

// The process was copied from one that may have other threads: nothing here takes a lock that these may hold.
void begin_child(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
  sigset_t ending;
  sigemptyset(&ending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
    if (signal != SIGPIPE) sigaddset(&ending, signal);
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler != SIG_IGN) std::signal(signal, SIG_DFL);
  }
  pthread_sigmask(SIG_UNBLOCK, &ending, nullptr);
  uselocale(newlocale(LC_ALL_MASK, "C", nullptr));  // messages in other languages come out of files
  cupsLastError();                                  // libcups makes what it keeps for a thread
}

[[noreturn]] void decode(picture_input input, int pipe, const open_input_as& open) {
  page_pipe_writer to(pipe);
  const auto fail = [&](page_message kind, const std::string& sentence) { to.send_failure(kind, sentence); };
  try {
    confine(fileno(input.file.get()), pipe);
    to.send_all(open(std::move(input), [&](unsigned pages) { to.send_end_of_stream(pages); }));
  } catch (const usage_error& error) {
    fail(page_message::wrong_usage, error.what());
  } catch (const user_error& error) {
    fail(page_message::failure, error.what());
  } catch (const std::bad_alloc&) {
    fail(page_message::out_of_memory, "");
  } catch (const std::exception& error) {
    fail(page_message::failure, std::string("internal error: ") + error.what());
  }
  _exit(0);
}

// The process, its pipe, and its input, of which it shares the place where it is read.
class decoder {
 public:
  decoder(picture_input input, const picture_limits& limits, const open_input_as& open, end_of_stream ended) {
    make_seekable(input);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw user_error(input.name + ": " + std::strerror(errno));
    const pid_t parent = getpid();
    {
      const auto lock = hold_off_end();
      process_ = fork();
    }
    if (process_ == 0) {
      begin_child(parent);
      decode(std::move(input), ends[1], open);
    }
    const int why = errno;
    close(ends[1]);
    pipe_ = ends[0];
    if (process_ < 0) {
      close(pipe_);
      throw user_error(input.name + ": its decoder cannot start: " + std::strerror(why));
    }
    reader_.emplace(pipe_, input.name, limits, std::move(ended), [this] { return why_ended(); });
    file_ = std::move(input.file);
  }
  ~decoder() {
    close(pipe_);
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    collect();
  }
  decoder(const decoder&) = delete;
  decoder& operator=(const decoder&) = delete;

  std::unique_ptr<image_reader> next_page() { return reader_->next_page(); }

 private:
  int collect() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
    return status;
  }

  std::string why_ended() {
    const int status = process_ == 0 ? 0 : collect();
    if (!WIFSIGNALED(status)) return "its decoder has ended before the picture";
    if (WTERMSIG(status) == SIGSYS) return "its decoder was ended: it tried what its sandbox forbids";
    return "its decoder was ended by signal " + std::to_string(WTERMSIG(status));
  }

  pid_t process_ = 0;
  int pipe_ = -1;
  std::optional<page_pipe_reader> reader_{};
  input_file file_{};
};

}  // namespace

page_supply open_pages(picture_input input, const picture_limits& limits, bool sandbox, end_of_stream ended) {
  if (!sandbox) return open_here(std::move(input), limits, std::move(ended));
  return open_confined(
      std::move(input), limits,
      [limits](picture_input from, end_of_stream tell) { return open_here(std::move(from), limits, std::move(tell)); },
      std::move(ended));
}

page_supply open_confined(picture_input input, const picture_limits& limits, const open_input_as& open,
                          end_of_stream ended) {
  if (!has_sandbox()) confine(-1, -1);  // which says so
  const auto from = std::make_shared<decoder>(std::move(input), limits, open, std::move(ended));
  struct page_of_process final : image_reader {
    page_of_process(std::unique_ptr<image_reader> of, std::shared_ptr<decoder> by)
        : image_reader(*of), page(std::move(of)), process(std::move(by)) {}
    void read_line(void* line) override { page->read_line(line); }
    std::unique_ptr<image_reader> page;
    std::shared_ptr<decoder> process;  // which a page may outlive otherwise
  };
  return [from]() -> std::unique_ptr<image_reader> {
    auto page = from->next_page();
    if (page == nullptr) return page;
    return std::make_unique<page_of_process>(std::move(page), from);
  };
}

}  // namespace vrk::tool
