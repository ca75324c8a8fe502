#include "host/formats/csv.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/codepage.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kIdHeading = "id";
constexpr std::string_view kStampHeading = "changed";
constexpr std::size_t kMostHeaderBytes = 4096;

void AppendCell(std::string& out, std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

// The columns behind the contacts' own two.
class Columns {
 public:
  explicit Columns(const std::vector<Contact>& contacts) {
    for (const Contact& contact : contacts) {
      ForEachField(contact, [&](const Key& key, const std::string&) {
        if (columns.emplace(key, keys.size()).second) keys.push_back(key);
      });
    }
  }

  // Different from each other and from the two of the contact, letter case counting as little as
  // it does for who reads them.
  std::vector<std::string> Headings() const {
    std::vector<std::string> headings;
    std::unordered_set<std::string> used = {std::string(kIdHeading), std::string(kStampHeading)};
    std::unordered_map<std::string, std::size_t> nextNumber;
    for (const auto& [name, occurrence] : keys) {
      std::string heading(name);
      std::size_t& number = nextNumber.try_emplace(AsciiLower(name), 2).first->second;
      while (!used.insert(AsciiLower(heading)).second) {
        heading = std::string(name) + " (" + std::to_string(number++) + ')';
      }
      headings.push_back(std::move(heading));
    }
    return headings;
  }

  // The contact's values, one for each column.
  std::vector<std::string_view> Row(const Contact& contact) const {
    std::vector<std::string_view> row(keys.size());
    ForEachField(contact, [&](const Key& key, const std::string& value) {
      row[columns.find(key)->second] = value;
    });
    return row;
  }

 private:
  // A name, and how many fields of the same contact have it before.
  using Key = std::pair<std::string_view, std::size_t>;

  template <class Visit>
  static void ForEachField(const Contact& contact, Visit visit) {
    std::unordered_map<std::string_view, std::size_t> seen;
    for (const auto& [name, value] : contact.fields) visit(Key(name, seen[name]++), value);
  }

  std::vector<Key> keys;
  std::map<Key, std::size_t> columns;
};

// Takes a text apart row by row.
class RowReader {
 public:
  explicit RowReader(std::string_view text) : rest(text) {
    if (rest.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
      rest.remove_prefix(kByteOrderMark.size());
    }
  }

  // The next row that isn't empty. False at the end.
  bool Next() {
    while (TakeLineBreak()) {
    }
    if (rest.empty()) return false;
    cells.clear();
    problem = {};
    line = nextLine;
    do {
      TakeCell();
    } while (problem.empty() && Take(","));
    if (problem.empty() && !rest.empty() && !TakeLineBreak()) {
      problem = "text behind a quoted cell";
    }
    if (!problem.empty()) SkipLine();
    for (std::string& cell : cells) cell = AsUtf8(std::move(cell));
    return true;
  }

  // Where the row begins, from 1.
  std::size_t Line() const { return line; }

  // What is wrong with the row; empty if nothing is.
  std::string_view Problem() const { return problem; }
  std::vector<std::string>& Cells() { return cells; }

 private:
  void TakeCell() {
    cells.emplace_back();
    if (Take("\"")) return TakeQuoted();
    std::size_t length = std::min(rest.find_first_of(",\"\n"), rest.size());
    if (length < rest.size() && rest[length] == '"') problem = "a quote inside a cell";
    if (length != 0 && length < rest.size() && rest[length] == '\n' && rest[length - 1] == '\r') {
      --length;
    }
    cells.back() = rest.substr(0, length);
    rest.remove_prefix(length);
  }

  void TakeQuoted() {
    std::string& cell = cells.back();
    for (;;) {
      const std::size_t end = rest.find('"');
      if (end == std::string_view::npos) {
        problem = "a quoted cell that doesn't end";
        return;
      }
      const std::string_view piece = rest.substr(0, end);
      nextLine += static_cast<std::size_t>(std::count(piece.begin(), piece.end(), '\n'));
      cell += piece;
      rest.remove_prefix(end + 1);
      if (!Take("\"")) return;
      cell += '"';
    }
  }

  bool Take(std::string_view token) {
    if (rest.substr(0, token.size()) != token) return false;
    rest.remove_prefix(token.size());
    return true;
  }

  bool TakeLineBreak() {
    if (!Take("\r\n") && !Take("\n")) return false;
    ++nextLine;
    return true;
  }

  void SkipLine() {
    rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
    TakeLineBreak();
  }

  std::string_view rest;
  std::size_t nextLine = 1;
  std::size_t line = 0;
  std::string_view problem;
  std::vector<std::string> cells;
};

// What each column of a file means.
struct Header {
  std::vector<std::string> names;
  std::optional<std::size_t> id;
  std::optional<std::size_t> stamp;
};

// What is wrong with the headings; empty if nothing is.
std::string TakeHeader(const std::vector<std::string>& cells, Header& header) {
  std::size_t bytes = 0;
  std::unordered_set<std::string> seen;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    bytes += cells[i].size() + 1;
    if (bytes > kMostHeaderBytes) return "headings longer than a cardfile's names can be";
    if (cells[i].empty()) return "a column without a heading";
    if (!seen.insert(cells[i]).second) return "the heading \"" + cells[i] + "\" twice";
    if (!header.id && EqualIgnoringCase(cells[i], kIdHeading)) {
      header.id = i;
    } else if (!header.stamp && EqualIgnoringCase(cells[i], kStampHeading)) {
      header.stamp = i;
    }
  }
  header.names = cells;
  return {};
}

