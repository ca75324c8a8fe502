#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/posix/posix_registry.h"
#include "platform/registry.h"
#include "platform/testing/memory_registry.h"
#include "tests/platform/implementations.h"
#include "tests/platform/temp_folder.h"

namespace pw {
namespace {

using namespace std::string_literals;

// An implementation with an empty registry, and what the interface can't do.
class Implementation {
 public:
  virtual ~Implementation() = default;
  virtual Registry& Get() = 0;
  virtual void MakeReadOnly() = 0;
  // The number 1, if what was written outlives that.
  virtual std::optional<RegistryValue> Kept() { return NumberValue(1); }
};

class InMemory : public Implementation {
 public:
  Registry& Get() override { return registry; }
  void MakeReadOnly() override { registry.readOnly = true; }

 private:
  MemoryRegistry registry;
};

class InFile : public Implementation {
 public:
  explicit InFile(RegistryMode mode) : mode(mode) { Reopen(); }
  Registry& Get() override { return *registry; }
  void MakeReadOnly() override {
    isOverlay = mode == RegistryMode::kOverlay;
    mode = RegistryMode::kReadOnly;
    Reopen();
  }
  // What an overlay is told is nowhere else.
  std::optional<RegistryValue> Kept() override {
    return isOverlay ? std::nullopt : Implementation::Kept();
  }

 private:
  void Reopen() {
    registry = std::make_unique<PosixRegistry>(
        RegistryStoreOptions{folder.Path() / "registry.reg", mode, nullptr});
  }

