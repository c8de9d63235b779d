#include "console/CardRecording.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "scenario/Suggestion.h"

namespace console {

CardRecording::CardRecording(const std::string& path) : in_(path, std::ios::binary) {
  if (!in_) throw std::runtime_error(std::string("cannot be read: ") + std::strerror(errno));
  terms_.emplace(&reader_.emplace(in_));
  in_.clear();
  if (!in_.seekg(0)) throw std::runtime_error("is read twice, which a pipe cannot be; name a file");
  reader_.emplace(in_);
}

std::optional<recorder::Entry> CardRecording::Next() {
  auto entry = reader_->Next();
  if (entry) terms_->Translate(&*entry);
  return entry;
}

void TellUnusable(const std::string& path, const std::runtime_error& error) {
  std::cout.flush();
  const std::string name = scenario::Printable(path);
  if (dynamic_cast<const recorder::BadRecording*>(&error)) {
    std::cerr << name << ": " << scenario::Printable(error.what()) << '\n';
  } else {
    std::cerr << "softcard: " << name << ' ' << error.what() << '\n';
  }
}

}  // namespace console
