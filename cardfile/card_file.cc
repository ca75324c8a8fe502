#include "cardfile/card_file.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/text.h"
#include "cardfile/title_sort.h"
#include "platform/platform.h"
#include "platform/whole_file.h"
#include "plugin/string_table.h"

namespace cardfile = pw::cardfile;
using cardfile::kLineEnd;

namespace {

// An entry that is cut by the file's end keeps what there is of it.
cardfile::IndexEntry TakeIndexEntry(pw::ByteReader& in) {
  if (in.Remaining() >= cardfile::kIndexEntrySize) return cardfile::DecodeIndexEntry(in);
  std::string bytes(in.Take(cardfile::kIndexEntrySize));
  bytes.resize(cardfile::kIndexEntrySize);
  pw::ByteReader entry(bytes);
  return cardfile::DecodeIndexEntry(entry);
}

// A new cardfile's one card has no notes, and no more text than the line ends of its fields.
bool IsBlankCard(const cardfile::IndexEntry& entry, std::size_t namedFields) {
  return entry.notesLength == 0 && entry.textLength <= namedFields * kLineEnd.size();
}

std::int32_t PresentTime() {
  return static_cast<std::int32_t>(pw::CurrentPlatform().clock->Now());
}

std::uint16_t Low16(std::size_t value) {
  return static_cast<std::uint16_t>(value & 0xFFFF);
}

// A card's body: the text, as long as it is said to be, and behind it the notes.
struct CardBody {
  std::string_view text;
  std::string_view notes;
  std::size_t textLength;
};

CardBody BodyOf(const WMCardEntry& entry) {
  return {entry.text, entry.notes, entry.index.textLength};
}

// `count` bytes of a body from a position on, zeros where there are none.
void AppendBody(std::string& out, const CardBody& body, std::size_t position, std::size_t count) {
  const std::size_t end = out.size() + count;
  if (position < body.textLength) {
    const std::size_t fromText = std::min(count, body.textLength - position);
    const std::size_t textEnd = out.size() + fromText;
    if (position < body.text.size()) out += body.text.substr(position, fromText);
    out.resize(textEnd);
    position += fromText;
    count -= fromText;
  }
  const std::size_t inNotes = position - body.textLength;
  if (count > 0 && inNotes < body.notes.size()) out += body.notes.substr(inNotes, count);
  out.resize(end);
}

std::uint32_t IdNumber(const WMCardEntry& entry) {
  return static_cast<std::uint32_t>(entry.index.id);
}

// A card as it is saved: its index entry, and how its body's bytes are made up.
struct SavedCard {
  cardfile::IndexEntry index;
  CardBody body;
  std::string stamp;
  std::size_t textBytes = 0;  // of the body's text, before the stamp
};

SavedCard PrepareCard(const WMCardEntry& entry) {
  SavedCard saved{entry.index, BodyOf(entry), {}, 0};
  if (!entry.hasBody) {
    saved.index.textLength = 0;
    saved.index.notesLength = 0;
    return saved;
  }
  saved.stamp = cardfile::EncodeStamp(entry.timeStamp);
  saved.index.textLength = Low16(entry.index.textLength + saved.stamp.size());
  if (saved.index.textLength < saved.stamp.size()) {
    // A text too long for its 16-bit length with the stamp: the length wraps, and the bytes keep to
    // it so that the bodies behind stay where the index says.
    saved.stamp.resize(saved.index.textLength);
  }
  saved.textBytes = saved.index.textLength - saved.stamp.size();
  return saved;
}

}  // namespace

std::int32_t WMCardFile::Load(const std::string& filePath) {
  path = filePath;
  auto bytes = pw::ReadWholeFile(path, cardfile::kLargestFile, pw::OpenMode::kReadWriteExisting);
  if (!bytes) return -1;
  if (bytes->empty()) {
    header = cardfile::NewHeader();
    return 0;
  }
  image = std::move(*bytes);
  if (image.size() < cardfile::kHeaderSize) return -1;

  pw::ByteReader in(image);
  header = cardfile::DecodeHeader(in);
  namePointer = cardfile::DecodeNamePointer(in);
  layout = cardfile::DecodeLayout(in);
  if (in.Short()) {
    cards.resize(header.cards);
    ranks = pw::SlotRanks(header.cards);
    return 0;
  }
  fieldNames = cardfile::DecodeFieldNames(LoadFieldNames());
  LoadCards(in);
  const std::string_view keyLine = in.Take(cardfile::kKeyLineSize);
  if (!in.Short()) sortKeys = cardfile::DecodeKeyLine(keyLine);
  fieldNames.push_back(LoadString(strings::kContactLog).Str());
  return 0;
}

std::string WMCardFile::LoadFieldNames() const {
  pw::ByteReader in(image);
  in.Seek(namePointer.namesOffset);
  const std::uint16_t size = in.U16();
  return std::string(in.Take(size));
}

