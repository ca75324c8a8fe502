#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/formats/contact.h"
#include "host/import/incoming.h"
#include "host/json_fields.h"

namespace pw {

// A word that a cell may hold, and what stands for it in the record's JSON form.
struct CellWord {
  const char* word;
  JsonInput value;
};

// A row of a CSV file on its way to what it tells of a record. Letter case counts neither in
// headings nor in words. A cell that isn't one of what its column may hold is remarked.
class CsvRow {
 public:
  // Neither is owned.
  CsvRow(const Contact& row, IncomingRecord& incoming) : row(row), incoming(incoming) {}

  // Null where the file hasn't got the column.
  const std::string* Cell(const char* column) const;

  // What the row tells so far.
  JsonInput& Told() { return told; }

  // Each takes one column, if it is there, to a member.
  void Text(const char* column, const char* member);
  void Word(const char* column, const char* member, const std::vector<CellWord>& words);
  void Date(const char* column, const char* member, const char* none);

  // "15 min before", "1 day before", to a flag and a number of minutes.
  void Alarm(const char* column, const char* flag, const char* minutes);

 private:
  void Remark(const char* column, const std::string& cell, const std::string& wanted);

  const Contact& row;
  IncomingRecord& incoming;
  JsonInput told = JsonInput::object();
};

}  // namespace pw
