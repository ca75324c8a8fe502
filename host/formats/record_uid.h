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

// The record's id in a UID of ours; empty for a foreign one.
std::string IdOfRecordUid(std::string_view uid);

}  // namespace pw
