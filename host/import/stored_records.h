#pragma once

#include <array>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/source.h"
#include "host/import/incoming.h"

namespace pw {

// The records that a category holds before an import changes any of them, and which of them each
// incoming record is meant for.
class StoredRecords {
 public:
  // Walks over all of them, as ids of new cards go on from the highest one that was read. The
  // identity is the one that the category's records have in their UIDs.
  StoredRecords(PWSource& source, std::string fileIdentity);

  // The same for the clocks, which are looked up by their places too.
  static StoredRecords OfClocks(PWSource& source);

  enum class Match { kNone, kStored, kRefused };
  struct Found {
    Match match = Match::kNone;
    std::string text;  // of kStored the id; of kRefused why, for a person
  };

  // A stored record is found once at most.
  Found Find(const IncomingRecord& incoming);

  // That a record has this id now. Where ids are made of the records' texts it may be another
  // one's, too.
  void GiveOut(const std::string& id) { givenOut.insert(id); }

 private:
  Found FindClock(const IncomingRecord& incoming) const;
  Found Take(const std::string& id);

  using Place = std::array<std::string, 3>;  // city, state and country, of the code page

  std::string fileIdentity;
  bool areClocks = false;
  std::vector<Place> places;                  // of the clocks, by their ids
  std::unordered_map<std::string, bool> ids;  // whether it was found already
  std::unordered_set<std::string> givenOut;
};

}  // namespace pw
