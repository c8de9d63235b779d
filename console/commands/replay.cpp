#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "console/CardRecording.h"
#include "console/commands/Commands.h"
#include "diagnosis/OnCard.h"
#include "recorder/ReplayReport.h"

namespace console {
namespace {

ExitStatus ReplayOnCard(const std::string& path, softcard::Card& card) try {
  CardRecording recording(path);
  if (const std::string others = recording.terms().Others(); !others.empty()) std::cout << others << '\n';
  diagnosis::OnCard on_card(card, recording.terms().description());
  recorder::ReplayReport report(std::cout);
  while (const auto entry = recording.Next()) {
    if (const auto* step = std::get_if<recorder::Step>(&*entry)) {
      diagnosis::OnCard::Made made = on_card.Make(*step);
      for (const std::string& other : made.other_ids) std::cout << "line " << step->line << ": " << other << '\n';
      report.Tell(*step, made.recorded, std::move(made.now));
    } else if (const auto* standing = std::get_if<recorder::Standing>(&*entry)) {
      on_card.Apply(*standing);
    } else {
      report.Tell(std::get<recorder::Remark>(*entry));
    }
  }
  return Flushed(report.End() ? kAllHold : kSomeFailed);
} catch (const std::runtime_error& error) {
  TellUnusable(path, error);
  return kUnusable;
}

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
  struct Options {
    std::string path;
    bool on_card = false;
  };
  const auto options = std::make_shared<Options>();
  replay->add_option("FILE", options->path, "The recording")->required()->type_name("");
  replay->add_flag(
      "--on-card", options->on_card,
      "On the software card, which refuses what was refused, instead of a platform that answers as recorded");
  replay->callback([&console, options] {
    console.status = options->on_card ? ReplayOnCard(options->path, console.card) : Replay(options->path);
  });
}

}  // namespace console
