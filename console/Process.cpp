#include "console/Process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <system_error>

namespace console {
namespace {

[[noreturn]] void Fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

/// Does the work and hands its report on. Does not return.
[[noreturn]] void BeTheOther(const std::function<std::string()>& work, int report_to) {
  try {
    const std::string report = work();
    std::cout.flush();
    for (std::size_t sent = 0; sent < report.size();) {
      const ssize_t size = write(report_to, report.data() + sent, report.size() - sent);
      if (size < 0) std::exit(EXIT_FAILURE);
      sent += static_cast<std::size_t>(size);
    }
    std::exit(EXIT_SUCCESS);
  } catch (const std::exception& exception) {
    std::cerr << "softcard: " << exception.what() << '\n';
  }
  std::exit(EXIT_FAILURE);
}

}  // namespace

Ending InItsOwnProcess(const std::function<std::string()>& work) {
  std::cout.flush();
  int ends[2];
  if (pipe(ends) != 0) Fail("a pipe");
  const pid_t process = fork();
  if (process < 0) Fail("a process for a scenario");
  if (process == 0) {
    close(ends[0]);
    BeTheOther(work, ends[1]);
  }
  close(ends[1]);
  Ending ending;
  char buffer[4096];
  for (ssize_t size = 1; size > 0;) {
    size = read(ends[0], buffer, sizeof buffer);
    if (size > 0) ending.report.append(buffer, static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  if (waitpid(process, &status, 0) < 0) Fail("waiting for a scenario");
  if (WIFSIGNALED(status)) ending.crash = std::string("crashed: ") + strsignal(WTERMSIG(status));
  if (WIFEXITED(status) && WEXITSTATUS(status) != EXIT_SUCCESS) ending.crash = "did not end as it should";
  return ending;
}

}  // namespace console
