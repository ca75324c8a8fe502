#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The lines that vCard and iCalendar files are made of:
//
//   line      := [group "."] name (";" parameter)* ":" value
//   parameter := name ["=" text ("," text)*]
//
// A long line is folded: cut by a line break and one blank or tab, which reading takes out again.
// Group and names are words of letters, digits, "-" and "_"; they keep their letter case, which
// means nothing. Any bytes but a line feed pass through unharmed.
namespace pw {

struct ContentParameter {
  std::string name;
  std::vector<std::string>
      values;  // unquoted and unescaped; none in a bare word, as in "TEL;HOME:"

  friend bool operator==(const ContentParameter&, const ContentParameter&) = default;
};

struct ContentLine {
  std::string group;  // mostly empty
  std::string name;
  std::vector<ContentParameter> parameters;
  std::string value;  // as in the file; text_value.h takes its escapes apart

  // The first parameter of that name, letter case ignored, or null.
  const ContentParameter* Find(std::string_view parameter) const;

  friend bool operator==(const ContentLine&, const ContentLine&) = default;
};

// Appends the line, folded at 75 bytes without cutting a UTF-8 character, with CR LF at each end. A
// parameter's value is quoted where it must be. A line feed in the value, which no line can hold,
// is written as the escape "\n".
void AppendContentLine(std::string& out, const ContentLine& line);

// Older files break a value in quoted-printable behind a "=", and go on without a blank.
enum class SoftBreaks { kNone, kQuotedPrintable };

// Reads a file line by line. Takes CR LF and LF, skips a byte order mark and empty lines, and goes
// on behind a damaged line. Time and memory grow with the text alone. The text must outlive the
// reader.
class ContentLineReader {
 public:
  explicit ContentLineReader(std::string_view text, SoftBreaks softBreaks = SoftBreaks::kNone);

  enum class Result { kLine, kDamaged, kEnd };
  Result Next();

  // Behind `kLine`: the line.
  const ContentLine& Line() const { return line; }

  // Behind `kDamaged`: what is wrong with it, in a few words.
  std::string_view Problem() const { return problem; }

  // Behind both: where in the file it begins, from 1. At the end: the number of lines.
  std::size_t Number() const { return number; }

 private:
  std::string_view TakePhysicalLine();
  void Unfold();

  std::string_view rest;
  SoftBreaks softBreaks;
  std::size_t taken = 0;  // physical lines
  std::size_t number = 0;
  std::string unfolded;
  ContentLine line;
  std::string_view problem;
};

}  // namespace pw
