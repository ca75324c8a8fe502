#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace pw::test {

// The files that a page of docs/formats/ shows, by their names: what stands between "```hex NAME"
// and "```". A failure of the test for each line that isn't where it says, or whose text in quotes
// isn't what its bytes say.
//
//   line  := offset (byte | byte "*" times)* ("x" times)? ";" comment
std::map<std::string, std::string> DumpsOf(const std::filesystem::path& page);

}  // namespace pw::test
