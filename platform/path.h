#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What an organiser's path says, before any file system is asked. Both implementations of `Files`
// read paths with these.
namespace pw {

// A path in its parts. Backslash and slash both separate, "." and empty parts are dropped, and ".."
// takes away the part before it, where there is one: no path leads above where it starts.
struct PathParts {
  // Where the path starts: a drive such as "C:" (as it was written; "C:x" is the same as "C:\x"),
  // "\" for a separator without a drive, or nothing for the current folder.
  std::string root;
  std::vector<std::string> names;
  bool endsInSeparator = false;  // such a path can only name a folder
};

// Nothing if the path is empty, holds a zero byte, or starts with two separators (a network's
// share): such a path names no file.
std::optional<PathParts> SplitPath(std::string_view path);

// The path with one backslash between its names, and none behind the last; as it is if it names no
// file.
std::string PlainPath(std::string_view path);

// A search pattern's folder, fit to be split, and the pattern for the names in it, which is empty
// if the text ends in a separator.
struct PatternParts {
  std::string folder;
  std::string names;
};
PatternParts SplitPattern(std::string_view pattern);

}  // namespace pw