// Each index entry with its body, in one pass. A card without offset or text ends the bodies, so
// that none behind it has one.
void WMCardFile::LoadCards(pw::ByteReader& in) {
  cards.reserve(header.cards);
  ranks = pw::SlotRanks(header.cards);
  bool bodies = true;
  for (std::size_t i = 0; i < header.cards; ++i) {
    WMCardEntry& card = cards.emplace_back();
    card.index = TakeIndexEntry(in);
    blank = header.cards == 1 && IsBlankCard(card.index, fieldNames.size());
    bodies = bodies && !blank && card.index.bodyOffset != 0 && card.index.textLength != 0;
    if (bodies) LoadBody(card);
  }
}

void WMCardFile::LoadBody(WMCardEntry& entry) const {
  cardfile::IndexEntry& index = entry.index;
  pw::ByteReader in(image);
  in.Seek(index.bodyOffset);
  const std::string_view text = in.Take(index.textLength);
  entry.notes = in.Take(index.notesLength);
  entry.text = text;
  entry.hasBody = true;
  if (in.Short()) return;

  const cardfile::BodyText parts = cardfile::SplitStamp(text);
  if (parts.stamp.empty()) return;
  entry.text = parts.text;
  entry.timeStamp = pw::ParseLong(parts.stamp);
  index.textLength = static_cast<std::uint16_t>(parts.text.size());
}

void WMCardFile::DecodeCard(const WMCardEntry& entry, std::vector<std::string>& values) {
  values.resize(fieldNames.size());
  for (std::string& value : values) value.clear();
  if (entry.index.id >= nextId) {
    nextId = static_cast<std::int32_t>(static_cast<std::uint32_t>(entry.index.id) + 1);
  }
  if (!entry.hasBody || values.empty()) return;

  const std::size_t textLength = entry.index.textLength;
  scratch.clear();
  AppendBody(scratch, BodyOf(entry), 0, textLength + entry.index.notesLength);
  const std::string_view body = scratch;

  // Values before the last named one end at a line end, wherever that is: a text with too few of
  // them makes a value reach into the notes.
  std::size_t at = 0;
  const std::size_t fields = values.size();
  for (std::size_t i = 0; i + 2 < fields; ++i) {
    const std::size_t end = std::min(body.find(kLineEnd, at), body.size());
    values[i] = body.substr(at, end - at);
    at = std::min(end + kLineEnd.size(), body.size());
  }
  // The last named field ends with the text, so that it may have line breaks of its own.
  if (fields >= 2) {
    const std::size_t end = textLength >= kLineEnd.size() ? textLength - kLineEnd.size() : 0;
    if (at < end) values[fields - 2] = body.substr(at, end - at);
    at = std::min(std::max(at, end) + kLineEnd.size(), body.size());
  }
  values[fields - 1] = pw::UpToZero(body.substr(at));
}

void WMCardFile::EncodeCard(WMCardEntry& entry, std::vector<std::string>& values) {
  SetBody(entry, values);
  entry.index.title = cardfile::MakeTitle(MakeTitle(values));
  entry.timeStamp = PresentTime();
  dirty = true;
}

void WMCardFile::SetBody(WMCardEntry& entry, std::vector<std::string>& values) {
  std::size_t total = 0;
  for (const std::string& value : values) total += value.size() + kLineEnd.size();
  if (!values.empty()) total -= kLineEnd.size();
  const std::uint16_t notesLength = values.empty() ? 0 : Low16(values.back().size());
  entry.index.notesLength = notesLength;
  entry.index.textLength = Low16(total - notesLength);

  // Lengths are of the values as they came: folding makes the body shorter, and zeros fill it up.
  entry.owned = std::make_unique<char[]>(total + 1);
  std::size_t at = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i + 2 < values.size()) pw::FoldLineBreaks(values[i]);
    std::memcpy(&entry.owned[at], values[i].data(), values[i].size());
    at += values[i].size();
    if (i + 1 == values.size()) break;
    std::memcpy(&entry.owned[at], kLineEnd.data(), kLineEnd.size());
    at += kLineEnd.size();
  }
  const std::string_view body(entry.owned.get(), total);
  entry.text = body.substr(0, entry.index.textLength);
  entry.notes = body.substr(entry.text.size(), notesLength);
  entry.hasBody = true;
}

std::string WMCardFile::MakeTitle(const std::vector<std::string>& values) const {
  std::vector<std::string> parts(cardfile::kSortKeys);
  for (std::size_t i = 0; i < std::min(values.size(), fieldNames.size()); ++i) {
    for (std::size_t key = 0; key < cardfile::kSortKeys; ++key) {
      if (fieldNames[i] == sortKeys[key]) parts[key] = values[i];
    }
  }
  return pw::JoinNonEmpty(parts, ", ");
}

