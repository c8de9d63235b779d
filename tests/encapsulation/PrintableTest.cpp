#include <cstdint>
#include <cstdio>

#include "src/encapsulation/HalL3MplsEncapsulationBcm.h"
#include "src/encapsulation/HalL3MplsEncapsulationPrintable.h"
#include "tests/encapsulation/ModuleTest.h"

namespace {

class PrintableTest : public ModuleTest {
 protected:
  const HalL3MplsEncapsulationBcm& bcm_ = *HalL3MplsEncapsulationBcm::GetInstance();
  const HalL3MplsEncapsulationPrintable& printable_ = bcm_;
};

TEST_F(PrintableTest, HexadecimalTextHasExactlyTheDigitsAskedForInUpperCase) {
  EXPECT_EQ(printable_.ToHexString<unsigned char>(0x3A, 2), "0x3A");
  EXPECT_EQ(printable_.ToHexString<unsigned char>(0xAB, 1), "0xB");
  EXPECT_EQ(printable_.ToHexString<unsigned int>(0x1234, 6), "0x001234");
  EXPECT_EQ(printable_.ToHexString<unsigned int>(0xFF123456, 4), "0x3456");
  EXPECT_EQ(printable_.ToHexString<unsigned int>(0xDEADBEEF, 8), "0xDEADBEEF");
}

TEST_F(PrintableTest, HexadecimalDigitsBeyondTheValuesWidthAreZero) {
  EXPECT_EQ(printable_.ToHexString<unsigned int>(0xDEADBEEF, 12), "0x0000DEADBEEF");
  EXPECT_EQ(printable_.ToHexString<unsigned char>(0xFF, 10), "0x00000000FF");
  EXPECT_EQ(printable_.ToHexString<unsigned int>(0xF, 0), "0x");
}

TEST_F(PrintableTest, LimIdShowsNameTypeAndIndex) {
  EXPECT_EQ(printable_.PrintLimId(Lim("eth42")), "lim id(name=eth42, type=0x01, value=0x00002A)");
  EXPECT_EQ(printable_.PrintLimId(Lim("lag2")), "lim id(name=lag2, type=0x02, value=0x000002)");
}

TEST_F(PrintableTest, LimIdThatThePlatformCannotDecodeShowsZeroesAndAnEmptyName) {
  faults().FailEvery("limid_to_type", BCM_E_PARAM);
  faults().FailEvery("limid_to_ifindex", BCM_E_PARAM);
  faults().FailEvery("limid_to_intfname", BCM_E_PARAM);
  EXPECT_EQ(printable_.PrintLimId(Lim("eth42")), "lim id(name=, type=0x00, value=0x000000)");
}

TEST_F(PrintableTest, LimIdIsDecodedTypeFirstThenIndexThenName) {
  printable_.PrintLimId(Lim("eth42"));
  EXPECT_EQ(Trace(), R"(
limid_to_type(limid=eth42) = 0
limid_to_ifindex(limid=eth42) = 0
limid_to_intfname(limid=eth42, size=64) = 0
)");
}

TEST_F(PrintableTest, ModuleShowsTheLow32BitsOfItsAddress) {
  char expected[64];
  std::snprintf(expected, sizeof(expected), "HalL3MplsEncapsulationBcm(this=0x%08X)",
                static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(&bcm_)));
  EXPECT_EQ(bcm_.ToString(false), expected);
  EXPECT_EQ(printable_.ToString(false), expected);
}

TEST_F(PrintableTest, ModuleAppendsItsResourcesWhenAskedForDepth) {
  EXPECT_EQ(bcm_.ToString(true),
            bcm_.ToString(false) + ": " + HwEncapsulationResourceManager::GetInstance()->ToString(true));
  EXPECT_EQ(printable_.ToString(true), bcm_.ToString(true));
}

}  // namespace
