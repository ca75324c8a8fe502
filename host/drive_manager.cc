// The calls of a drive that nobody needs for a run, but the engine may make: what the source
// manager shows of itself, its pages, its own backup, and the operations that are reserved.
#include "framework/dialogs.h"
#include "host/drive.h"

namespace pw {
namespace {

constexpr const char* kResult = "result";

// As the engine's wizard, which nobody sees here.
class UnseenWizard : public CWizardSheet {
 public:
  UnseenWizard() : CWizardSheet("") {}
  void ResetApplicationSource(PWApplicationSource* /*source*/) override {}
};

}  // namespace

void Drive::Available(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.IsAvailable();
}

void Drive::HeaderName(JsonFields& /*line*/, Json& answer) {
  answer["name"] = JsonText(objects.manager.CategoryHeaderName().View());
}

void Drive::Icon(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.Icon() != nullptr;
}

// Nobody is there to leave the sheet by OK.
void Drive::ShowOptions(JsonFields& /*line*/, Json& answer) {
  PWConfig settings = objects.config;
  answer[kResult] = objects.manager.ShowOptions(&settings);
}

void Drive::SetupPages(JsonFields& line, Json& answer) {
  const bool extra = line.Has("extra") && line.Bool("extra");
  if (line.Failed()) return;
  UnseenWizard wizard;
  answer[kResult] =
      extra ? objects.manager.AddExtraSetupPages(&wizard) : objects.manager.AddSetupPages(&wizard);
  answer["pages"] = wizard.Pages().size();
}

void Drive::Backup(JsonFields& line, Json& answer) {
  const std::string target = line.Text("target");
  if (line.Failed()) return;
  PWString out;
  answer[kResult] = objects.manager.Backup(target.c_str(), &out);
  answer["path"] = JsonText(out.View());
}

// Each of the manager's reserved operations, with zeros where it takes words.
void Drive::Reserved(JsonFields& /*line*/, Json& answer) {
  PWSourceManager& manager = objects.manager;
  manager.ReservedNoticeA(0);
  manager.ReservedNoticeB(0);
  answer = Json{
      {"flag", manager.ReservedFlag()},
      {"queries", {manager.ReservedQueryA(), manager.ReservedQueryB(), manager.ReservedQueryC()}},
      {"actions", {manager.ReservedActionA(0), manager.ReservedActionB(0)}},
      {"triple", manager.ReservedTriple(0, 0, 0)}};
}

// The same of the open source.
void Drive::SourceReserved(JsonFields& /*line*/, Json& answer) {
  answer = Json{{"status", source->ReservedStatus()},
                {"operation", source->ReservedOperation(0, 0)},
                {"query", source->ReservedQuery(0)}};
}

}  // namespace pw
