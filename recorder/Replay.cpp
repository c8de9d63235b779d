// Makes the requests of a recording on the module, against a platform that answers as recorded, and prints what
// differs.

#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>

#include "recorder/Difference.h"
#include "recorder/Player.h"

namespace {

enum ExitCode { kAlike = 0, kDifferent = 1, kUnusable = 2 };

struct Tally {
  std::size_t requests = 0;
  std::size_t different = 0;
};

void Replay(const recorder::Step& step, Tally* tally) {
  const recorder::Lines recorded = recorder::Player::Recorded(step);
  recorder::Lines now = recorder::Player::Get().Play(step);
  ++tally->requests;
  // What came behind the end of the recording nobody knows.
  if (!step.complete && now.size() > recorded.size()) now.resize(recorded.size());
  const auto difference = recorder::Difference(recorded, now);
  if (difference.empty()) return;
  ++tally->different;
  std::cout << "line " << step.line << ": " << recorder::ActionText(step) << '\n';
  for (const std::string& line : difference) std::cout << line << '\n';
  std::cout << '\n';
}

Tally ReplayAll(recorder::Reader* reader) {
  Tally tally;
  recorder::Player& player = recorder::Player::Get();
  player.common().unit = reader->header().unit;
  while (const auto entry = reader->Next()) {
    player.Learn(reader->words());
    if (const auto* step = std::get_if<recorder::Step>(&*entry)) {
      Replay(*step, &tally);
      if (!step->complete) std::cout << "the recording ends in the request of line " << step->line << '\n';
    } else if (const auto* standing = std::get_if<recorder::Standing>(&*entry)) {
      player.Apply(*standing);
    } else {
      std::cout << "the recording says: " << std::get<recorder::Remark>(*entry).text << '\n';
    }
  }
  return tally;
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
    const Tally tally = ReplayAll(&reader);
    std::cout << tally.requests << " requests replayed, "
              << (tally.different == 0 ? "no differences" : std::to_string(tally.different) + " of them differ")
              << '\n';
    if (!std::cout.flush()) throw std::runtime_error("cannot write all of the output");
    return tally.different == 0 ? kAlike : kDifferent;
  } catch (const recorder::BadRecording& bad) {
    std::cout.flush();
    std::cerr << path << ": " << bad.what() << '\n';
    return kUnusable;
  }
} catch (const std::exception& exception) {
  std::cerr << "softcard-replay: " << exception.what() << '\n';
  return kUnusable;
}
