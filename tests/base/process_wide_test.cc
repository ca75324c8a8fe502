#include "base/process_wide.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace pw {
namespace {

ProcessWide<int> number([] { return 7; });
ProcessWide<std::string> text;

TEST(ProcessWideTest, OneCallPutsEveryPieceBackToItsStart) {
  EXPECT_EQ(*number, 7);
  *number = 8;
  *text = "changed";
  ResetProcessWideState();
  EXPECT_EQ(*number, 7);
  EXPECT_EQ(*text, "");
}

TEST(ProcessWideTest, APieceThatIsGoneIsNotReset) {
  auto first = std::make_unique<ProcessWide<int>>();
  auto second = std::make_unique<ProcessWide<int>>();
  auto third = std::make_unique<ProcessWide<int>>();
  second.reset();
  **first = 1;
  **third = 3;
  ResetProcessWideState();
  EXPECT_EQ(**first, 0);
  EXPECT_EQ(**third, 0);
}

}  // namespace
}  // namespace pw
