#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/id_index.h"
#include "base/slot_ranks.h"
#include "cardfile/format.h"
#include "framework/object.h"

// One card in memory. Its body is the text, `index.textLength` bytes without the time stamp, and
// behind it the notes, `index.notesLength` bytes; where a view is shorter than its length, zeros
// are meant.
struct WMCardEntry {
  pw::cardfile::IndexEntry index;
  std::string_view text;          // into the loaded file, or into `owned`
  std::string_view notes;         // the same
  std::unique_ptr<char[]> owned;  // the body of a card that was encoded here
  bool hasBody = false;           // a card without a body reads as empty and is saved without one
  std::int32_t timeStamp = 0;     // of the last change, in seconds since 1970 UTC
};

// A cardfile, wholly in memory between `Load` and `Save`. All texts are of the organiser's code
// page. A card is known by its index, from 0, which counts the cards that are left.
class WMCardFile : public PWObject {
 public:
  WMCardFile() = default;
  WMCardFile(const WMCardFile&) = delete;
  WMCardFile& operator=(const WMCardFile&) = delete;

  // Reads the whole file, once for each object. 0, or -1 for a file that can't be opened for
  // reading and writing, is larger than its 32-bit offsets reach, or whose header can't be read. A
  // file that ends early, or whose parts aren't where it says, gives what there is of it, with
  // result 0.
  std::int32_t Load(const std::string& path);

  // Rewrites the file that was loaded, the cards in the order of their titles. Says nothing of a
  // failure: a file that can't be opened stays as it is, and so does one whose new content would
  // exceed what its 32-bit offsets or the memory can hold.
  void Save() const;

  // The field names, "Contact Log" last. None at all for a file without a field-name block.
  void GetFieldNames(std::vector<std::string>& names) const { names = fieldNames; }

  // Splits a card into its values, one for each field, "" where it has none. Card ids are learned
  // here: a card that was never decoded doesn't keep its id from being given again.
  void DecodeCard(const WMCardEntry& entry, std::vector<std::string>& values);

  // Replaces a card's body, title and time stamp. Line breaks in values before the last named field
  // become blanks, in `values` too. The lengths are those of the values as given and are cut to 16
  // bits, as the organiser does it: a folded value leaves a zero at the body's end for each line
  // break.
  void EncodeCard(WMCardEntry& entry, std::vector<std::string>& values);

  // Adds a card at the end, with the next id; the blank card of a new file goes. Always 0.
  std::int32_t AddCard(std::vector<std::string>& values);

  // An index outside the cards changes nothing.
  void DeleteCard(std::uint32_t index);

  // The blank card of a new file counts as one.
  std::uint32_t CardCount() const { return static_cast<std::uint32_t>(ranks.Count()); }
  WMCardEntry& Card(std::uint32_t index) { return cards[ranks.SlotAt(index)]; }

  // Index of the first card of that id.
  std::optional<std::uint32_t> FindCard(std::int32_t id);

  bool IsDirty() const { return dirty; }

  // Whether all that the file holds is the blank card.
  bool IsBlank() const { return blank; }

 private:
  void LoadCards(pw::ByteReader& in);
  void LoadBody(WMCardEntry& entry) const;
  std::string LoadFieldNames() const;
  void RemoveBlankCard();
  void SetBody(WMCardEntry& entry, std::vector<std::string>& values);
  std::string MakeTitle(const std::vector<std::string>& values) const;
  std::vector<const WMCardEntry*> CardsByTitle() const;
  std::optional<std::string> Encode() const;

  std::string path;
  std::string image;  // the file as loaded, which the cards' views point into
  pw::cardfile::Header header;
  pw::cardfile::NamePointer namePointer;
  pw::cardfile::Layout layout;
  std::array<std::string, pw::cardfile::kSortKeys> sortKeys;
  std::vector<std::string> fieldNames;
  std::vector<WMCardEntry> cards;  // by slot; a deleted card's slot stays
  pw::SlotRanks ranks;
  std::optional<pw::IdIndex> idIndex;  // built on first need
  std::int32_t nextId = 1;
  bool dirty = false;
  bool blank = false;
  std::string scratch;  // the body of the card being decoded
};
