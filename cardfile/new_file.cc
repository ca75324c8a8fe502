#include "cardfile/new_file.h"

#include "base/text.h"
#include "cardfile/format.h"

namespace pw {

std::string NewCardFile(const std::vector<std::string>& fieldNames,
                        const std::vector<std::string>& sortKeys) {
  return NewCardFileOfBlock(cardfile::EncodeFieldNames(fieldNames), sortKeys);
}

std::string NewCardFileOfBlock(std::string_view fieldBlock,
                               const std::vector<std::string>& sortKeys) {
  constexpr std::size_t kBlankCards = 1;

  cardfile::Header header = cardfile::NewHeader();
  header.cards = kBlankCards;
  cardfile::Layout layout;
  layout.firstBody = cardfile::FirstBodyOffset(kBlankCards, fieldBlock.size());

  ByteWriter out;
  cardfile::EncodeHeader(out, header);
  cardfile::EncodeNamePointer(out, {cardfile::NamesOffset(kBlankCards), 0});
  cardfile::EncodeLayout(out, layout);
  cardfile::EncodeIndexEntry(out, cardfile::IndexEntry());
  // Unlike a save, which leaves empty names out, with the separators around those.
  cardfile::EncodeKeyLine(out, Join(sortKeys, cardfile::kKeySeparator));
  out.U16(static_cast<std::uint16_t>(fieldBlock.size()));
  out.Bytes(fieldBlock);
  return out.Release();
}

}  // namespace pw