std::int32_t WMCardFile::AddCard(std::vector<std::string>& values) {
  if (blank) RemoveBlankCard();
  WMCardEntry entry;
  entry.index.id = nextId;
  nextId = static_cast<std::int32_t>(static_cast<std::uint32_t>(nextId) + 1);
  EncodeCard(entry, values);

  const auto slot = static_cast<std::uint32_t>(ranks.Append());
  if (idIndex) idIndex->Add(IdNumber(entry), slot);
  cards.push_back(std::move(entry));
  return 0;
}

// It is the only card, so that the slots start afresh.
void WMCardFile::RemoveBlankCard() {
  blank = false;
  cards.clear();
  ranks = pw::SlotRanks();
  idIndex.reset();
  dirty = true;
}

void WMCardFile::DeleteCard(std::uint32_t index) {
  if (index >= ranks.Count()) return;
  const auto slot = static_cast<std::uint32_t>(ranks.SlotAt(index));
  if (idIndex) idIndex->Remove(IdNumber(cards[slot]), slot);
  cards[slot] = WMCardEntry();
  ranks.Remove(index);
  dirty = true;
}

std::optional<std::uint32_t> WMCardFile::FindCard(std::int32_t id) {
  if (!idIndex) {
    idIndex.emplace();
    idIndex->Reserve(cards.size());
    for (std::size_t i = 0; i < ranks.Count(); ++i) {
      const std::size_t slot = ranks.SlotAt(i);
      idIndex->Add(IdNumber(cards[slot]), static_cast<std::uint32_t>(slot));
    }
  }
  const auto slot = idIndex->First(static_cast<std::uint32_t>(id));
  if (!slot) return std::nullopt;
  return static_cast<std::uint32_t>(ranks.RankOf(*slot));
}

std::vector<const WMCardEntry*> WMCardFile::CardsByTitle() const {
  std::vector<const WMCardEntry*> left;
  std::vector<std::string_view> titles;
  left.reserve(ranks.Count());
  titles.reserve(ranks.Count());
  for (std::size_t i = 0; i < ranks.Count(); ++i) {
    left.push_back(&cards[ranks.SlotAt(i)]);
    titles.push_back(cardfile::TitleText(left.back()->index.title));
  }
  std::vector<const WMCardEntry*> sorted;
  sorted.reserve(left.size());
  for (const std::uint32_t index : cardfile::ExchangeSortOrder(titles)) {
    sorted.push_back(left[index]);
  }
  return sorted;
}

std::optional<std::string> WMCardFile::Encode() const {
  const std::vector<const WMCardEntry*> sorted = CardsByTitle();
  std::vector<std::string> named = fieldNames;
  if (!named.empty()) named.pop_back();  // the contact log has no name in the file
  const std::string names = cardfile::EncodeFieldNames(named);

  std::vector<SavedCard> saved;
  saved.reserve(sorted.size());
  std::uint64_t offset = cardfile::FirstBodyOffset(sorted.size(), names.size());
  for (const WMCardEntry* card : sorted) {
    saved.push_back(PrepareCard(*card));
    cardfile::IndexEntry& index = saved.back().index;
    index.bodyOffset = static_cast<std::uint32_t>(offset);
    offset += static_cast<std::uint64_t>(index.textLength) + index.notesLength;
  }
  if (offset > UINT32_MAX) return std::nullopt;

  cardfile::Header newHeader = header;
  newHeader.cards = Low16(sorted.size());
  cardfile::NamePointer newPointer = namePointer;
  newPointer.namesOffset = cardfile::NamesOffset(sorted.size());
  cardfile::Layout newLayout = layout;
  newLayout.firstBody = cardfile::FirstBodyOffset(sorted.size(), names.size());
  newLayout.word69 = 0;

  pw::ByteWriter out;
  out.Reserve(static_cast<std::size_t>(offset));
  cardfile::EncodeHeader(out, newHeader);
  cardfile::EncodeNamePointer(out, newPointer);
  cardfile::EncodeLayout(out, newLayout);
  for (const SavedCard& card : saved) cardfile::EncodeIndexEntry(out, card.index);
  cardfile::EncodeKeyLine(
      out, pw::JoinNonEmpty({sortKeys.begin(), sortKeys.end()}, cardfile::kKeySeparator));
  out.U16(Low16(names.size()));
  out.Bytes(names);

  std::string bytes = out.Release();
  for (const SavedCard& card : saved) {
    AppendBody(bytes, card.body, 0, card.textBytes);
    bytes += card.stamp;
    AppendBody(bytes, card.body, card.textBytes, card.index.notesLength);
  }
  return bytes;
}

void WMCardFile::Save() const {
  std::optional<std::string> bytes;
  try {
    bytes = Encode();
  } catch (const std::bad_alloc&) {
    // A damaged index may claim far more than the file ever held.
    return;
  }
  if (!bytes) return;
  const auto file = pw::CurrentPlatform().files->Open(path, pw::OpenMode::kReadWriteExisting,
                                                      pw::Sharing::kReadWrite);
  if (file == nullptr || !file->Truncate()) return;
  file->Write(*bytes);
}
