#include "host/new_name.h"

#include <algorithm>
#include <optional>

#include "base/codepage.h"
#include "host/text_table.h"
#include "memo/format.h"

namespace pw {
namespace {

Outcome<std::string> InCodePage(std::string_view given) {
  const auto name = Utf8ToCodePage(given);
  if (!name) {
    return Failure{"'" + OneLine(given) +
                   "' has characters that the organiser lacks (it has those of code page 1252)"};
  }
  if (std::any_of(name->begin(), name->end(), [](char c) {
        return IsControl(CodePageToUnicode(static_cast<unsigned char>(c)));
      })) {
    return Failure{"'" + OneLine(given) + "' has a control character in it, such as a line break"};
  }
  return *name;
}

std::string WithoutOuterBlanks(const std::string& name) {
  const std::size_t begin = name.find_first_not_of(' ');
  if (begin == std::string::npos) return {};
  return name.substr(begin, name.find_last_not_of(' ') + 1 - begin);
}

}  // namespace

Outcome<std::string> NewFileName(std::string_view given) {
  auto name = InCodePage(given);
  if (!name) return name;
  *name = WithoutOuterBlanks(*name);
  if (name->empty() || name->find_first_of("/\\?*|:<>\"") != std::string::npos) {
    return Failure{"a name holds none of / \\ ? * | : < > \", and isn't empty"};
  }
  return name;
}

Outcome<std::string> NewSectionName(std::string_view given) {
  auto name = NewFileName(given);
  if (!name) return name;
  // A location ends its binder at the first one.
  if (name->find(';') != std::string::npos) return Failure{"a section's name holds no ;"};
  if (name->size() > memo::kLongestName) {
    return Failure{"a section's name has room for " + std::to_string(memo::kLongestName) +
                   " characters"};
  }
  return name;
}

Outcome<std::string> NewFieldName(std::string_view given) {
  if (given.empty()) return Failure{"a field needs a name"};
  return InCodePage(given);
}

}  // namespace pw
