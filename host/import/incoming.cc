#include "host/import/incoming.h"

#include <algorithm>

#include "base/codepage.h"

namespace pw {

std::string Incorporated(const std::string& utf8, const char* name, IncomingRecord& record) {
  if (!Utf8ToCodePage(utf8)) {
    record.remarks.push_back(std::string(name) +
                             " has characters that the organiser lacks, now \"?\"");
  }
  std::string text = Utf8ToCodePageLossy(utf8);
  std::replace(text.begin(), text.end(), '\0', ' ');
  return text;
}

}  // namespace pw
