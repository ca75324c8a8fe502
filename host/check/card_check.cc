#include "host/check/card_check.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/codepage.h"
#include "base/cursor.h"
#include "base/text.h"
#include "cardfile/format.h"
#include "host/counted.h"

namespace pw {
namespace {

constexpr std::string_view kMagic = "WMW300";

std::string NameOf(const cardfile::IndexEntry& entry, std::size_t card) {
  return "card " + std::to_string(card + 1) + " \"" +
         CodePageToUtf8(cardfile::TitleText(entry.title)) + "\"";
}

class CardfileCheck {
 public:
  explicit CardfileCheck(std::string_view bytes) : bytes(bytes), in(bytes) {}

  FileCheck Run() {
    check.holds = "cardfile without a card";
    if (bytes.empty()) return check;
    const cardfile::Header header = cardfile::DecodeHeader(in);
    if (in.Short()) {
      check.Add(bytes.size(), "a header of 60 bytes was expected; the file can't be opened");
      return check;
    }
    if (UpToZero(header.magic) != kMagic) check.Add(0, "\"WMW300\" was expected here");
    const std::size_t namesOffset = cardfile::DecodeNamePointer(in).namesOffset;
    cardfile::DecodeLayout(in);
    if (in.Short()) {
      check.Add(bytes.size(), "the file ends before its cards", header.cards);
      return check;
    }
    CheckFields(namesOffset);
    CheckCards(header.cards);
    return check;
  }

 private:
  void CheckFields(std::size_t offset) {
    ByteReader names(bytes);
    names.Seek(offset);
    const std::uint16_t size = names.U16();
    const std::string_view block = names.Take(size);
    if (names.Short()) {
      check.Add(offset,
                "the names of the fields were expected here, " + std::to_string(size) + " bytes");
    }
    fields = cardfile::DecodeFieldNames(block).size();
  }

  void CheckCards(std::size_t cards) {
    std::size_t listed = 0;
    for (; listed < cards && in.Remaining() >= cardfile::kIndexEntrySize; ++listed) {
      const std::size_t at = in.Position();
      const cardfile::IndexEntry entry = cardfile::DecodeIndexEntry(in);
      const bool isBlank = cards == 1 && entry.notesLength == 0 &&
                           entry.textLength <= fields * cardfile::kLineEnd.size();
      if (isBlank) return;
      CheckCard(at, entry, listed, cards);
    }
    check.records = listed;
    check.holds = "cardfile: " + Counted(listed, "card", "cards") + " of " +
                  Counted(fields + 1, "field", "fields");
    if (listed < cards) {
      check.Add(bytes.size(), Counted(cards, "card", "cards") + " were expected", cards - listed);
    }
  }

  void CheckCard(std::size_t at, const cardfile::IndexEntry& entry, std::size_t card,
                 std::size_t cards) {
    if (!areBodiesRead) return;
    if (entry.bodyOffset == 0 || entry.textLength == 0) {
      areBodiesRead = false;
      check.Add(at, NameOf(entry, card) + " has no text, which keeps that of all behind it unread",
                cards - card);
      return;
    }
    const std::size_t length = std::size_t{entry.textLength} + entry.notesLength;
    if (entry.bodyOffset <= bytes.size() && length <= bytes.size() - entry.bodyOffset) return;
    check.Add(entry.bodyOffset,
              std::to_string(length) + " bytes of " + NameOf(entry, card) +
                  " were expected here; the file has " + std::to_string(bytes.size()) + " in all",
              1);
  }

  std::string_view bytes;
  ByteReader in;
  std::size_t fields = 0;
  bool areBodiesRead = true;
  FileCheck check;
};

}  // namespace

FileCheck CheckCardfile(std::string_view bytes) {
  return CardfileCheck(bytes).Run();
}

}  // namespace pw
