#include "tests/house/hex_dump.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "base/codepage.h"

namespace pw::test {
namespace {

const std::string kFence = "```";
const std::string kOpening = "```hex ";

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string BytesOf(std::istream& words) {
  std::string bytes;
  for (std::string word; words >> word;) {
    if (word[0] == 'x') return Repeated(bytes, std::stoi(word.substr(1)));
    const std::size_t star = word.find('*');
    const std::string byte(1, static_cast<char>(std::stoi(word.substr(0, star), nullptr, 16)));
    bytes += Repeated(byte, star == std::string::npos ? 1 : std::stoi(word.substr(star + 1)));
  }
  return bytes;
}

// As a comment has it, but for zeros at the end.
std::string TextOf(const std::string& bytes) {
  std::string text;
  for (const char c : CodePageToUtf8(bytes.substr(0, bytes.find('\0')))) {
    if (c == '\r') {
      text += "\\r";
    } else if (c == '\n') {
      text += "\\n";
    } else {
      text += c;
    }
  }
  return text;
}

std::string QuotedIn(const std::string& comment) {
  const std::size_t open = comment.find('"');
  if (open == std::string::npos) return "";
  return comment.substr(open + 1, comment.rfind('"') - open - 1);
}

void AppendLine(std::string& file, const std::string& line) {
  const std::size_t end = line.find(';');
  ASSERT_NE(end, std::string::npos) << "nothing is said of: " << line;
  std::istringstream words(line.substr(0, end));
  std::size_t offset = 0;
  words >> offset;
  EXPECT_EQ(offset, file.size()) << line;
  const std::string bytes = BytesOf(words);
  const std::string quoted = QuotedIn(line.substr(end));
  if (!quoted.empty()) {
    EXPECT_EQ(TextOf(bytes), quoted) << line;
  }
  file += bytes;
}

}  // namespace

std::map<std::string, std::string> DumpsOf(const std::filesystem::path& page) {
  std::map<std::string, std::string> dumps;
  std::ifstream in(page);
  EXPECT_TRUE(in) << page;
  std::string name;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(kOpening, 0) == 0) {
      name = line.substr(kOpening.size());
    } else if (line == kFence) {
      name.clear();
    } else if (!name.empty()) {
      AppendLine(dumps[name], line);
    }
  }
  return dumps;
}

}  // namespace pw::test
