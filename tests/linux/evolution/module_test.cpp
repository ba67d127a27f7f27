#include "linux/evolution/module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>

#include "gio/private_bus.h"
#include "linux/mainloop/main_loop.h"
#include "support/test_paths.h"

namespace orvane::host {
namespace {

class ModuleTest : public testing::Test {
 protected:
  ModuleTest() {
    void* const module =
        dlopen(builtProgram("orvane-evolution.so").c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module != nullptr) entry = reinterpret_cast<ModuleEntry*>(dlsym(module, moduleEntry));
  }

  std::unique_ptr<MainLoop> loop = makeMainLoop();
  ModuleEntry* entry = nullptr;
};

TEST_F(ModuleTest, ServesTheProgramThatItWasBuiltWith) {
  ASSERT_NE(entry, nullptr) << dlerror();
  const std::unique_ptr<AccountService> service(entry(moduleBuild, loop.get()));
  EXPECT_NE(service, nullptr);
}

TEST_F(ModuleTest, ServesNoOther) {
  ASSERT_NE(entry, nullptr) << dlerror();
  EXPECT_EQ(entry("0.0.1-1", loop.get()), nullptr);
}

TEST_F(ModuleTest, ABusThatIsNotThereIsToldAndWhoGaveUpIsToldNothing) {
  ASSERT_NE(entry, nullptr) << dlerror();
  const std::unique_ptr<AccountService> service(entry(moduleBuild, loop.get()));
  bool isGivenUpAnswered = false;
  bool isAnswered = false;
  auto givenUp = service->open(
      {[] {}, [] {}}, [&](const std::unique_ptr<AccountDirectory>&) { isGivenUpAnswered = true; });
  givenUp.cancel();
  const auto question =
      service->open({[] {}, [] {}}, [&](const std::unique_ptr<AccountDirectory>& directory) {
        EXPECT_EQ(directory, nullptr);
        isAnswered = true;
      });
  EXPECT_FALSE(isAnswered) << "never before the call has returned";
  EXPECT_TRUE(gio::eventually([&] { return isAnswered; }));
  EXPECT_FALSE(isGivenUpAnswered);
}

}  // namespace
}  // namespace orvane::host
