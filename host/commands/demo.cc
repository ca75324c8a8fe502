#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/text.h"
#include "host/commands/commands.h"
#include "host/native_file.h"
#include "host/sample_profile.h"

// `pairwise demo`: a first walk through the program, on a profile made for it.
namespace pw {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kAllLines = 1000;

// Which of the sample's cards the walk uses, by their place in it.
constexpr std::size_t kShown = 2;
constexpr std::size_t kDeleted = 31;
constexpr std::size_t kDone = 0;   // of the to-do items
constexpr std::size_t kMoved = 4;  // of the events
constexpr std::size_t kSeries = 5;
constexpr std::size_t kNote = 3;  // of the memos

std::string FirstLines(const std::string& text, std::size_t count) {
  std::size_t end = 0;
  std::size_t left = 0;
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    if (count > 0) {
      end = at + 1;
      --count;
    } else {
      ++left;
    }
  }
  if (left == 0) return text;
  return text.substr(0, end) + "… " + std::to_string(left) + " more lines\n";
}

class Walk {
 public:
  Walk(const Console& console, SampleProfile sample, std::string folder)
      : console(console), sample(std::move(sample)), folder(std::move(folder)) {}

  int Go() {
    Say("Made the sample profile " + folder +
        ". Its cardfile \"Friends\", Ada's to-do items and calendar, and a memo binder");
    Say("were filled by the module, a record at a time. The lines with a $ are what you could type "
        "yourself.");
    LookAround();
    ChangeSome();
    Export();
    LookAtTodos();
    LookAtCalendar();
    LookAtMemos();
    LookAtClocks();
    Say("");
    Say("The profile stays: run any of these lines again, or `pairwise --help` for what else "
        "there");
    Say("is. For your own data: pairwise init --profile DIR --data FOLDER");
    return worst;
  }

 private:
  void LookAround() {
    Heading("What the profile leads to");
    Run({"info"});
    Heading("The cards");
    Run({"list", "contact", "--table"}, 10);
    Heading("One of them, with all that it holds");
    Run({"show", "contact", sample.ids[kShown]});
  }

  void ChangeSome() {
    Heading("Change it, add one, delete another: the engine's own calls, a line each");
    const std::uintmax_t before = Size();
    Drive(folder + "/changes.jsonl", Changes());
    Say("(The last card is read so that the module knows which ids are taken.)");
    Say("Closing the source saved the cardfile: " + std::to_string(before) + " bytes before, " +
        std::to_string(Size()) + " now.");
    Heading("The changed card, read again");
    Run({"show", "contact", sample.ids[kShown]});
    Heading("And the list: one card is new, one has gone");
    Run({"list", "contact", "Friends", "--table"}, 6);
  }

  void Export() {
    Heading("Out to other programs");
    for (const char* format : {"vcf", "csv", "json"}) {
      const std::string file = folder + "/friends." + format;
      Run({"export", "contact", "--format", format, "-o", file});
      if (format == std::string("vcf")) ShowStart(file, 8);
    }
  }

  void LookAtTodos() {
    Heading("Tasks and calls, in one list");
    Run({"list", "todo", "--table"});
    Heading("One is done, and a call is to be made; the cursor is then on the new record");
    const std::string now = std::to_string(SampleTimeAfterCards());
    Drive(folder + "/todos.jsonl",
          "{\"op\":\"now\",\"seconds\":" + now +
              "}\n"
              "{\"op\":\"open\",\"type\":\"todo\",\"location\":\"C:\\\\Data\\\\Ada\"}\n"
              "{\"op\":\"find\",\"id\":\"" +
              sample.todoIds[kDone] +
              "\"}\n"
              "{\"op\":\"update\",\"record\":{\"Subject\":\"Have the tower clock looked at\","
              "\"Note\":\"Günther came on a Tuesday.\",\"StartDate\":\"1998-03-02\","
              "\"DueDate\":\"1998-03-20\",\"Priority\":2,\"Completed\":true}}\n"
              "{\"op\":\"add\",\"record\":{\"Call\":true,\"Subject\":\"Zoë Lindqvåst: thanks for "
              "the lenses\",\"StartDate\":\"1998-04-17\"}}\n"
              "{\"op\":\"read\"}\n"
              "{\"op\":\"close\"}\n");
    const std::string file = folder + "/todos.ics";
    Run({"export", "todo", "--format", "ics", "-o", file});
    ShowStart(file, 14);
  }

