#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "recorder/Reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::string Whole() {
  std::ifstream file(RECORDING, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void Read(const std::string& text) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

}  // namespace

TEST(ADamagedRecording, IsReadOrRefusedAndNothingElse) {
  const std::string whole = Whole();
  ASSERT_GT(whole.size(), 10000u);
  std::seed_seq seed{7};
  std::mt19937 random(seed);
  for (int i = 0; i < 1000; ++i) {
    std::string text = whole.substr(0, i % 2 == 0 ? whole.size() : random() % whole.size());
    for (unsigned damages = random() % 4; damages > 0 && !text.empty(); --damages) {
      const std::size_t place = random() % text.size();
      switch (random() % 3) {
        case 0: text[place] = static_cast<char>(random()); break;
        case 1: text.erase(place, random() % 40); break;
        default: text.insert(place, whole, random() % whole.size(), random() % 200); break;
      }
    }
    Read(text);
  }
}

TEST(ARecording, IsReadToItsEnd) {
  std::istringstream in(Whole());
  recorder::Reader reader(in);
  int requests = 0;
  while (const auto entry = reader.Next()) requests += std::holds_alternative<recorder::Step>(*entry) ? 1 : 0;
  EXPECT_EQ(requests, 12);
}
