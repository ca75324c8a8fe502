#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/console.h"
#include "host/drive_records.h"
#include "host/import/incoming.h"
#include "host/import/stored_records.h"
#include "host/record_reader.h"

namespace pw {

// Brings records into the categories of one type, and tells of each that was refused, changed or
// cut on the way, or isn't there after the save.
class Importer {
 public:
  struct Counts {
    std::size_t added = 0;
    std::size_t updated = 0;
    std::size_t refused = 0;
    std::size_t changed = 0;  // of those that came in
    std::size_t missing = 0;  // of those that came in: not in the file after the save
  };

  // None is owned. With `update` a record changes the one with its id that was there before, which
  // keeps what the file doesn't name.
  Importer(EngineRun& run, const Console& console, std::string type, bool update);

  // Into one category. A failure says why nothing was written, as its files are damaged, so that a
  // save would lose what can't be read, or can't be opened; or why it can't be told what was.
  Outcome<Done> Into(const PWSourceCategory& category, std::vector<IncomingRecord>& records);

  const Counts& Result() const { return counts; }

 private:
  // A record that came in, as it was given, before the module put right what it can't keep; and the
  // id that it has now.
  struct Arrived {
    const IncomingRecord* incoming = nullptr;
    PWRecord given;
    std::string id;
    bool isUpdate = false;
  };

  void Bring(PWSource& source, StoredRecords& stored, IncomingRecord& incoming);

  // Each gives why it is refused, or nothing.
  std::string Add(PWSource& source, IncomingRecord& incoming);
  std::string Update(PWSource& source, const std::string& id, IncomingRecord& incoming);
  std::string Replace(PWSource& source, PWRecord& record, PWRecord& before);

  Outcome<Done> Compare(const PWSourceCategory& category, std::uint32_t expected);
  void CompareOne(PWSource& source, const Arrived& each, bool areAllThere);
  void Tell(const IncomingRecord& incoming, const std::string& what);
  void TellLog(const IncomingRecord& incoming);
  void ShowProgress(std::size_t done, std::size_t all) const;

  EngineRun& run;
  const Console& console;
  std::string type;
  bool update;
  const RecordForm& form;
  std::vector<std::string> fieldNames;  // of a cardfile
  PWRecord given;                       // the record at hand, as it went to the source
  std::vector<Arrived> arrived;
  Counts counts;
};

}  // namespace pw
