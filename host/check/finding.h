#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What a look into a file of the organiser's says of it.
namespace pw {

struct Finding {
  std::optional<std::uint64_t> offset;  // in the file, where it is about one place
  std::string text;                     // what stands there or was expected, for a person
  std::size_t lost = 0;                 // records that the next save would drop or empty
  bool isNote = false;                  // a save leaves it as it is, and loses nothing by it
};

struct FileCheck {
  std::string holds;        // "cardfile: 40 cards of 15 fields"
  std::size_t records = 0;  // that can be read
  std::vector<Finding> findings;

  void Add(std::optional<std::uint64_t> offset, std::string text, std::size_t lost = 0) {
    findings.push_back({offset, std::move(text), lost, false});
  }
  void AddNote(std::optional<std::uint64_t> offset, std::string text) {
    findings.push_back({offset, std::move(text), 0, true});
  }
};

// A line for all findings but notes: "at 73 the file ends before its cards, and 2 findings more;
// see `pairwise check`". Empty where there are none.
std::string FindingsInOneLine(const FileCheck& check);

}  // namespace pw
