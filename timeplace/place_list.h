#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// All locations that events were ever given: the organiser offers them for new ones. They stand in
// the order of their texts, letter case ignored, each once; a damaged file may say otherwise.
class WMPlaceList {
 public:
  // Reads the file in the organiser's data folder, in place of what was here. A file that can't be
  // opened, or with another magic, is replaced by one without entries. A count above what is there
  // gives what is there. False if no folder is known, or the replacement can't be written: the list
  // is empty then.
  bool Load();

  // Rewrites the file that `Load` read. False if there is none, or it could not be written.
  bool Save() const;

  // Puts a text in its place unless it is there, letter case ignored. It is cut to the 63
  // characters that the file has room for first, so that a longer one isn't added again each time.
  void Add(std::string_view text);

 private:
  struct Position {
    std::size_t index;
    bool taken;  // by an equal text
  };
  Position Locate(const std::string& text) const;
  bool ReadFile();

  std::string path;  // empty until a folder is known
  std::vector<std::string> places;
  bool inOrder = true;
};
