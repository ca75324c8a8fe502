#include "plugin/handshake.h"

#include <gtest/gtest.h>

#include "base/process_wide.h"
#include "framework/engine_context.h"
#include "platform/testing/test_platform.h"
#include "tests/support/source_fixture.h"

namespace {

constexpr const char* kNotes = "SOFTWARE\\Gullwing\\Pairwise 1.0\\Common";

class HandshakeTest : public testing::Test {
 protected:
  std::string Note(const char* name) {
    const auto value = platform.registry.Get(kNotes, name);
    if (!value) return "(none)";
    EXPECT_EQ(value->type, pw::RegistryType::kText) << name;
    return value->data;
  }
  void RunOrganiser(std::int32_t answer = 0, bool enabled = true) {
    organiser = platform.windows.Add("Wingmate_95", enabled);
    platform.windows.SetAnswer(organiser, answer);
  }

  pw::TestPlatform platform;
  pw::WindowId organiser = pw::kNoWindow;
};

TEST_F(HandshakeTest, WithoutAnOrganiserOrWhereItIsSkippedNothingHappens) {
  for (const bool skip : {false, true}) {
    if (skip) RunOrganiser(5, false);
    EXPECT_EQ(NotifyOrganiserOpen("C:\\Data\\x", 0, kMemoFiles, skip), 1);
    EXPECT_TRUE(NotifyOrganiserLock(0, skip));
    EXPECT_TRUE(NotifyOrganiserEnd(!skip, 0, skip));
    EXPECT_TRUE(platform.windows.sent.empty());
    EXPECT_EQ(Note("Write Binder"), "(none)");
  }
  // The notes are cleared when the organiser is first met, and then no more.
  platform.registry.Set(kNotes, "Goals", pw::TextValue("old"));
  NotifyOrganiserOpen("C:\\F.WMCard", 0, kContactFiles, false);
  EXPECT_EQ(Note("Goals"), "");
  NotifyOrganiserOpen("C:\\x", 0, kMemoFiles, false);
  EXPECT_EQ(Note("Cardfile"), "C:\\F.WMCard");
}

TEST_F(HandshakeTest, StepsAndRepliesPass) {
  RunOrganiser(0);
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kMemoFiles, false), 2);
  EXPECT_TRUE(NotifyOrganiserLock(0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(true, 0, false));
  EXPECT_TRUE(NotifyOrganiserEnd(false, 0, false));
  EXPECT_EQ(pw::test::SentSteps(platform), (pw::test::Steps{0, 1, 2, 3}));
  const std::uint32_t number = platform.windows.RegisterMessage("IWM Pilot Notification");
  for (const auto& sent : platform.windows.sent) {
    EXPECT_EQ(sent.number, number);
    EXPECT_EQ(sent.lParam, 0);
  }
  platform.windows.SetAnswer(organiser, 1);
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kMemoFiles, false), 1);
  EXPECT_FALSE(NotifyOrganiserLock(0, false));
  EXPECT_FALSE(NotifyOrganiserEnd(true, 0, false));
  // A number that was registered before is used as it is.
  NotifyOrganiserLock(0xC123, false);
  EXPECT_EQ(platform.windows.sent.back().number, 0xC123U);
}

TEST_F(HandshakeTest, EachKindWritesItsNotes) {
  RunOrganiser();
  const struct {
    std::int32_t kind;
    const char* path;
    std::vector<std::pair<const char*, const char*>> notes;
  } cases[] = {
      {kTodoFiles,
       "C:\\Data\\AnnTASK.WMW",
       {{"To Do", "C:\\Data\\AnnTASK.WMW"},
        {"Calls", "C:\\Data\\Anncall.wmw"},
        {"Calendar", "C:\\Data\\Anneven.wmw"}}},
      // A short path cuts the notes to its length.
      {kTodoFiles, "C:\\x", {{"To Do", "C:\\x"}, {"Calls", "call"}, {"Calendar", "even"}}},
      // The event file's name is never found in a path of small letters.
      {kCalendarFiles,
       "C:\\Data\\Even.WMW",
       {{"Calendar", "C:\\Data\\Even.WMW"}, {"Multiday", "c:\\data\\even.wmw"}}},
      {kContactFiles, "C:\\F.WMCard", {{"Cardfile", "C:\\F.WMCard"}}},
      {kTimezoneFiles, "C:\\CLOCKS.DAT", {{"Clocks", "C:\\CLOCKS.DAT"}}},
      {kMemoFiles, "C:\\N.WMWrite", {{"Write Binder", "C:\\N.WMWrite"}}},
      {99, "C:\\x", {}},
  };
  const char* all[] = {"To Do", "Calendar", "Cardfile", "Write Binder",
                       "Calls", "Goals",    "Multiday", "Clocks"};
  for (const auto& c : cases) {
    pw::ResetProcessWideState();  // as a new load of the module
    for (const char* name : all) platform.registry.Set(kNotes, name, pw::TextValue("old"));
    EXPECT_EQ(NotifyOrganiserOpen(c.path, 0, c.kind, false), 2);
    for (const char* name : all) {
      const char* expected = "";
      for (const auto& note : c.notes) {
        if (std::string(note.first) == name) expected = note.second;
      }
      EXPECT_EQ(Note(name), expected) << name << " of kind " << c.kind;
    }
  }
}

TEST_F(HandshakeTest, WithoutAPathOrAKeyTheMessageIsSentAllTheSame) {
  RunOrganiser();
  EXPECT_EQ(NotifyOrganiserOpen("", 0, kMemoFiles, false), 2);
  EXPECT_EQ(NotifyOrganiserOpen(nullptr, 0, kMemoFiles, false), 2);
  EXPECT_EQ(Note("Goals"), "(none)") << "nothing was cleared";
  platform.registry.readOnly = true;
  EXPECT_EQ(NotifyOrganiserOpen("C:\\x", 0, kMemoFiles, false), 2);
  EXPECT_EQ(platform.windows.sent.size(), 3U);
}

TEST_F(HandshakeTest, ADisabledOrganiserIsBusyBehindAWholeChainOfWindows) {
  const auto open = [&] { return NotifyOrganiserOpen("C:\\x", 0, kMemoFiles, false); };
  RunOrganiser(0, false);
  EXPECT_EQ(open(), 2) << "no main window";

  const pw::WindowId top = platform.windows.Add("Top");
  pw::Engine().mainWindow = PWWindow(top);
  EXPECT_EQ(open(), 2) << "no parent";
  const pw::WindowId parent = platform.windows.Add("Parent", true, top);
  pw::Engine().mainWindow = PWWindow(parent);
  EXPECT_EQ(open(), 2) << "no grandparent";

  pw::Engine().mainWindow = PWWindow(platform.windows.Add("Main", true, parent));
  const std::size_t sent = platform.windows.sent.size();
  platform.registry.Set(kNotes, "Write Binder", pw::TextValue("untouched"));
  EXPECT_EQ(open(), 0);
  EXPECT_EQ(Note("Write Binder"), "untouched");
  EXPECT_EQ(platform.windows.sent.size(), sent) << "it isn't asked";
  platform.windows.SetEnabled(organiser, true);
  EXPECT_EQ(open(), 2);

  // A run inside of the organiser disables it by itself.
  platform.windows.SetEnabled(organiser, false);
  const pw::WindowId child = platform.windows.Add("Child", true, organiser);
  pw::Engine().mainWindow = PWWindow(platform.windows.Add("Hosted", true, child));
  EXPECT_EQ(open(), 2);
}

}  // namespace
