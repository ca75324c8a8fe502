#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "memo/format.h"
#include "platform/files.h"

namespace pw {

// A memo binder as its three files have it.
struct BinderFiles {
  std::vector<memo::Section> sections;
  std::vector<memo::NoteHeader> headers;
  std::string contents;
};

// The binder of a memo category's location, "stem;section"; empty where it can't be read.
BinderFiles ReadBinderFiles(Files& files, std::string_view location);

// The bodies of a section's notes by their ids, as rich text. They point into the contents.
std::unordered_map<std::int32_t, std::string_view> RichBodies(const BinderFiles& binder,
                                                              std::string_view section);

// The three parts of a location's files: what stands before the first ";" is the stem.
std::string_view BinderStem(std::string_view location);
std::string_view BinderSection(std::string_view location);

}  // namespace pw
