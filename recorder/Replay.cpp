// Makes the requests of a recording on the module, against a platform that answers as recorded, and prints what
// differs.

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>

#include "recorder/Player.h"
#include "recorder/ReplayReport.h"

namespace {

enum ExitCode { kAlike = 0, kDifferent = 1, kUnusable = 2 };

/// Whether there were no differences.
bool ReplayAll(recorder::Reader* reader) {
  recorder::ReplayReport report(std::cout);
  recorder::Player& player = recorder::Player::Get();
  player.common().unit = reader->header().unit;
  while (const auto entry = reader->Next()) {
    player.Learn(reader->words());
    if (const auto* step = std::get_if<recorder::Step>(&*entry)) {
      report.Tell(*step, recorder::Player::Recorded(*step), player.Play(*step));
    } else if (const auto* standing = std::get_if<recorder::Standing>(&*entry)) {
      player.Apply(*standing);
    } else {
      report.Tell(std::get<recorder::Remark>(*entry));
    }
  }
  return report.End();
}

}  // namespace

int main(int argc, char** argv) try {
  const bool has_dashes = argc == 3 && std::strcmp(argv[1], "--") == 0;
  if (argc != 2 && !has_dashes) {
    std::cerr << "usage: softcard-replay RECORDING\n";
    return kUnusable;
  }
  const std::string path = argv[argc - 1];
  std::ifstream file(path, std::ios::binary);
  if (!file || file.peek() == std::ifstream::traits_type::eof()) {
    const bool is_empty = file.is_open() && !file.bad() && errno != EISDIR;
    std::cerr << "softcard-replay: cannot read " << path << ": "
              << (is_empty ? "it is empty: nothing was recorded into it" : std::strerror(errno)) << '\n';
    return kUnusable;
  }
  try {
    recorder::Reader reader(file);
    const bool alike = ReplayAll(&reader);
    if (!std::cout.flush()) throw std::runtime_error("cannot write all of the output");
    return alike ? kAlike : kDifferent;
  } catch (const recorder::BadRecording& bad) {
    std::cout.flush();
    std::cerr << path << ": " << bad.what() << '\n';
    return kUnusable;
  }
} catch (const std::exception& exception) {
  std::cerr << "softcard-replay: " << exception.what() << '\n';
  return kUnusable;
}