  void LookAtCalendar() {
    Heading("The calendar: holidays and trips, appointments, series");
    if (!sample.noClocks.empty()) {
      Say("There is none in this sample: " + sample.noClocks);
      return;
    }
    Run({"list", "calendar", "--table"});
    Heading("A series: one date is deleted, another one takes place otherwise");
    Run({"show", "calendar", sample.eventIds[kSeries]});
    Heading("The dentist an hour later; then what the organiser doesn't take");
    Drive(folder + "/events.jsonl", EventChanges());
    Say("(A fourth event at one time is refused, and one without length passes without a word: "
        "\"stored\" tells.)");
    Heading("Off to another calendar program");
    const std::string file = folder + "/calendar.ics";
    Run({"export", "calendar", "--format", "ics", "-o", file});
    ShowStart(file, 26);
  }

  void LookAtMemos() {
    Heading("Memos: a binder of two sections");
    Run({"list", "memo", "--table"});
    Run({"show", "memo", sample.memoIds[kNote]});
    Heading("One more note, and all of them as files for any editor");
    const std::string now = std::to_string(SampleTimeAfterCards());
    Drive(folder + "/memos.jsonl",
          "{\"op\":\"now\",\"seconds\":" + now +
              "}\n"
              "{\"op\":\"open\",\"type\":\"memo\",\"location\":"
              "\"C:\\\\Data\\\\Notebook;Workshop\"}\n"
              "{\"op\":\"add\",\"record\":{\"Subject\":\"Gold leaf\",\"Body\":\"Never in a "
              "draught.\\r\\nBreathe later.\"}}\n"
              "{\"op\":\"read\"}\n"
              "{\"op\":\"close\"}\n");
    Run({"export", "memo", "--format", "txt", "-o", folder + "/memos"});
    ShowStart(folder + "/memos/Workshop - Notebook/Gold leaf.txt", 4);
  }

  std::string EventChanges() const {
    const std::string now = std::to_string(SampleTimeAfterCards());
    return "{\"op\":\"now\",\"seconds\":" + now +
           "}\n"
           "{\"op\":\"open\",\"type\":\"calendar\",\"location\":\"C:\\\\Data\\\\Ada\"}\n"
           "{\"op\":\"find\",\"id\":\"" +
           sample.eventIds[kMoved] +
           "\"}\n"
           "{\"op\":\"update\",\"record\":{\"Subject\":\"Dentist\","
           "\"StartDate\":\"1998-03-18T09:45:00\",\"EndDate\":\"1998-03-18T10:15:00\","
           "\"Alarm\":true,\"AlarmAdvance\":60,\"Sensitivity\":2}}\n"
           "{\"op\":\"add\",\"record\":{\"Subject\":\"One too many\","
           "\"StartDate\":\"1998-03-12T14:30:00\",\"EndDate\":\"1998-03-12T14:40:00\"}}\n"
           "{\"op\":\"log\"}\n"
           "{\"op\":\"add\",\"record\":{\"Subject\":\"No time at all\","
           "\"StartDate\":\"1998-03-13T10:00:00\",\"EndDate\":\"1998-03-13T10:00:00\"}}\n"
           "{\"op\":\"close\"}\n";
  }

  void LookAtClocks() {
    Heading("The world clocks");
    if (!sample.noClocks.empty()) {
      Say("There are none in this sample: " + sample.noClocks);
      return;
    }
    Run({"list", "timezone", "--table"});
    const std::string calls = folder + "/clocks.jsonl";
    const std::string text =
        "{\"op\":\"open\",\"type\":\"timezone\"}\n"
        "{\"op\":\"find\",\"id\":\"1\"}\n"
        "{\"op\":\"read\"}\n"
        "{\"op\":\"update\",\"record\":{\"City\":\"New York\",\"State\":\"NY\",\"Country\":\"USA\","
        "\"Home\":true}}\n"
        "{\"op\":\"close\"}\n";
    Drive(calls, text);
    Run({"list", "timezone", "--table"}, 3);
    Heading("The cities behind them, made of this machine's zones");
    Run({"cities", "--table"}, 6);
  }

