#include "host/closed_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <string_view>
#include <system_error>

#include "host/calendar_stems.h"
#include "host/organiser_folder.h"
#include "host/record_reader.h"
#include "memo/format.h"
#include "memo/location.h"

namespace pw {
namespace {

std::vector<std::string> WithEndings(const std::string& prefix,
                                     std::initializer_list<std::string_view> endings) {
  std::vector<std::string> files;
  for (const std::string_view ending : endings) files.push_back(prefix + std::string(ending));
  return files;
}

// The organiser's paths of the files that the records of a category are kept in.
std::vector<std::string> FilesOfCategory(EngineRun& run, const std::string& type,
                                         const std::string& location) {
  if (type == kContactType) return {location};
  if (type == kCalendarType) return WithEndings(location, {kEventFile, kRecurringFile, kDataFile});
  if (type == kTodoType) return WithEndings(location, {kTaskFile, kCallFile});
  if (type == kMemoType) {
    return WithEndings(memo::Location(location).stem,
                       {memo::kSectionFile, memo::kHeaderFile, memo::kContentFile});
  }
  return {OrganiserFolder(run) + "\\CLOCKS.DAT"};
}

// Why no file can be removed from the folder that a location is in; empty if any can.
std::string WhyFolderClosed(EngineRun& run, const std::string& location) {
  const std::string above = location.substr(0, location.rfind('\\') + 1);
  const std::string folder = run.NativePathOf(above.empty() ? "." : above);
  if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return {};
  return folder + ": no file can be removed there and made anew (" +
         std::generic_category().message(errno) + "), and so all are left as they are";
}

}  // namespace

std::vector<std::string> ClosedFiles(EngineRun& run, const std::string& type,
                                     const std::string& location, FileChange change) {
  std::vector<std::string> reasons;
  for (const std::string& file : FilesOfCategory(run, type, location)) {
    const auto closed = run.WhyClosed(file);
    if (closed) reasons.push_back(closed->message);
  }
  const bool areMadeAnew = type == kCalendarType || type == kTodoType;
  if (change == FileChange::kSaved || !areMadeAnew || !reasons.empty()) return reasons;
  const std::string folder = WhyFolderClosed(run, location);
  if (!folder.empty()) reasons.push_back(folder);
  return reasons;
}

}  // namespace pw
