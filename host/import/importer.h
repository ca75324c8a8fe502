#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "host/console.h"
#include "host/drive_records.h"
#include "host/import/incoming.h"
#include "host/record_reader.h"

namespace pw {

// Brings records into the categories of one type, and tells of each that was refused, changed or
// cut on the way.
class Importer {
 public:
  struct Counts {
    std::size_t added = 0;
    std::size_t updated = 0;
    std::size_t refused = 0;
    std::size_t changed = 0;  // of those that came in
  };

  // None is owned. With `update` a record takes the place of the one with its id.
  Importer(EngineRun& run, const Console& console, std::string type, bool update);

  // Into one category. A failure says why nothing was written: its files are damaged, so that a
  // save would lose what can't be read, or can't be opened.
  Outcome<Done> Into(const PWSourceCategory& category, std::vector<IncomingRecord>& records);

  const Counts& Result() const { return counts; }

 private:
  // A record that came in, as it was given, before the module put right what it can't keep; and the
  // id that it has now.
  struct Arrived {
    const IncomingRecord* incoming = nullptr;
    PWRecord given;
    std::string id;
  };

  void Bring(PWSource& source, IncomingRecord& incoming);
  bool Store(PWSource& source, IncomingRecord& incoming);
  void Compare(const PWSourceCategory& category);
  void CompareOne(PWSource& source, const Arrived& arrived);
  void Tell(const IncomingRecord& incoming, const std::string& what);
  void TellLog(const IncomingRecord& incoming);
  void ShowProgress(std::size_t done, std::size_t all) const;

  EngineRun& run;
  const Console& console;
  std::string type;
  bool update;
  const RecordForm& form;
  std::vector<Arrived> arrived;
  Counts counts;
};

}  // namespace pw
