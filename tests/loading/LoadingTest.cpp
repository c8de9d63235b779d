#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"

namespace {

/// The function of that name as the library exports it; null when there is none.
template <typename Function>
Function* Find(void* library, const char* mangled_name) {
  return reinterpret_cast<Function*>(dlsym(library, mangled_name));
}

TEST(Loading, AProcessThatHasThePlatformFindsTheModuleByNameAndRunsRequests) {
  void* const platform = dlopen(PLATFORM, RTLD_NOW | RTLD_GLOBAL);
  ASSERT_NE(platform, nullptr) << dlerror();
  void* const library = dlopen(MODULE, RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();

  const auto get_instance =
      Find<HalL3MplsEncapsulationInterface*()>(library, "_ZN31HalL3MplsEncapsulationInterface11GetInstanceEv");
  ASSERT_NE(get_instance, nullptr) << dlerror();
  const auto lim_id =
      Find<limid_t(std::string_view)>(platform, "_ZN8softcard5LimIdESt17basic_string_viewIcSt11char_traitsIcEE");
  ASSERT_NE(lim_id, nullptr) << dlerror();

  HalL3MplsEncapsulationInterface* const module = get_instance();
  unsigned char mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
  EXPECT_EQ(module->InstallVrf(1), 0);
  EXPECT_EQ(module->InstallVlanOutgoingEncapsulation(10, lim_id("vlan100"), 1, 1500, mac, {}), 0);
  EXPECT_EQ(module->DestroyVlanOutgoingEncapsulation(10), 0);
  EXPECT_EQ(module->DestroyVlanOutgoingEncapsulation(10), -1);
}

TEST(Loading, TheUpdateRegistryIsFoundByNameToo) {
  ASSERT_NE(dlopen(PLATFORM, RTLD_NOW | RTLD_GLOBAL), nullptr) << dlerror();
  void* const library = dlopen(MODULE, RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();

  const auto get_instance = Find<hal_encap::HalL3MplsEncapsulationUpdItf*()>(
      library, "_ZN9hal_encap28HalL3MplsEncapsulationUpdItf11GetInstanceEv");
  ASSERT_NE(get_instance, nullptr) << dlerror();
  EXPECT_NE(get_instance(), nullptr);
  EXPECT_EQ(get_instance(), get_instance());
}

TEST(Loading, WithoutAPlatformTheLoaderNamesWhatIsMissing) {
  EXPECT_EQ(dlopen(MODULE, RTLD_NOW), nullptr);
  const std::string error = dlerror();
  EXPECT_NE(error.find("undefined symbol: "), std::string::npos) << error;
  EXPECT_NE(error.find(MODULE), std::string::npos) << error;
}

}  // namespace
