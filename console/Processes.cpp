#include "console/Processes.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <system_error>
#include <thread>

namespace console {
namespace {

[[noreturn]] void Fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

}  // namespace

unsigned Processes::most() const { return std::max(1U, std::thread::hardware_concurrency()); }

bool Processes::Begin() {
  std::cout.flush();
  int ends[2];
  if (pipe(ends) != 0) Fail("a pipe");
  const pid_t process = fork();
  if (process < 0) {
    const int reason = errno;
    close(ends[0]);
    close(ends[1]);
    errno = reason;
    Fail("a process for a scenario");
  }
  if (process > 0) {
    close(ends[1]);
    begun_.push_back({process, ends[0]});
    return false;
  }
  close(ends[0]);
  for (const Process& other : begun_) close(other.report);
  begun_.clear();
  if (report_to_ >= 0) close(report_to_);
  report_to_ = ends[1];
  alarm(seconds_);
  return true;
}

void Processes::End(const std::string& report) {
  std::cout.flush();
  for (std::size_t sent = 0; sent < report.size();) {
    const ssize_t size = write(report_to_, report.data() + sent, report.size() - sent);
    if (size < 0) std::exit(EXIT_FAILURE);
    sent += static_cast<std::size_t>(size);
  }
  std::exit(EXIT_SUCCESS);
}

Ending Processes::Next() {
  const Process process = begun_.front();
  begun_.pop_front();
  Ending ending;
  char buffer[4096];
  for (ssize_t size = 1; size > 0;) {
    size = read(process.report, buffer, sizeof buffer);
    if (size > 0) ending.report.append(buffer, static_cast<std::size_t>(size));
  }
  close(process.report);
  int status = 0;
  if (waitpid(process.id, &status, 0) < 0) Fail("waiting for a scenario");
  if (WIFSIGNALED(status)) ending.crash = std::string("crashed: ") + strsignal(WTERMSIG(status));
  if (WIFEXITED(status) && WEXITSTATUS(status) != EXIT_SUCCESS) ending.crash = "did not end as it should";
  return ending;
}

Ending InItsOwnProcess(const std::function<std::string()>& work) {
  Processes processes;
  if (processes.Begin()) {
    try {
      processes.End(work());
    } catch (const std::exception& exception) {
      std::cerr << "softcard: " << exception.what() << '\n';
    }
    std::exit(EXIT_FAILURE);
  }
  return processes.Next();
}

}  // namespace console
