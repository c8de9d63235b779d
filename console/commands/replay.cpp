#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "console/commands/Commands.h"

namespace console {
namespace {

/// A program of its own, since each platform function is defined in it; it lies beside this one.
ExitStatus Replay(const std::string& path) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error).replace_filename("softcard-replay");
  std::cout.flush();
  // Behind "--" a name is a name, whatever it begins with.
  execl(program.c_str(), "softcard-replay", "--", path.c_str(), static_cast<char*>(nullptr));
  std::cerr << "softcard: cannot run " << program.string() << ": " << std::strerror(errno)
            << "; it has to lie beside this program, as in the package softcard\n";
  return kUnusable;
}

}  // namespace

void AddReplay(CLI::App& app, Console& console) {
  CLI::App* const replay = app.add_subcommand("replay", "Makes a recording's requests again and prints what differs");
  const auto path = std::make_shared<std::string>();
  replay->add_option("FILE", *path, "The recording")->required()->type_name("");
  replay->callback([&console, path] { console.status = Replay(*path); });
}

}  // namespace console
