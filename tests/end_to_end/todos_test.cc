#include <filesystem>
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

// The sample with Ada's tasks and calls of 10 February 1998.
class TodoSample : public Sample {
 public:
  TodoSample() {
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
};

TEST(Todos, AreListedShownAndExported) {
  const TodoSample sample;
  EXPECT_TRUE(Has(sample.Run({"info"}).out, "\ntodo      1 category, 3 records\n"));
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
  const Finished recurring = sample.Run({"show", "todo", "3+4"});
  EXPECT_EQ(recurring.code, 1);
  EXPECT_EQ(recurring.messages.substr(0, recurring.messages.find('\n')),
            "pairwise: record 3+4 is a recurring one, which can't be passed on");
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
  EXPECT_TRUE(Has(calendar.out, "-1%2B2\r\nDTSTAMP:19990122T101320Z\r\nLAST-MODIFIED:"));
  EXPECT_TRUE(Has(calendar.out, "\r\nCATEGORIES:Call\r\n"));
  EXPECT_EQ(sample.Run({"export", "contact", "--format", "ics"}).code, 2);
}

TEST(Todos, ThatCannotBeReadAreToldByFile) {
  const TodoSample sample;
  const std::string calls = sample.folder.Get("c/Data/AdaCALL.WMW");
  const std::string path = "pairwise: " + sample.Folder() +
                           "/c/Data/AdaCALL.WMW: damaged, so that not all of it is read: ";
  const struct {
    std::string bytes;
    const char* problem;
  } cases[] = {
      {calls.substr(0, 600), "at 600 a header and the table of years, 626 bytes, were expected"},
      {calls.substr(0, 6900), "at 1306 a day that lies within the file was expected here"},
      {"another" + calls.substr(7),
       "at 0 \"WMWCALL50\" or \"WMWCALL20\" was expected here; the records may be wrong"},
  };
  for (const auto& each : cases) {
    sample.folder.Put("c/Data/AdaCALL.WMW", each.bytes);
    const Finished list = sample.Run({"list", "todo"});
    EXPECT_EQ(list.code, 4);
    EXPECT_EQ(list.messages.substr(0, list.messages.find('\n')), path + each.problem);
    EXPECT_TRUE(Has(list.out, "\tTea\t"));
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

// Where the files don't tell when something was changed nothing says so.
TEST(Todos, OfOldFilesHaveNoTimeOfChange) {
  const TodoSample sample;
  const std::string record = test::Task30("Tea", "note", kNewWord | 1U << 22);
  const auto put = [&](const char* kind, const char* version, const std::string& each) {
    test::CallTaskBytes file{std::string("WMW") + kind + version};
    file.days = {{1998, 40, {each, each}}};
    sample.folder.Put(std::string("c/Data/Ada") + kind + ".WMW", file.Build());
  };
  put("TASK", "20", record);
  const std::string calendar = sample.Run({"export", "todo", "--format", "ics"}).out;
  EXPECT_EQ(calendar.find("LAST-MODIFIED"), calendar.rfind("LAST-MODIFIED")) << "the call's";
  EXPECT_TRUE(Has(calendar, "TeaWMTodo\r\n"));
  EXPECT_TRUE(Has(calendar, "TeaWMTodo#2\r\n"));
  EXPECT_EQ(calendar.find("\nCOMPLETED:"), calendar.rfind("\nCOMPLETED:"));
  // Nor do tasks beside old calls.
  put("TASK", "50", Task50(1, 2, "Tea", "note", kNewWord | 1U << 22));
  put("CALL", "20", test::Call30("Zo\xEB", "note"));
  const Finished list = sample.Run({"export", "todo", "--format", "ics"});
  EXPECT_FALSE(Has(list.out, "LAST-MODIFIED"));
  EXPECT_TRUE(Has(sample.Run({"show", "todo", "1+2"}).out, "\nChanged   unknown\n"));
}

// A new profile knows the files of its folder by the names that they have.
TEST(Todos, OfAFolderAreFoundByInit) {
  const TodoSample sample;
  const std::string key = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\Wingmate 98\\Version 1\\";
  const std::string edition = "REGEDIT4\n\n" + key + "Main]\n\"PRODUCT\"=dword:00000001\n";
  sample.folder.Put("none.reg", edition);
  const auto putUser = [&](const std::string& user) {
    sample.folder.Put("user.reg",
                      edition + key + "Calendar-Task]\n\"DefUserName\"=\"" + user + "\"\n");
  };
  int profiles = 0;
  const auto listed = [&](const std::vector<std::string>& more) {
    const std::string profile = sample.Folder() + "/profile" + std::to_string(++profiles);
    std::vector<std::string> words = {"-p", profile, "init", "--data", sample.Folder() + "/c/Data"};
    words.insert(words.end(), more.begin(), more.end());
    const Finished init = RunPairwise(words);
    EXPECT_EQ(init.code, 0) << init.messages;
    return init.messages + RunPairwise({"-p", profile, "list", "todo"}).out;
  };
  const std::vector<std::string> noUser = {"--registry", sample.Folder() + "/none.reg"};
  const std::vector<std::string> user = {"--registry", sample.Folder() + "/user.reg"};
  const auto isTea = [](const std::string& text) { return text.find("\tTea\t") != text.npos; };
  EXPECT_TRUE(isTea(listed({})));
  EXPECT_TRUE(isTea(listed(noUser)));
  sample.folder.Put("c/Data/AaronEven.wmw", "");
  for (const char* path : {"C:\\\\Data\\\\Ada", "D:\\\\Wing\\\\ada"}) {
    putUser(path);
    EXPECT_TRUE(isTea(listed(user))) << path;
  }
  putUser("C:\\\\Data\\\\Cy");
  const std::string several = listed(user);
  EXPECT_TRUE(Has(several, "those of 'Aaron' are taken"));
  EXPECT_FALSE(isTea(several));

  // Files without a stem.
  sample.folder.Put("c/Data/TASK.WMW", sample.folder.Get("c/Data/AdaTASK.WMW"));
  for (const char* file : {"AdaTASK.WMW", "AdaCALL.WMW", "AaronEven.wmw"}) {
    std::filesystem::remove(sample.folder.Path() / "c/Data" / file);
  }
  EXPECT_TRUE(isTea(listed({})));
  EXPECT_TRUE(isTea(listed(noUser)));
  EXPECT_TRUE(isTea(listed(user)));
}

}  // namespace
}  // namespace pw
