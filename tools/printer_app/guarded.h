// Where PAPPL calls back: it is C, and no exception may reach it.
#pragma once

#include <pappl/pappl.h>

#include <exception>
#include <new>
#include <string>

#include "tools/command_line/printable.h"

namespace vrk::tool {

// A sentence as it fits IPP.
inline std::string said_of(const std::string& why) { return printable(why).substr(0, 500); }

// In the job's state and in the log.
inline void say_failed(pappl_job_t* job, const std::string& why) {
  const std::string said = said_of(why);
  papplJobSetMessage(job, "%s", said.c_str());
  papplLogJob(job, PAPPL_LOGLEVEL_ERROR, "%s", said.c_str());
}

// What `work` throws, in one sentence; empty when it throws nothing.
template <class Work>
std::string complaint_of(Work work) noexcept {
  try {
    work();
    return "";
  } catch (const std::bad_alloc&) {
    return "there is not enough memory for this";
  } catch (const std::exception& error) {
    return error.what();
  } catch (...) {
    return "internal error";
  }
}

// Does a part of a job. Returns false, having told why, when that throws.
template <class Work>
bool guarded(pappl_job_t* job, Work work) noexcept {
  const std::string why = complaint_of(work);
  if (!why.empty()) say_failed(job, why);
  return why.empty();
}

}  // namespace vrk::tool
