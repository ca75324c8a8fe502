#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "memo/binder.h"
#include "platform/testing/test_platform.h"
#include "tests/support/binder_builder.h"

namespace pw::test {

inline constexpr const char* kStem = "C:\\Data\\Notes";

// A binder of the in-memory platform.
class BinderTest : public testing::Test {
 protected:
  BinderTest() { platform.files.PutFolder("C:\\Data"); }

  void Put(const BinderBytes& bytes) { PutBinder(platform.files, kStem, bytes); }
  void PutFiles(const std::string& sections, const std::string& headers,
                const std::string& contents) {
    platform.files.Put(kStem + std::string(".WMWrite"), sections);
    platform.files.Put(kStem + std::string(".WMNoteHeader"), headers);
    platform.files.Put(kStem + std::string(".WMContent"), contents);
  }
  std::string Get(const char* extension) {
    return platform.files.Get(std::string(kStem) + extension).value_or("none");
  }
  std::int32_t Open() {
    binder = std::make_unique<WMBinder>();
    return binder->Open(kStem);
  }
  void ExpectFiles(const BinderBytes& bytes) {
    EXPECT_EQ(Get(".WMWrite"), bytes.Sections());
    EXPECT_EQ(Get(".WMNoteHeader"), bytes.Headers());
    EXPECT_EQ(Get(".WMContent"), bytes.Contents());
  }

  // The plain subjects, in their order.
  std::string Subjects() const {
    std::string subjects;
    for (std::uint32_t i = 0; i < binder->NoteCount(); ++i) {
      subjects += binder->Note(i).SubjectText() + "|";
    }
    return subjects;
  }

  TestPlatform platform;
  std::unique_ptr<WMBinder> binder;
};

}  // namespace pw::test
