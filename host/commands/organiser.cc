#include <algorithm>
#include <charconv>
#include <csignal>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/codepage.h"
#include "base/text.h"
#include "host/commands/commands.h"
#include "host/organiser_guard.h"
#include "host/text_table.h"
#include "platform/posix/posix_registry.h"
#include "platform/posix/window_folder.h"
#include "platform/posix/window_server.h"

// `pairwise organiser`: a window that stands in for the running organiser, to try the word that a
// source has with it.
namespace pw {
namespace {

constexpr const char* kNotesKey = "SOFTWARE\\Gullwing\\Pairwise 1.0\\Common";
constexpr const char* kNoteNames[] = {"To Do", "Calendar", "Cardfile", "Write Binder",
                                      "Calls", "Goals",    "Multiday", "Clocks"};
constexpr std::size_t kNoteWidth = 12;

// What each step of the handshake means.
constexpr const char* kSteps[] = {
    "a source wants the files",
    "the source opens the files now",
    "the source is done, the files may be taken back",
    "the source gives up, the files are as they were",
};

struct OrganiserOptions {
  std::int32_t answer = 0;
  std::vector<std::string> answersTo;
  bool disabled = false;
  std::size_t count = 0;
};

// "WPARAM=N", both whole numbers.
bool ParseAnswerTo(std::string_view text, std::uint32_t& wParam, std::int32_t& answer) {
  const char* end = text.data() + text.size();
  const auto step = std::from_chars(text.data(), end, wParam);
  if (step.ec != std::errc() || step.ptr == end || *step.ptr != '=') return false;
  const auto number = std::from_chars(step.ptr + 1, end, answer);
  return number.ec == std::errc() && number.ptr == end;
}

class StandIn : public WindowHandler {
 public:
  StandIn(const Console& console, const OrganiserOptions& options, std::string registryFile)
      : out(console.out),
        messages(console.messages),
        options(options),
        registryFile(std::move(registryFile)) {}

  // Called once with what ends the service after the last message.
  void SetServer(WindowServer& running) { server = &running; }
  void AnswerTo(std::uint32_t wParam, std::int32_t answer) { answers[wParam] = answer; }

  std::string ClassName() override { return kOrganiserWindow; }
  bool Enabled() override { return !options.disabled; }
  std::string Parent() override { return {}; }

  std::int32_t Answer(const WindowMessage& message) override {
    const auto own = answers.find(message.wParam);
    const std::int32_t answer = own == answers.end() ? options.answer : own->second;
    const char* meaning = message.wParam < std::size(kSteps) ? kSteps[message.wParam] : "not known";
    out << Format("message 0x%04X, step %u: %s; answered %d\n", message.number, message.wParam,
                  meaning, answer);
    if (message.wParam == 0) PrintNotes();
    out.flush();
    ++handled;
    if (handled == options.count) server->Stop();
    return answer;
  }

 private:
  // Which files are meant, as the source has noted in the registry.
  void PrintNotes() {
    if (registryFile.empty()) return;
    PosixRegistry registry({registryFile, RegistryMode::kReadOnly, {}});
    if (const auto error = registry.Error()) messages << "pairwise: " << *error << "\n";
    const auto key = registry.Open(kNotesKey, RegistryAccess::kRead);
    if (key == nullptr) return;
    for (const char* name : kNoteNames) {
      const auto note = ReadText(*key, name);
      if (!note || note->empty()) continue;
      out << "  " << Fitted(name, kNoteWidth) << "  " << OneLine(CodePageToUtf8(*note)) << "\n";
    }
  }

  std::ostream& out;
  std::ostream& messages;
  const OrganiserOptions& options;
  std::string registryFile;
  std::map<std::uint32_t, std::int32_t> answers;
  WindowServer* server = nullptr;
  std::size_t handled = 0;
};

// What a signal ends.
WindowServer* runningServer = nullptr;

// As long as it lives, a signal that would end the process stops the server. It must go before the
// server does.
class StopOnSignals {
 public:
  explicit StopOnSignals(WindowServer& server) {
    runningServer = &server;
    struct sigaction action {};
    action.sa_handler = [](int) { runningServer->Stop(); };
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
      struct sigaction before {};
      ::sigaction(signal, nullptr, &before);
      if (before.sa_handler == SIG_IGN) continue;
      ::sigaction(signal, &action, nullptr);
      replaced.emplace_back(signal, before);
    }
  }
  ~StopOnSignals() {
    for (const auto& [signal, before] : replaced) ::sigaction(signal, &before, nullptr);
    runningServer = nullptr;
  }
  StopOnSignals(const StopOnSignals&) = delete;
  StopOnSignals& operator=(const StopOnSignals&) = delete;

 private:
  std::vector<std::pair<int, struct sigaction>> replaced;
};

int Organiser(const CommandLine& line, const OrganiserOptions& options) {
  const Console& console = line.console;
  std::string registryFile;
  if (!line.profileFolder.empty()) {
    const auto profile = ReadProfile(line.profileFolder);
    if (!profile) return console.Fail(profile.Why());
    registryFile = profile->RegistryFile().string();
  }
  StandIn window(console, options, registryFile);
  for (const std::string& text : options.answersTo) {
    std::uint32_t wParam = 0;
    std::int32_t answer = 0;
    if (!ParseAnswerTo(text, wParam, answer)) {
      return console.FailUsage("--answer-to: '" + text + "' isn't of the form STEP=N");
    }
    window.AnswerTo(wParam, answer);
  }
  WindowServer server(DefaultWindowsFolder(), window);
  if (const auto error = server.Error()) return console.Fail({*error});
  window.SetServer(server);
  const StopOnSignals stopOnSignals(server);
  console.out << "ready" << std::endl;
  server.Serve();
  return kExitDone;
}

}  // namespace

void AddOrganiserCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand(
      "organiser", "Stand in for the running organiser, and print what it is sent");
  command->footer(
      "Prints \"ready\" once it can be found. With a profile it also prints which files a source "
      "has\n"
      "noted in the profile's registry. Ends at Ctrl-C.");
  auto options = std::make_shared<OrganiserOptions>();
  command->add_option("--answer", options->answer, "Answer to every message; 0 agrees")
      ->capture_default_str()
      ->type_name("N");
  command
      ->add_option("--answer-to", options->answersTo, "Answer to the messages of one step, 0 to 3")
      ->allow_extra_args(false)
      ->type_name("STEP=N");
  command->add_flag("--disabled", options->disabled, "Be as if a dialog were open");
  command->add_option("--count", options->count, "End after that many messages")
      ->check(CLI::PositiveNumber)
      ->type_name("N");
  command->callback(
      [&line, options] { line.chosen = [&line, options] { return Organiser(line, *options); }; });
}

}  // namespace pw
