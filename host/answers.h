#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/outcome.h"

namespace pw {

// The module's dialogs that a person can answer beforehand.
inline constexpr std::int32_t kSynchronizeDialog = 128;
inline constexpr std::int32_t kFolderDialog = 129;
inline constexpr std::int32_t kSetupDialog = 131;

// What one control of a dialog is to hold. A button that chooses a folder is pressed, and the text
// is the folder.
struct Answer {
  std::int32_t dialog;
  std::int32_t control;
  std::string text;   // in the organiser's code page; unused for a choice
  std::string where;  // "FILE:LINE", for the person
};

// Answers to the module's dialogs, from a file.
struct Answers {
  std::vector<Answer> given;  // in the order in which they are to be worked
  bool isSure = false;        // questions by Yes or No are answered by Yes
};

// Reads the answers to these dialogs. What the file says beyond them is a failure.
Outcome<Answers> ReadAnswers(const std::filesystem::path& file,
                             const std::vector<std::int32_t>& dialogs);

// The same from the file's text.
Outcome<Answers> ParseAnswers(std::string_view text, const std::filesystem::path& file,
                              const std::vector<std::int32_t>& dialogs);

}  // namespace pw
