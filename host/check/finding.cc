#include "host/check/finding.h"

#include <algorithm>

#include "host/counted.h"

namespace pw {

std::string FindingsInOneLine(const FileCheck& check) {
  const auto counts = [](const Finding& finding) { return !finding.isNote; };
  const auto first = std::find_if(check.findings.begin(), check.findings.end(), counts);
  if (first == check.findings.end()) return {};
  std::string text;
  if (first->offset) text += "at " + std::to_string(*first->offset) + " ";
  text += first->text;
  const auto more = std::count_if(first + 1, check.findings.end(), counts);
  if (more > 0) {
    text += ", and " + Counted(static_cast<std::size_t>(more), "finding", "findings") +
            " more; see `pairwise check`";
  }
  return text;
}

}  // namespace pw
