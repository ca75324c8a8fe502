#include "framework/application.h"

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "framework/engine_context.h"
#include "framework/log.h"

namespace {

TEST(ApplicationTest, WalksTheEnginesTypes) {
  EXPECT_EQ(PWApplication::FirstType(), nullptr);
  EXPECT_EQ(PWApplication::NextType(), nullptr);
  pw::ResetProcessWideState();
  auto& types = pw::Engine().types;
  types.push_back(std::make_unique<PWApplicationType>("contact", true));
  types.push_back(std::make_unique<PWApplicationType>("memo", false));
  EXPECT_EQ(PWApplication::NextType(), nullptr) << "before the first";
  EXPECT_TRUE(PWApplication::FirstType()->Name() == "contact");
  EXPECT_FALSE(PWApplication::NextType()->IsSyncing());
  EXPECT_EQ(PWApplication::NextType(), nullptr);
  EXPECT_EQ(PWApplication::NextType(), nullptr);
  pw::ResetProcessWideState();
  EXPECT_EQ(PWApplication::FirstType(), nullptr);
}

TEST(ApplicationTest, TypesAreFoundByTheirExactNameAlsoInACopy) {
  PWApplicationSource source;
  source.Types.Append(new PWAppSrcTypeInfo("memo"), false);
  EXPECT_EQ(source.FindTypeInfo("memo"), source.Types.At(0));
  EXPECT_EQ(source.FindTypeInfo("Memo"), nullptr);
  const PWApplicationSource copy(source);
  EXPECT_NE(copy.FindTypeInfo("memo"), nullptr);
}

TEST(LogTest, FormatsLinesOfAnyLength) {
  class Lines : public PWLog {
   public:
    void Add(const char* text, ELogItemImage image) override {
      last = text;
      lastImage = image;
    }
    std::string last;
    ELogItemImage lastImage = kLogFailure;
  };
  Lines log;
  const std::string subject(100000, 's');
  log.Addf("'%s' has %d", kLogWarning, subject.c_str(), 5);
  EXPECT_EQ(log.last, "'" + subject + "' has 5");
  EXPECT_EQ(log.lastImage, 9);
}

}  // namespace
