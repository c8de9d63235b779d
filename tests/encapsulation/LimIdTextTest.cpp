#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "hal/limid.h"
#include "src/encapsulation/LogText.h"

// A card that writes into a name's buffer what it may.
namespace {

std::string written;  ///< the buffer's bytes, NULs included, from its first on
std::string found;    ///< what the buffer held before
constexpr char kDirt = '\xA5';

/// The text of a lim id, made where other things have been before.
std::string TextWhenTheCardWrites(const std::string& bytes) {
  written = bytes;
  alignas(LimIdText) unsigned char storage[sizeof(LimIdText)];
  std::memset(storage, kDirt, sizeof(storage));
  const LimIdText* const text = new (storage) LimIdText({0});
  return std::string(text->c_str());
}

}  // namespace

int limid_to_type(limid_t /*limid*/, unsigned char* type) { return *type = 0xAB, 0; }
int limid_to_ifindex(limid_t /*limid*/, unsigned int* ifindex) { return *ifindex = 0xFF00002A, 0; }
int limid_to_intfname(limid_t /*limid*/, char* name, size_t size) {
  found.assign(name, size);
  written.copy(name, size);
  return 0;
}

namespace {

TEST(LimIdText, EndsBehindItsParenthesisWhateverLiesBehindTheNamesNul) {
  for (const std::size_t length : {0u, 1u, 4u, 62u, 63u}) {
    const std::string name(length, 'n');
    std::string bytes = name;
    bytes.resize(64, '#');
    bytes[length] = '\0';
    EXPECT_EQ(TextWhenTheCardWrites(bytes), "lim id(name=" + name + ", type=0xAB, value=0x00002A)") << length;
  }
}

TEST(LimIdText, HasAnEmptyNameWhenTheCardWritesNone) {
  EXPECT_EQ(TextWhenTheCardWrites(""), "lim id(name=, type=0xAB, value=0x00002A)");
}

TEST(LimIdText, HasTheWholeBufferForANameThatIsNotClosed) {
  EXPECT_EQ(TextWhenTheCardWrites(std::string(64, 'n')),
            "lim id(name=" + std::string(64, 'n') + ", type=0xAB, value=0x00002A)");
}

TEST(LimIdText, GivesTheCard64ZeroedBytes) {
  TextWhenTheCardWrites("");
  EXPECT_EQ(found, std::string(64, '\0'));
}

}  // namespace
