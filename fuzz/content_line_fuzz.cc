#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "host/formats/content_line.h"
#include "host/formats/text_value.h"
#include "host/formats/vcard.h"

// Reads anything as content lines and as vCards. Lines that are read must come back the same when
// they are written and read again, and so must every text, and every contact that is written.
namespace {

using pw::ContentLine;
using pw::ContentLineReader;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::vector<ContentLine> ReadLines(std::string_view text, std::size_t& damaged) {
  std::vector<ContentLine> lines;
  ContentLineReader reader(text);
  for (auto result = reader.Next(); result != ContentLineReader::Result::kEnd;
       result = reader.Next()) {
    if (result == ContentLineReader::Result::kLine) {
      lines.push_back(reader.Line());
    } else {
      ++damaged;
    }
  }
  return lines;
}

void CheckLines(std::string_view text) {
  std::size_t damaged = 0;
  const std::vector<ContentLine> lines = ReadLines(text, damaged);
  std::string written;
  for (const ContentLine& line : lines) pw::AppendContentLine(written, line);
  damaged = 0;
  Require(ReadLines(written, damaged) == lines);
  Require(damaged == 0);
}

void CheckCards(std::string_view text) {
  const pw::VCardFile file = pw::ReadVCards(text, {"First Name", "Last Name", "Phone", "Notes"});
  std::string written;
  for (const pw::Contact& contact : file.contacts) pw::AppendVCard(written, contact, "fuzz");
  const pw::VCardFile again = pw::ReadVCards(written, {});
  Require(again.contacts == file.contacts);
  Require(again.errors.Count() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckLines(text);
  CheckCards(text);
  Require(pw::UnescapeText(pw::EscapeText(text)) == text);
  return 0;
}
