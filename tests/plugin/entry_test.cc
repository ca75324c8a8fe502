#include "plugin/entry.h"

#include <memory>

#include <gtest/gtest.h>

#include "framework/import_manager.h"
#include "framework/source_manager.h"
#include "platform/testing/test_platform.h"

namespace {

TEST(EntryTest, KnowsOneNameAlone) {
  for (const char* name : {"", "object_importmanager", "Object_ImportManager "}) {
    EXPECT_EQ(createObject(name), nullptr) << name;
  }
  EXPECT_EQ(createObject(nullptr), nullptr);
}

TEST(EntryTest, EachCallGivesANewPairOfWhichEachIsTheCallers) {
  const pw::TestPlatform platform;
  std::unique_ptr<PWImportManager> first(
      static_cast<PWImportManager*>(createObject("Object_ImportManager")));
  const std::unique_ptr<PWImportManager> second(
      static_cast<PWImportManager*>(createObject("Object_ImportManager")));
  const std::unique_ptr<PWSourceManager> firstManager(first->SourceManager);
  const std::unique_ptr<PWSourceManager> secondManager(second->SourceManager);
  EXPECT_NE(first, second);
  EXPECT_NE(firstManager, secondManager);
  first.reset();
  EXPECT_TRUE(firstManager->IsAvailable()) << "it outlives the import manager";
  EXPECT_EQ(firstManager->Owner, 0U);
  EXPECT_EQ(firstManager->Log, nullptr);
  EXPECT_EQ(firstManager->Config, nullptr);
}

TEST(EntryTest, TheImportPathIsOneForAllTypes) {
  const std::unique_ptr<PWImportManager> imports(
      static_cast<PWImportManager*>(createObject("Object_ImportManager")));
  const std::unique_ptr<PWSourceManager> manager(imports->SourceManager);
  PWString path("before");
  PWStringVector names;
  EXPECT_EQ(imports->PrepareImport("memo", names), 0);
  EXPECT_EQ(imports->GetImportPath("contact", path), 0);
  EXPECT_EQ(path.buffer, nullptr);
  EXPECT_EQ(imports->SetImportPath("C:\\New.WMCard"), 0);
  imports->GetImportPath("memo", path);
  EXPECT_TRUE(path == "C:\\New.WMCard");
  for (const char* none : {"", static_cast<const char*>(nullptr)}) {
    imports->SetImportPath("C:\\New.WMCard");
    EXPECT_EQ(imports->SetImportPath(none), 0);
    imports->GetImportPath(nullptr, path);
    EXPECT_EQ(path.buffer, nullptr);
    EXPECT_EQ(path.length, 0U);
    EXPECT_EQ(path.capacity, 0U);
  }
}

TEST(EntryTest, AnImportOfContactsReplacesTheFile) {
  pw::TestPlatform platform;
  const std::unique_ptr<PWImportManager> imports(
      static_cast<PWImportManager*>(createObject("Object_ImportManager")));
  const std::unique_ptr<PWSourceManager> manager(imports->SourceManager);
  PWStringVector names;
  names.AppendText("Phone");
  names.AppendText("Last Name");
  EXPECT_EQ(imports->PrepareImport("contact", names), 0) << "nowhere";
  imports->SetImportPath("C:\\New.WMCard");
  platform.files.Put("C:\\New.WMCard", "old");
  EXPECT_EQ(imports->PrepareImport("memo", names), 0);
  EXPECT_EQ(*platform.files.Get("C:\\New.WMCard"), "old");
  EXPECT_EQ(imports->PrepareImport("contact", names), 0);
  const std::string made = *platform.files.Get("C:\\New.WMCard");
  EXPECT_EQ(made.substr(made.size() - 20), std::string("\x12\0", 2) + "Phone\r\nLast Name\r\n");
  EXPECT_EQ(imports->PrepareImport("contact", *std::make_unique<PWStringVector>()), 0);
  EXPECT_EQ(platform.files.Get("C:\\New.WMCard")->size(), 1361U + 64 + 128 + 2);
}

}  // namespace
