#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/end_to_end/sample.h"
#include "tests/support/calltask_builder.h"

namespace pw {
namespace {

using test::Call50;
using test::kNewWord;
using test::Task50;

constexpr const char* kOk = "{\"result\":0}\n";

// The sample with Ada's tasks and calls of 10 February 1998.
class TodoSample : public Sample {
 public:
  TodoSample() {
    ::setenv("TZ", "UTC0", 1);
    std::string profile = folder.Get("profile.toml");
    profile.replace(profile.find("5 = ''"), 6, "5 = 'Ada'");
    folder.Put("profile.toml", profile);
    Put("TASK", {Task50(1, 2, "Tea", "two\r\nlines", kNewWord, test::WordB({8, 1, 10}, {8, 2, 4})),
                 Task50(3, 4, "Weekly", "", kNewWord | 1U << 24)});
    Put("CALL", {Call50(5, 6, "Zo\xEB", "", kNewWord | 0x500000)});
  }

  void Put(const std::string& kind, const std::vector<std::string>& records) const {
    test::CallTaskBytes file{"WMW" + kind + "50"};
    file.days = {{1998, 40, records}};
    folder.Put("c/Data/Ada" + kind + ".WMW", file.Build());
  }
  Finished Run(std::vector<std::string> words, const std::string& input = "") const {
    words.insert(words.begin(), {"-p", Folder()});
    return RunPairwise(words, input);
  }
};

TEST(Todos, AreListedShownAndExported) {
  const TodoSample sample;
  EXPECT_NE(sample.Run({"info"}).out.find("\ntodo      1 category, 3 records\n"),
            std::string::npos);
  const Finished list = sample.Run({"list", "todo"});
  EXPECT_EQ(list.code, 4);
  EXPECT_EQ(list.messages,
            "pairwise: 1 recurring record is left out\n"
            "pairwise: PWDesktop-W2010: Recurring To Do item 'Weekly' is not supported by "
            "PairWise.\n");
  EXPECT_EQ(list.out,
            "Category\tID\tKind\tSubject\tStart\tDue\tPriority\tDone\tNote\n"
            "Task\t1+2\ttask\tTea\t1998-02-10\t1998-03-04\tnormal\t\ttwo lines\n"
            "Task\t5+6\tcall\tZo\xC3\xAB\t1998-02-10\t\thigh\tyes\t\n");
  EXPECT_EQ(sample.Run({"show", "todo", "1+2"}).out,
            "Category  Task\nID        1+2\nChanged   1999-01-22T10:13:20\nKind      task\n"
            "Subject   Tea\nStart     1998-02-10\nDue       1998-03-04\nPriority  normal\n"
            "Note      two\n          lines\n");
  const Finished json = sample.Run({"export", "todo"});
  EXPECT_EQ(json.out.substr(0, json.out.find(",\n")),
            "[\n  {\"id\":\"1+2\",\"record\":{\"Call\":false,\"Subject\":\"Tea\",\"Note\":"
            "\"two\\r\\nlines\",\"NoStartDate\":false,\"StartDate\":\"1998-02-10T00:00:00\","
            "\"NoDueDate\":false,\"DueDate\":\"1998-03-04T00:00:00\",\"Priority\":1,"
            "\"Completed\":false}}");
  const Finished calendar = sample.Run({"export", "todo", "--format", "ics"});
  EXPECT_NE(calendar.out.find("-1%2B2\r\nDTSTAMP:19990122T101320Z\r\nLAST-MODIFIED:"),
            std::string::npos)
      << calendar.out;
  EXPECT_NE(calendar.out.find("\r\nCATEGORIES:Call\r\n"), std::string::npos);
  EXPECT_EQ(sample.Run({"export", "contact", "--format", "ics"}).code, 2);
}

TEST(Todos, ThatCannotBeReadAreToldByFile) {
  const TodoSample sample;
  const std::string calls = sample.folder.Get("c/Data/AdaCALL.WMW");
  const std::string path = "pairwise: " + sample.Folder() + "/c/Data/AdaCALL.WMW: ";
  const struct {
    std::string bytes;
    const char* problem;
  } cases[] = {
      {calls.substr(0, 600), "cut short or damaged; what lies behind that is left out"},
      {calls.substr(0, 6900), "1 day can't be read and is left out"},
      {"another" + calls.substr(7), "doesn't begin as such a file does; its records may be wrong"},
  };
  for (const auto& each : cases) {
    sample.folder.Put("c/Data/AdaCALL.WMW", each.bytes);
    const Finished list = sample.Run({"list", "todo"});
    EXPECT_EQ(list.code, 4);
    EXPECT_EQ(list.messages.substr(0, list.messages.find('\n')), path + each.problem);
    EXPECT_NE(list.out.find("\tTea\t"), std::string::npos);
    EXPECT_EQ(sample.folder.Get("c/Data/AdaCALL.WMW"), each.bytes);
  }
  sample.folder.Put("c/Data/AdaCALL.WMW", "cut");
  sample.folder.Put("c/Data/AdaTASK.WMW", "cut");
  const Finished list = sample.Run({"list", "todo"});
  EXPECT_EQ(list.code, 1);
  EXPECT_EQ(list.messages,
            "pairwise: " + sample.Folder() +
                "/c/Data/AdaTASK.WMW: neither this file nor the calls beside it can be read\n");
}

TEST(Todos, DrivenTakeDatesAndKeepThem) {
  const TodoSample sample;
  const Finished run = sample.Run(
      {"drive"},
      "{\"op\":\"categories\",\"type\":\"todo\"}\n{\"op\":\"now\",\"seconds\":888840000}\n"
      "{\"op\":\"open\",\"type\":\"todo\",\"location\":\"C:\\\\Data\\\\Ada\"}\n"
      "{\"op\":\"add\",\"record\":{\"Call\":true,\"Subject\":\"Bea\",\"DueDate\":\"1998-05-29\","
      "\"StartDate\":\"1998-04-30T10:00:00\",\"Priority\":2}}\n"
      "{\"op\":\"read\"}\n{\"op\":\"find\",\"id\":\"1+2\"}\n"
      "{\"op\":\"update\",\"record\":{\"Subject\":\"Coffee\",\"Completed\":true}}\n"
      "{\"op\":\"read\"}\n{\"op\":\"add\",\"record\":{\"DueDate\":\"29 May\"}}\n"
      "{\"op\":\"close\"}\n");
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(
      run.out,
      "{\"result\":0,\"categories\":[{\"name\":\"Task\",\"location\":\"C:\\\\Data\\\\Ada\"}]}\n"
      "{}\n" +
          std::string(kOk) + kOk +
          "{\"result\":0,\"record\":{\"Call\":true,\"Subject\":\"Bea\",\"Note\":\"\","
          "\"NoStartDate\":false,\"StartDate\":\"1998-04-30T00:00:00\",\"NoDueDate\":false,"
          "\"DueDate\":\"1998-05-29T00:00:00\",\"Priority\":2,\"Completed\":false}}\n" +
          kOk + kOk +
          "{\"result\":0,\"record\":{\"Call\":false,\"Subject\":\"Coffee\",\"Note\":\"\","
          "\"NoStartDate\":false,\"StartDate\":\"1998-03-02T00:00:00\",\"NoDueDate\":true,"
          "\"DueDate\":\"0000-00-00T00:00:00\",\"Priority\":1,\"Completed\":true}}\n"
          "{\"error\":\"\\\"DueDate\\\" must be a date as 1998-03-02, or "
          "1998-03-02T12:00:00\"}\n" +
          kOk);
  const Finished list = sample.Run({"list", "todo"});
  EXPECT_NE(list.out.find("\ttask\tCoffee\t1998-02-10\t\tnormal\tyes\t\n"), std::string::npos)
      << list.out;
  EXPECT_NE(list.out.find("\tcall\tBea\t1998-04-30\t1998-05-29\thigh\t\t\n"), std::string::npos)
      << list.out;
}

// A new profile knows the files of its folder by the names that they have.
TEST(Todos, OfAFolderAreFoundByInit) {
  const TodoSample sample;
  const std::string data = sample.Folder() + "/c/Data";
  const auto listed = [&](const std::string& profile, std::vector<std::string> more) {
    std::vector<std::string> words = {"-p", sample.Folder() + "/" + profile, "init", "--data",
                                      data};
    words.insert(words.end(), more.begin(), more.end());
    const Finished init = RunPairwise(words);
    EXPECT_EQ(init.code, 0) << init.messages;
    return init.messages + RunPairwise({"-p", sample.Folder() + "/" + profile, "list", "todo"}).out;
  };
  EXPECT_NE(listed("new", {}).find("\tTea\t"), std::string::npos);
  const std::string user =
      "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Main]\n"
      "\"PRODUCT\"=dword:00000001\n"
      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\Calendar-Task]\n"
      "\"DefUserName\"=\"";
  sample.folder.Put("here.reg", user + "C:\\\\Data\\\\Ada\"\n");
  sample.folder.Put("away.reg", user + "X:\\\\Home\\\\Cy\"\n");
  sample.folder.Put("c/Data/AaronEven.wmw", "");
  EXPECT_NE(listed("of-here", {"--registry", sample.Folder() + "/here.reg"}).find("\tTea\t"),
            std::string::npos);
  const std::string several = listed("of-away", {"--registry", sample.Folder() + "/away.reg"});
  EXPECT_NE(several.find("those of 'Aaron' are taken"), std::string::npos) << several;
  EXPECT_EQ(several.find("\tTea\t"), std::string::npos);
}

}  // namespace
}  // namespace pw
