#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "framework/source.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/test_log.h"

namespace pw::test {

using Lines = std::vector<std::string>;
using Steps = std::vector<std::uint32_t>;

// The steps that the organiser was told of.
inline Steps SentSteps(const TestPlatform& platform) {
  Steps steps;
  for (const auto& sent : platform.windows.sent) steps.push_back(sent.wParam);
  return steps;
}

// A source of this type, made by the manager of an edition.
class SourceTest : public testing::Test {
 protected:
  SourceTest(const char* type, std::uint32_t product) : type(type) {
    manager.Config = &config;
    manager.Log = log;
    config.String(PWConfig::kProductKey, "SOFTWARE\\Main");
    platform.registry.Set("SOFTWARE\\Main", "PRODUCT", NumberValue(product));
    MakeSource();
  }

  void MakeSource() {
    source.reset(manager.CreateSource(type));
    source->Category = &category;
  }
  std::string Id() { return source->RecordID().Str(); }
  Lines Ids() {
    Lines ids;
    for (PWRESULT at = source->FirstRecord(); at == 0; at = source->NextRecord()) {
      ids.push_back(Id());
    }
    return ids;
  }
  Steps Sent() const { return SentSteps(platform); }

  TestPlatform platform;
  PWConfig config;
  TestLog* log = new TestLog;  // the manager's
  WMSourceManager manager{0};
  PWSourceCategory category;
  std::unique_ptr<PWSource> source;

 private:
  const char* type;
};

}  // namespace pw::test
