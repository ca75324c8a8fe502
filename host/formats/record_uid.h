#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pw {

// The UID of a record on its way out: the same at each export, and another one for each file. The
// identity names the file that the record is in. Ids may repeat within a file: the second record of
// an id has the occurrence 2.
std::string MakeRecordUid(std::string_view fileIdentity, std::string_view id,
                          std::size_t occurrence = 1);

// The id of a record, with what else a UID says of it.
struct RecordId {
  std::string text;            // in UTF-8; empty where there is none
  std::string file;            // stands for the file that the record was in; empty if untold
  std::size_t occurrence = 1;  // among the records of that id in the file, from 1

  // Whether the record may be of the file of that identity.
  bool IsOf(std::string_view fileIdentity) const;
};

// What is in a UID of ours; empty for a foreign one.
RecordId IdOfRecordUid(std::string_view uid);

}  // namespace pw