  // A new card's id is one above those that the module has read, so the last card is read first.
  std::string Changes() const {
    const std::string now = std::to_string(SampleTimeAfterCards());
    return "{\"op\":\"now\",\"seconds\":" + now +
           "}\n"
           "{\"op\":\"open\",\"type\":\"contact\",\"location\":\"C:\\\\Data\\\\Friends.WMCard\"}\n"
           "{\"op\":\"find\",\"id\":\"" +
           sample.ids.back() +
           "\"}\n"
           "{\"op\":\"read\"}\n"
           "{\"op\":\"find\",\"id\":\"" +
           sample.ids[kShown] +
           "\"}\n"
           "{\"op\":\"update\",\"record\":{\"fields\":[[\"Title\",\"Överingenjör\"],"
           "[\"Fax\",\"\"]]}}\n"
           "{\"op\":\"add\",\"record\":{\"fields\":[[\"First Name\",\"Wilhelmina\"],"
           "[\"Last Name\",\"Abelwhite\"]]}}\n"
           "{\"op\":\"id\"}\n"
           "{\"op\":\"find\",\"id\":\"" +
           sample.ids[kDeleted] +
           "\"}\n"
           "{\"op\":\"delete\"}\n"
           "{\"op\":\"count\"}\n"
           "{\"op\":\"close\"}\n";
  }

  // Writes the engine's calls into a file, shows it, and makes them.
  void Drive(const std::string& calls, const std::string& text) {
    const auto written = WriteNativeFile(calls, text);
    if (!written) {
      worst = console.Fail(written.Why());
      return;
    }
    console.out << "$ cat " << calls << "\n" << text;
    std::istringstream in(text);
    Run({"drive"}, kAllLines, &in, " < " + calls);
  }

  // Does what the command line says, as if it had been typed, and shows the start of what it
  // writes.
  void Run(std::vector<std::string> words, std::size_t lines = kAllLines,
           std::istream* in = nullptr, const std::string& redirection = "") {
    std::string typed = "pairwise -p " + folder;
    for (const std::string& word : words) typed += " " + word;
    console.out << "$ " << typed << redirection << "\n";

    words.insert(words.begin(), {"pairwise", "-p", folder});
    std::vector<const char*> arguments;
    arguments.reserve(words.size());
    for (const std::string& word : words) arguments.push_back(word.c_str());
    std::ostringstream out;
    const Console inner{in == nullptr ? console.in : *in, out, console.messages, false,
                        console.width};
    const int code = RunCommandLine(static_cast<int>(arguments.size()), arguments.data(), inner);
    console.out << FirstLines(out.str(), lines);
    if (code != kExitDone) worst = code;
  }

  void ShowStart(const std::string& file, std::size_t lines) {
    constexpr std::uintmax_t kLargest = 1 << 20;
    const auto text = ReadNativeFile(file, kLargest);
    if (!text) return;
    console.out << "$ head -" << lines << " " << file << "\n"
                << FirstLines(*text, lines).substr(0, text->size());
  }

  void Heading(const std::string& text) {
    console.out << "\n== " << ++step << ". " << text << "\n";
  }
  void Say(const std::string& text) { console.out << text << "\n"; }

  std::uintmax_t Size() const {
    std::error_code error;
    return fs::file_size(sample.cardfile, error);
  }

  const Console& console;
  SampleProfile sample;
  std::string folder;  // as it was given
  int step = 0;
  int worst = kExitDone;
};

int Demo(const CommandLine& line, const std::string& folder) {
  auto sample = MakeSampleProfile(folder, line.console.messages);
  if (!sample) return line.console.Fail(sample.Why());
  return Walk(line.console, std::move(*sample), folder).Go();
}

}  // namespace

void AddDemoCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("demo", "Make a sample profile, and walk through it");
  auto folder = std::make_shared<std::string>("pairwise-demo");
  command->add_option("dir", *folder, "Folder to make it in")
      ->capture_default_str()
      ->type_name("DIR");
  command->callback(
      [&line, folder] { line.chosen = [&line, folder] { return Demo(line, *folder); }; });
}

}  // namespace pw