  TempFolder folder;
  RegistryMode mode;
  bool isOverlay = false;
  std::unique_ptr<PosixRegistry> registry;
};

class RegistryContractTest : public ContractTest<Implementation> {
 protected:
  // Through a key of its own, which is closed again.
  std::optional<RegistryValue> Read(const std::string& path, const std::string& name) {
    const auto key = registry().Open(path, RegistryAccess::kRead);
    return key == nullptr ? std::nullopt : key->Read(name);
  }
  bool IsThere(const std::string& path) {
    return registry().Open(path, RegistryAccess::kRead) != nullptr;
  }
  Registry& registry() { return implementation->Get(); }
};

TEST_P(RegistryContractTest, OpeningMakesNoKeyAndCreatingMakesAllAbove) {
  EXPECT_EQ(registry().Open("Soft\\One", RegistryAccess::kRead), nullptr);
  EXPECT_EQ(registry().Open("Soft\\One", RegistryAccess::kReadWrite), nullptr);
  EXPECT_FALSE(IsThere("Soft"));
  EXPECT_NE(registry().Create("Soft\\One\\Two"), nullptr);
  for (const char* const there : {"", "Soft", "Soft\\One", "soft\\ONE\\two", "\\Soft\\\\One\\"}) {
    EXPECT_TRUE(IsThere(there)) << there;
  }
  for (const char* const missing : {"Sof", "Soft\\One\\Two\\Three", "One", "Soft\\One Two"}) {
    EXPECT_FALSE(IsThere(missing)) << missing;
  }
}

TEST_P(RegistryContractTest, ValuesComeBackAsTheyWereSetAndEachKeyHasItsOwn) {
  const RegistryValue values[] = {TextValue(""),
                                  TextValue("\xE4 \"x\"\r\n\0"s),
                                  {RegistryType::kExpandableText, "%x%"},
                                  NumberValue(0xFFFFFFFF),
                                  {RegistryType::kNumber, "abc"},
                                  {RegistryType::kNone, ""},
                                  {static_cast<RegistryType>(11), "12345678"}};
  for (const RegistryValue& value : values) {
    {
      const auto key = registry().Create("K");
      ASSERT_NE(key, nullptr);
      EXPECT_TRUE(key->Write("", value));
      EXPECT_TRUE(key->Write("Name \xC4", value));
      EXPECT_EQ(key->Read("name \xE4"), value);
    }
    registry().Create("K\\L")->Write("", NumberValue(1));
    registry().Create("")->Write("", NumberValue(2));
    EXPECT_EQ(Read("K", ""), value);
    EXPECT_EQ(Read("k", "NAME \xE4"), value);
    EXPECT_EQ(Read("K", "Nam"), std::nullopt);
    EXPECT_EQ(Read("K", "Name \xC4 "), std::nullopt);
    EXPECT_EQ(registry().Create("k")->Read(""), value) << "a key that is there keeps its values";
    EXPECT_EQ(Read("K\\L", ""), NumberValue(1));
    EXPECT_EQ(Read("", ""), NumberValue(2));
  }
}

TEST_P(RegistryContractTest, NamesThatDontFitALineAreRefused) {
  const auto key = registry().Create("K");
  ASSERT_NE(key, nullptr);
  for (const std::string& name : {"a\nb"s, "\r"s, "a\0"s, "\x1F"s}) {
    EXPECT_EQ(registry().Create("K\\" + name), nullptr);
    EXPECT_FALSE(IsThere("K\\" + name));
    EXPECT_FALSE(key->Write(name, NumberValue(1)));
    EXPECT_EQ(key->Read(name), std::nullopt);
  }
  EXPECT_NE(registry().Create("K\\a\tb"), nullptr);
  EXPECT_TRUE(key->Write("\x7F\t", NumberValue(1)));
  EXPECT_EQ(Read("K", "\x7F\t"), NumberValue(1));
}

TEST_P(RegistryContractTest, KeysSeeEachOthersChangesAtOnceAndTheLastWriteCounts) {
  auto writer = registry().Create("K");
  auto other = registry().Open("K", RegistryAccess::kReadWrite);
  const auto reader = registry().Open("k", RegistryAccess::kRead);
  ASSERT_TRUE(writer != nullptr && other != nullptr && reader != nullptr);
  EXPECT_TRUE(writer->Write("x", NumberValue(1)));
  EXPECT_EQ(reader->Read("x"), NumberValue(1));
  EXPECT_FALSE(reader->Write("x", NumberValue(3)));
  EXPECT_FALSE(reader->Write("y", NumberValue(3)));
  EXPECT_TRUE(other->Write("x", NumberValue(2)));
  EXPECT_EQ(writer->Read("x"), NumberValue(2));
  other.reset();
  writer.reset();
  EXPECT_EQ(Read("K", "x"), NumberValue(2));
  EXPECT_EQ(Read("K", "y"), std::nullopt);
}

TEST_P(RegistryContractTest, WhatCanOnlyBeReadIsntWritten) {
  registry().Create("K")->Write("x", NumberValue(1));
  implementation->MakeReadOnly();
  EXPECT_EQ(registry().Open("K", RegistryAccess::kReadWrite), nullptr);
  EXPECT_EQ(registry().Open("", RegistryAccess::kReadWrite), nullptr);
  EXPECT_EQ(registry().Create("K"), nullptr);
  EXPECT_EQ(registry().Create("New"), nullptr);
  EXPECT_FALSE(IsThere("New"));
  EXPECT_EQ(Read("K", "x"), implementation->Kept());
}

TEST_P(RegistryContractTest, TypedReadsTakeTheirTypeOnly) {
  const auto key = registry().Create("K");
  key->Write("text", TextValue("abc\0def"s));
  key->Write("expand", {RegistryType::kExpandableText, "abc"});
  key->Write("number", NumberValue(50));
  key->Write("short", {RegistryType::kNumber, "2\0"s});
  key->Write("bytes", {RegistryType::kBinary, "2\0\0\0"s});
  EXPECT_EQ(ReadText(*key, "text"), "abc");
  EXPECT_EQ(ReadText(*key, "text", 7), "abc");
  EXPECT_EQ(ReadText(*key, "text", 6), std::nullopt) << "the limit is for all that is stored";
  EXPECT_EQ(ReadNumber(*key, "number"), 50U);
  for (const char* const name : {"expand", "number", "short", "bytes", "missing"}) {
    EXPECT_EQ(ReadText(*key, name), std::nullopt) << name;
  }
  for (const char* const name : {"text", "expand", "short", "bytes", "missing"}) {
    EXPECT_EQ(ReadNumber(*key, name), std::nullopt) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(InMemoryInAFileAndOverIt, RegistryContractTest,
                         testing::Values(Make<Implementation, InMemory>,
                                         Make<Implementation, InFile, RegistryMode::kReadWrite>,
                                         Make<Implementation, InFile, RegistryMode::kOverlay>));

}  // namespace
}  // namespace pw
