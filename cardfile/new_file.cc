#include "cardfile/new_file.h"

#include "cardfile/format.h"

namespace pw {

std::string NewCardFile(const std::vector<std::string>& fieldNames,
                        const std::vector<std::string>& sortKeys) {
  constexpr std::size_t kBlankCards = 1;
  const std::string names = cardfile::EncodeFieldNames(fieldNames);

  cardfile::Header header = cardfile::NewHeader();
  header.cards = kBlankCards;
  cardfile::Layout layout;
  layout.firstBody = cardfile::FirstBodyOffset(kBlankCards, names.size());

  ByteWriter out;
  cardfile::EncodeHeader(out, header);
  cardfile::EncodeNamePointer(out, {cardfile::NamesOffset(kBlankCards), 0});
  cardfile::EncodeLayout(out, layout);
  cardfile::EncodeIndexEntry(out, cardfile::IndexEntry());
  cardfile::EncodeKeyLine(out, sortKeys);
  out.U16(static_cast<std::uint16_t>(names.size()));
  out.Bytes(names);
  return out.Release();
}

}  // namespace pw
