#include "host/new_name.h"

#include <algorithm>
#include <cstddef>

#include "base/codepage.h"
#include "cardfile/format.h"
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

Outcome<std::vector<std::string>> NewFieldNames(const std::vector<std::string>& given) {
  std::vector<std::string> names;
  for (const std::string& each : given) {
    if (each.empty()) return Failure{"a field needs a name"};
    const auto name = InCodePage(each);
    if (!name) return name.Why();
    names.push_back(*name);
  }
  if (auto failure = WhyNoRoomFor(names)) return *failure;
  return names;
}

std::optional<Failure> WhyNoRoomFor(const std::vector<std::string>& fields) {
  std::size_t size = 0;
  for (const std::string& name : fields) {
    if (name.size() > cardfile::kLongestFieldName) {
      return Failure{"the name of a field has room for 1,023 characters, and one has " +
                     std::to_string(name.size())};
    }
    size += name.size() + cardfile::kLineEnd.size();
  }
  if (size <= cardfile::kMostNameBytes) return std::nullopt;
  return Failure{
      "the names of all fields have room for 4,096 bytes, two for the end of each, and " +
      std::to_string(size) + " are needed"};
}

}  // namespace pw
