#pragma once

#include <string>
#include <vector>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"
#include "tests/support/card_file_builder.h"

namespace pw {

// A profile written by hand, over a drive with one cardfile of three cards.
class Sample {
 public:
  Sample() {
    folder.Put("profile.toml",
               "codepage = 1252\n[drives]\nC = 'c'\n[config]\n2 = 'C:\\Data'\n5 = ''\n"
               "4000 = 'SOFTWARE\\Gullwing\\PairWise Desktop\\Version 1\\Main'\n");
    folder.Put("registry.reg",
               "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gullwing\\PairWise Desktop\\Version "
               "1\\Main]\r\n\"PRODUCT\"=dword:00000002\r\n");
    folder.Put("c/Data/Friends.WMCard", test::ThreeCards().Build());
  }

  // Runs a command over the profile.
  Finished Run(std::vector<std::string> words, const std::string& input = "",
               uid_t user = 0) const {
    words.insert(words.begin(), {"-p", Folder()});
    return RunPairwise(words, input, user);
  }
  std::string Folder() const { return folder.Path().string(); }
  std::string Cardfile() const { return Folder() + "/c/Data/Friends.WMCard"; }

  TempFolder folder;
};

}  // namespace pw
