#include "platform/posix/machine.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"
#include "tests/platform/whole_file.h"

namespace pw {
namespace {

TEST(Machine, GivesServicesOverWhatItWasTold) {
  const TempFolder folder;
  folder.Put("here/near", "2");
  folder.Put("c/Data/f", "1");
  MachineOptions options;
  options.mounts = {{"C:", folder.Path() / "c", true}};
  options.currentFolder = folder.Path() / "here";
  options.modulePath = "/opt/\xC3\xA4/module.so";
  options.moduleVersion = 5;
  options.registry.file = folder.Path() / "registry.reg";
  options.registry.mode = RegistryMode::kOverlay;
  options.somebodyThere = false;
  Machine machine(options);
  machine.Clock().FixNow(100);

  const Platform services = machine.Services();
  EXPECT_EQ(ReadWholeFile(*services.files, "c:\\data\\F"), "1");
  EXPECT_EQ(ReadWholeFile(*services.files, "NEAR"), "2");
  EXPECT_FALSE(services.files->IsReadableAndWritable("C:\\Data\\f"));
  EXPECT_EQ(services.files->ModulePath(), "/opt/\xE4/module.so");
  EXPECT_EQ(services.clock->Now(), 100);
  EXPECT_EQ(services.shell->ModuleVersion(), 5U);
  EXPECT_EQ(services.windows->Find("Any"), kNoWindow);
  EXPECT_EQ(services.richText->ToPlain("{\\rtf1 a}"), "a");
  ASSERT_NE(services.registry->Create("SOFTWARE\\Key"), nullptr);
  EXPECT_FALSE(std::filesystem::exists(options.registry.file));
  EXPECT_EQ(machine.Registry().Error(), std::nullopt);
}

}  // namespace
}  // namespace pw
