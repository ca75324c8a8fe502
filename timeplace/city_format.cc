#include "timeplace/city_format.h"

#include <algorithm>

#include "base/text.h"

namespace {

template <std::size_t kSize>
void SetText(std::array<char, kSize>& field, std::string_view text) {
  text = pw::UpToZero(text).substr(0, kSize - 1);
  field.fill('\0');
  std::copy(text.begin(), text.end(), field.begin());
}

}  // namespace

std::string_view WMCityRecord::Name() const {
  return pw::UpToZero({name.data(), name.size()});
}

std::string_view WMCityRecord::Country() const {
  return pw::UpToZero({country.data(), country.size()});
}

void WMCityRecord::SetName(std::string_view text) {
  SetText(name, text);
}

void WMCityRecord::SetCountry(std::string_view text) {
  SetText(country, text);
}

namespace pw::city {
namespace {

constexpr std::size_t kMostNodes = 0xFFFF;

std::int8_t TakeSigned8(ByteReader& in) {
  return static_cast<std::int8_t>(in.U8());
}

void PutSigned8(ByteWriter& out, std::int8_t value) {
  out.U8(static_cast<std::uint8_t>(value));
}

WMDaylightChange DecodeChange(ByteReader& in) {
  WMDaylightChange change;
  change.pm = TakeSigned8(in);
  change.hour = TakeSigned8(in);
  change.week = TakeSigned8(in);
  change.weekday = TakeSigned8(in);
  change.month = TakeSigned8(in);
  return change;
}

void EncodeChange(ByteWriter& out, const WMDaylightChange& change) {
  PutSigned8(out, change.pm);
  PutSigned8(out, change.hour);
  PutSigned8(out, change.week);
  PutSigned8(out, change.weekday);
  PutSigned8(out, change.month);
}

// A balanced tree over cities in order: node k is the k-th of them.
class TreeBuilder {
 public:
  explicit TreeBuilder(const std::vector<WMCityRecord>& cities) : nodes(cities.size()) {
    for (std::size_t i = 0; i < cities.size(); ++i) nodes[i].record = cities[i];
    root = Link(0, nodes.size(), 0);
  }

  std::uint16_t Root() const { return root; }
  const std::vector<Node>& Nodes() const { return nodes; }

 private:
  // Links the nodes from `first` up to `end`, both counted from 0, and gives the number of their
  // root; 0 for none. It calls itself as deep as the tree is: 16 times at most.
  std::uint16_t Link(std::size_t first, std::size_t end, std::uint16_t parent) {
    if (first == end) return 0;
    const std::size_t middle = first + (end - first) / 2;
    const auto number = static_cast<std::uint16_t>(middle + 1);
    Node& node = nodes[middle];
    node.parent = parent;
    node.left = Link(first, middle, number);
    node.right = Link(middle + 1, end, number);
    return number;
  }

  std::vector<Node> nodes;
  std::uint16_t root;
};

}  // namespace

Header DecodeHeader(ByteReader& in) {
  Header header;
  header.root = in.U16();
  header.word2 = in.U16();
  return header;
}

void EncodeHeader(ByteWriter& out, const Header& header) {
  out.U16(header.root);
  out.U16(header.word2);
}

WMCityRecord DecodeRecord(ByteReader& in) {
  WMCityRecord record;
  in.TakeInto(record.name);
  in.TakeInto(record.country);
  record.zone = in.U8();
  record.byte73 = in.U8();
  record.offset = static_cast<std::int16_t>(in.U16());
  record.dstMode = TakeSigned8(in);
  record.dstStart = DecodeChange(in);
  record.dstEnd = DecodeChange(in);
  in.TakeInto(record.unknown);
  record.mark = in.U16();
  record.deleted = TakeSigned8(in);
  record.byte195 = in.U8();
  return record;
}

void EncodeRecord(ByteWriter& out, const WMCityRecord& record) {
  out.Bytes(record.name);
  out.Bytes(record.country);
  out.U8(record.zone);
  out.U8(record.byte73);
  out.U16(static_cast<std::uint16_t>(record.offset));
  PutSigned8(out, record.dstMode);
  EncodeChange(out, record.dstStart);
  EncodeChange(out, record.dstEnd);
  out.Bytes(record.unknown);
  out.U16(record.mark);
  PutSigned8(out, record.deleted);
  out.U8(record.byte195);
}

Node DecodeNode(ByteReader& in) {
  Node node;
  node.left = in.U16();
  node.parent = in.U16();
  node.right = in.U16();
  node.record = DecodeRecord(in);
  return node;
}

void EncodeNode(ByteWriter& out, const Node& node) {
  out.U16(node.left);
  out.U16(node.parent);
  out.U16(node.right);
  EncodeRecord(out, node.record);
}

std::uint16_t NodeCount(std::uint64_t fileSize) {
  if (fileSize < kHeaderSize) return 0;
  // One less than the header's size, as the organiser has it.
  constexpr std::uint64_t kBesideNodes = kHeaderSize - 1;
  return static_cast<std::uint16_t>(
      std::min<std::uint64_t>((fileSize - kBesideNodes) / kNodeSize, kMostNodes));
}

std::uint64_t NodeOffset(std::uint16_t number) {
  return kHeaderSize + std::uint64_t{kNodeSize} * (std::uint64_t{number} - 1);
}

std::string EncodeCityFile(const std::vector<WMCityRecord>& cities) {
  const TreeBuilder tree(cities);
  ByteWriter out;
  out.Reserve(kHeaderSize + kNodeSize * cities.size());
  EncodeHeader(out, {tree.Root(), 0});
  for (const Node& node : tree.Nodes()) EncodeNode(out, node);
  return out.Release();
}

}  // namespace pw::city
