// Gives a fuzz target the inputs of a corpus, where there is no fuzzer to do it: replay DIRECTORY...

#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

// NOLINTNEXTLINE(readability-redundant-declaration): a build that joins sources sees the target's own
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

int main(int argc, char** argv) try {
  unsigned int inputs = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  std::cout << inputs << " inputs\n";
  return inputs > 0 ? 0 : 1;
} catch (const std::exception& exception) {
  std::cerr << "replay: " << exception.what() << '\n';
  return 1;
}
