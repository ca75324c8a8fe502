#include "host/commands/confirmation.h"

#include <ostream>

#include "base/text.h"

namespace pw {

std::optional<int> NotConfirmed(const Console& console, const std::string& question, bool agreed) {
  if (agreed) return std::nullopt;
  if (!console.isAsking) {
    return console.FailUsage(question + " Nobody is there to be asked; --yes says so beforehand");
  }
  const std::string answer = console.Ask(question + " (yes or no) ").value_or("");
  if (EqualIgnoringCase(answer, "y") || EqualIgnoringCase(answer, "yes")) return std::nullopt;
  console.messages << "nothing was done\n";
  return kExitFailed;
}

}  // namespace pw