Contact MakeContact(const Header& header, std::vector<std::string>& cells) {
  Contact contact;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i == header.id) {
      contact.id = std::move(cells[i]);
    } else if (i == header.stamp) {
      contact.stamp = std::move(cells[i]);
    } else {
      contact.fields.emplace_back(header.names[i], std::move(cells[i]));
    }
  }
  return contact;
}

}  // namespace

std::string WriteCsv(const std::vector<Contact>& contacts) {
  const Columns columns(contacts);
  std::string out(kIdHeading);
  out += ',';
  out += kStampHeading;
  for (const std::string& heading : columns.Headings()) {
    out += ',';
    AppendCell(out, heading);
  }
  out += "\r\n";
  for (const Contact& contact : contacts) {
    AppendCell(out, contact.id);
    out += ',';
    AppendCell(out, contact.stamp);
    for (const std::string_view value : columns.Row(contact)) {
      out += ',';
      AppendCell(out, value);
    }
    out += "\r\n";
  }
  return out;
}

CsvFile ReadCsv(std::string_view text, std::size_t most) {
  CsvFile file;
  RowReader rows(text);
  if (!rows.Next()) return file;
  Header header;
  const std::string problem =
      rows.Problem().empty() ? TakeHeader(rows.Cells(), header) : std::string(rows.Problem());
  if (!problem.empty()) {
    file.errors.Add(rows.Line(), problem);
    return file;
  }
  for (std::size_t i = 0; i < header.names.size(); ++i) {
    if (i != header.id && i != header.stamp) file.names.push_back(header.names[i]);
  }
  while (rows.Next()) {
    std::vector<std::string>& cells = rows.Cells();
    if (!rows.Problem().empty()) {
      file.errors.Add(rows.Line(), rows.Problem());
    } else if (cells.size() != header.names.size()) {
      file.errors.Add(rows.Line(), std::to_string(cells.size()) + " cells below " +
                                       std::to_string(header.names.size()) + " headings");
    } else if (file.contacts.size() == most) {
      file.errors.Add(rows.Line(), kTooManyContacts);
    } else {
      file.contacts.push_back(MakeContact(header, cells));
    }
  }
  return file;
}

}  // namespace pw
