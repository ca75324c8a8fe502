#include <algorithm>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>

#include <CLI/CLI.hpp>

#include "host/check/folder_check.h"
#include "host/commands/commands.h"
#include "host/counted.h"
#include "host/text_table.h"

// `pairwise check`: what a folder's files hold, and what of them is damaged.
namespace pw {
namespace {

constexpr std::size_t kMostFindings = 20;  // shown of a file

void Print(std::ostream& out, const Finding& finding) {
  out << "  ";
  if (finding.offset) out << "at " << *finding.offset << ": ";
  out << OneLine(finding.text);
  if (finding.lost > 0) {
    out << "; the next save would lose " << Counted(finding.lost, "record", "records");
  }
  out << "\n";
}

void Print(std::ostream& out, const CheckedFile& file, std::size_t width) {
  out << Fitted(OneLine(file.name), width) << "  " << file.check.holds << "\n";
  const auto& findings = file.check.findings;
  const std::size_t shown = std::min(findings.size(), kMostFindings);
  for (std::size_t i = 0; i < shown; ++i) Print(out, findings[i]);
  if (shown < findings.size()) {
    out << "  and " << Counted(findings.size() - shown, "thing more", "things more") << "\n";
  }
}

std::string Summary(const FolderCheck& check, std::size_t findings, std::size_t lost) {
  std::string text = Counted(check.files.size(), "file", "files") + " of the organiser's";
  if (check.others > 0) text += ", " + Counted(check.others, "other", "others");
  if (findings == 0) return text + ": all is well";
  text += ": " + Counted(findings, "finding", "findings");
  return text + ", " + (lost == 0 ? std::string("no record") : Counted(lost, "record", "records")) +
         " would be lost at the next save";
}

int Check(const Console& console, const std::string& folder) {
  const auto check = CheckFolder(folder);
  if (!check) return console.Fail(check.Why());
  std::size_t width = 0;
  std::size_t findings = 0;
  std::size_t lost = 0;
  for (const CheckedFile& file : check->files) {
    width = std::max(width, DisplayWidth(OneLine(file.name)));
    findings += file.check.findings.size();
    for (const Finding& finding : file.check.findings) lost += finding.lost;
  }
  for (const CheckedFile& file : check->files) Print(console.out, file, width);
  console.out << Summary(*check, findings, lost) << "\n";
  return findings == 0 ? kExitDone : kExitSomeSkipped;
}

}  // namespace

void AddCheckCommand(CLI::App& app, CommandLine& line) {
  CLI::App* command = app.add_subcommand("check", "Look for damage in the files of a folder");
  command->footer(
      "Changes nothing, and needs no profile. For each of the organiser's files it says what the "
      "file\nholds, then where it isn't as expected and what the next save would lose.");
  auto folder = std::make_shared<std::string>();
  command->add_option("folder", *folder, "Folder that holds the organiser's files")
      ->required()
      ->type_name("FOLDER");
  command->callback(
      [&line, folder] { line.chosen = [&line, folder] { return Check(line.console, *folder); }; });
}

}  // namespace pw
