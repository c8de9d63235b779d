#include "console/Graphviz.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "diagnosis/WholeFile.h"

namespace console {
namespace {

constexpr int kNoProgram = 127;

/// Runs `dot -TFORMAT -o TO FROM`; its exit status, or the signal that ended it, negative.
int RunDot(const std::string& format, const std::string& from, const std::string& to, unsigned seconds) {
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("there is no room for another process; try again later");
  if (process == 0) {
    // What draws longer is ended by the clock that it inherits.
    alarm(seconds);
    const std::string option = "-T" + format;
    execlp("dot", "dot", option.c_str(), "-o", to.c_str(), from.c_str(), static_cast<char*>(nullptr));
    _exit(kNoProgram);
  }
  int status = 0;
  waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder of its own that goes with it.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "softcard-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      throw std::runtime_error("cannot make a folder in TMPDIR; set it to one that may be written");
    }
    path_ = name;
  }
  ~Folder() {
    std::error_code none;
    std::filesystem::remove_all(path_, none);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string Path(const char* name) const { return path_ + '/' + name; }

 private:
  std::string path_;
};

}  // namespace

std::string Drawn(const std::string& format, const std::string& dot, unsigned seconds) {
  const Folder folder;
  const std::string from = folder.Path("card.dot"), to = folder.Path("picture");
  diagnosis::WriteWhole(from, dot);
  const int status = RunDot(format, from, to, seconds);
  if (status == kNoProgram) {
    throw std::runtime_error("Graphviz's program dot is missing; install the package graphviz, or write a .dot file");
  }
  if (status == -SIGALRM) {
    throw std::runtime_error("Graphviz did not draw the picture within " + std::to_string(seconds) +
                             " s; draw one destination, or write a .dot file");
  }
  if (status != 0) throw std::runtime_error("Graphviz could not draw the picture; a .dot file shows what it was given");
  return ReadAll(to);
}

void WritePicture(const std::string& path, const std::string& dot) {
  const std::string format = std::filesystem::path(path).extension().string();
  diagnosis::WriteWhole(path, format == ".dot" ? dot : Drawn(format.substr(1), dot));
}

bool IsPicture(const std::string& path) {
  const std::string format = std::filesystem::path(path).extension().string();
  return format == ".svg" || format == ".png" || format == ".dot";
}

}  // namespace console
