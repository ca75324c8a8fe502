#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

namespace fs = std::filesystem;

TEST(Install, LeavesProgramAndModuleThatWorkWhereverTheyLie) {
  const TempFolder folder;
  const std::string before = (folder.Path() / "before").string();
  OutputOf(CMAKE " --install " BUILD_FOLDER " --strip --prefix " + before);
  const fs::path prefix = folder.Path() / "usr";
  fs::rename(before, prefix);

  for (const char* file :
       {"share/man/man1/pairwise.1", "share/zsh/site-functions/_pairwise",
        "share/bash-completion/completions/pairwise", "include/pairwise/framework/source.h"}) {
    EXPECT_TRUE(fs::is_regular_file(prefix / file)) << file;
  }
  // Nothing that it loads is looked for where it was built.
  for (const char* file :
       {"usr/bin/pairwise", "usr/lib/libpwcore.so", "usr/lib/pairwise/wmplugin.so"}) {
    const std::string bytes = folder.Get(file);
    EXPECT_FALSE(bytes.empty()) << file;
    EXPECT_EQ(bytes.find(BUILD_FOLDER "/bin"), std::string::npos) << file;
  }

  const std::string demo = (folder.Path() / "demo").string();
  const std::string told =
      OutputOf("cd / && " + (prefix / "bin/pairwise").string() + " demo " + demo);
  EXPECT_NE(told.find("Friends.WMCard"), std::string::npos) << told;
  EXPECT_FALSE(folder.Get("demo/friends.vcf").empty());
}

}  // namespace
}  // namespace pw
