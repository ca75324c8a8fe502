#include "platform/posix/registry_text.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/codepage.h"
#include "base/cursor.h"
#include "base/text.h"

namespace pw {
namespace {

constexpr std::string_view kHeader4 = "REGEDIT4";
constexpr std::string_view kHeader5 = "Windows Registry Editor Version 5.00";
constexpr std::string_view kRootName = "HKEY_LOCAL_MACHINE";
constexpr std::string_view kRootShortName = "HKLM";

constexpr std::size_t kNoSection = std::numeric_limits<std::size_t>::max();

// The path's first part, cut off its front; nothing when only empty parts are left.
std::optional<std::string_view> TakePart(std::string_view& path) {
  while (path.starts_with('\\')) path.remove_prefix(1);
  if (path.empty()) return std::nullopt;
  const std::string_view part = path.substr(0, path.find('\\'));
  path.remove_prefix(part.size());
  return part;
}

std::string IndexOf(std::uint32_t owner, std::string_view name) {
  ByteWriter index;
  index.U32(owner);
  for (const char c : name) index.U8(CodePageLower(static_cast<unsigned char>(c)));
  return index.Release();
}

bool IsOurRoot(std::string_view name) {
  return EqualIgnoringCase(name, kRootName) || EqualIgnoringCase(name, kRootShortName);
}

std::string_view WithoutLineEnd(std::string_view line) {
  while (!line.empty() && (IsRegistryBlank(line.back()) || line.back() == '\n')) {
    line.remove_suffix(1);
  }
  return line;
}

bool IsBlankOrComment(std::string_view line) {
  const std::string_view rest = WithoutRegistryBlanks(line);
  return rest.empty() || rest.front() == '\n' || rest.front() == ';';
}

bool EndsInBlankLine(std::string_view text) {
  if (!text.ends_with('\n')) return false;
  text.remove_suffix(1);
  const std::size_t end = text.rfind('\n');
  return WithoutRegistryBlanks(end == std::string_view::npos ? text : text.substr(end + 1)).empty();
}

// The first line settles the version, the encoding where no mark did, and how lines end.
bool ReadHeader(std::string_view line, RegistryCharacters& characters, RegistryFormat& format) {
  const std::string_view header = WithoutLineEnd(line);
  if (header != kHeader4 && header != kHeader5) return false;
  format.version = header == kHeader4 ? RegistryVersion::k4 : RegistryVersion::k5;
  if (format.version == RegistryVersion::k5 && !characters.hasMark) {
    characters.encoding = RegistryEncoding::kUtf8;
  }
  format.encoding = characters.encoding;
  if (line.ends_with('\n') && !line.ends_with("\r\n")) format.lineEnd = "\n";
  return true;
}

}  // namespace

RegistryText::RegistryText() : sections(1), lastSections{kNoSection} {
  sections[0].items.push_back({std::string(kHeader5) + format.lineEnd, false});
  sections[0].tail = format.lineEnd;
}

std::optional<RegistryText> RegistryText::Parse(std::string_view bytes, const Complain& complain) {
  RegistryText text;
  if (bytes.empty()) return text;
  text.characters = DecodeRegistryFile(bytes);
  const std::string inner = std::exchange(text.characters.inner, {});
  std::string_view rest = inner;
  if (rest.empty()) return std::nullopt;
  const std::string_view header = TakeRegistryLine(rest);
  if (!ReadHeader(header, text.characters, text.format)) return std::nullopt;
  text.sections = std::vector<Section>(1);
  text.Carry(header);

  Reader reader;
  for (std::size_t number = 2; !rest.empty();) {
    const std::string_view line = TakeRegistryLine(rest);
    const char* const complaint = text.ReadLine(line, reader);
    if (complaint != nullptr && complain) complain(number, complaint);
    number += static_cast<std::size_t>(std::count(line.begin(), line.end(), '\n'));
  }
  return text;
}

const char* RegistryText::ReadLine(std::string_view line, Reader& reader) {
  const std::string_view start = WithoutRegistryBlanks(line);
  const char first = start.empty() ? '\n' : start.front();
  if (first == '[') return ReadKey(line, reader);
  if (first == '"' || first == '@') return ReadValue(line, reader);
  Carry(line);
  if (reader.silent || IsBlankOrComment(line)) return nullptr;
  return "the line is neither a key nor a value";
}

const char* RegistryText::ReadKey(std::string_view line, Reader& reader) {
  sections.emplace_back();
  Carry(line);
  reader = {};
  const std::size_t start = line.find('[') + 1;
  const std::size_t end = line.rfind(']');
  if (end == std::string_view::npos) return "the key's name isn't closed";
  std::string_view path = line.substr(start, end - start);
  const bool removes = path.starts_with('-');
  if (removes) path.remove_prefix(1);

  const std::string_view root = path.substr(0, path.find('\\'));
  reader.silent = !IsOurRoot(root);
  if (reader.silent) return nullptr;
  path.remove_prefix(root.size());
  if (removes) return RemoveKey(path);

  KeyId key = kRoot;
  while (const auto part = TakePart(path)) {
    reader.silent = !FitsCodePage(*part, format.encoding);
    if (reader.silent) return nullptr;
    key = MakeChild(key, InnerToCodePage(*part, format.encoding));
  }
  reader.key = key;
  lastSections[static_cast<std::size_t>(key)] = sections.size() - 1;
  return nullptr;
}

const char* RegistryText::RemoveKey(std::string_view path) {
  std::string index;
  KeyId key = kRoot;
  while (const auto part = TakePart(path)) {
    if (!FitsCodePage(*part, format.encoding)) return nullptr;
    index = IndexOf(static_cast<std::uint32_t>(key), InnerToCodePage(*part, format.encoding));
    const auto found = keys.find(index);
    if (found == keys.end()) return nullptr;
    key = found->second;
  }
  if (key == kRoot) return "the root can't be taken away";
  keys.erase(index);
  return nullptr;
}

const char* RegistryText::ReadValue(std::string_view line, const Reader& reader) {
  if (!reader.key) {
    Carry(line);
    return reader.silent ? nullptr : "the value stands below no key";
  }
  RegistryValueLine parsed = ParseRegistryValue(line, format);
  const bool known = parsed.complaint == nullptr && parsed.nameFits;
  Carry(line, known && !parsed.deletes);
  if (!known) return parsed.complaint;
  const std::string index = IndexOf(static_cast<std::uint32_t>(*reader.key), parsed.name);
  if (parsed.deletes) {
    values.erase(index);
  } else {
    const std::size_t section = sections.size() - 1;
    values[index] = {std::move(parsed.value), section, sections[section].items.size() - 1};
  }
  return nullptr;
}

void RegistryText::Carry(std::string_view line, bool isValue) {
  Section& section = sections.back();
  if (IsBlankOrComment(line)) {
    section.tail += line;
    return;
  }
  std::string carried = std::exchange(section.tail, {});
  if (!isValue) carried += line;
  if (!carried.empty()) {
    if (section.items.empty() || section.items.back().isValue) section.items.emplace_back();
    section.items.back().text += carried;
  }
  if (isValue) section.items.push_back({std::string(line), true});
}

bool RegistryText::HasKey(std::string_view path) const {
  return FindKey(path).has_value();
}

const RegistryValue* RegistryText::Find(std::string_view path, std::string_view name) const {
  const auto key = FindKey(path);
  if (!key) return nullptr;
  const auto found = values.find(IndexOf(static_cast<std::uint32_t>(*key), name));
  return found == values.end() ? nullptr : &found->second.value;
}

std::optional<RegistryText::KeyId> RegistryText::FindKey(std::string_view path) const {
  KeyId key = kRoot;
  while (const auto part = TakePart(path)) {
    const auto found = keys.find(IndexOf(static_cast<std::uint32_t>(key), *part));
    if (found == keys.end()) return std::nullopt;
    key = found->second;
  }
  return key;
}

RegistryText::KeyId RegistryText::MakeChild(KeyId parent, std::string_view name) {
  const auto next = static_cast<KeyId>(lastSections.size());
  const auto [place, isNew] = keys.emplace(IndexOf(static_cast<std::uint32_t>(parent), name), next);
  if (isNew) lastSections.push_back(kNoSection);
  return place->second;
}

RegistryText::KeyId RegistryText::MakeKey(std::string_view path) {
  KeyId key = kRoot;
  while (const auto part = TakePart(path)) key = MakeChild(key, *part);
  return key;
}

bool RegistryText::AddKey(std::string_view path) {
  if (!IsRegistryLine(path)) return false;
  if (!HasKey(path)) SectionOf(MakeKey(path), path);
  return true;
}

bool RegistryText::Set(std::string_view path, std::string_view name, const RegistryValue& value) {
  if (!IsRegistryLine(path) || !IsRegistryLine(name)) return false;
  const KeyId key = MakeKey(path);
  const std::string index = IndexOf(static_cast<std::uint32_t>(key), name);
  const auto found = values.find(index);
  if (found != values.end()) {
    if (found->second.value == value) return true;
    std::string& line = sections[found->second.section].items[found->second.item].text;
    const RegistryValueLine old = ParseRegistryValue(line, format);
    line.replace(old.dataStart, old.dataEnd - old.dataStart,
                 FormatRegistryData(value, format, old.dataStart));
    found->second.value = value;
    altered = true;
    return true;
  }
  const std::size_t number = SectionOf(key, path);
  Section& section = sections[number];
  EndLine(section.items.back().text);
  std::string line = FormatRegistryName(name, format);
  line += FormatRegistryData(value, format, line.size());
  section.items.push_back({line + format.lineEnd, true});
  values[index] = {value, number, section.items.size() - 1};
  altered = true;
  return true;
}

// The last section that names the key. One is made, behind a blank line, where none does.
std::size_t RegistryText::SectionOf(KeyId key, std::string_view path) {
  std::size_t& last = lastSections[static_cast<std::size_t>(key)];
  if (last != kNoSection) return last;
  Section& before = sections.back();
  EndLine(before.tail.empty() ? before.items.back().text : before.tail);
  if (!EndsInBlankLine(before.tail)) before.tail += format.lineEnd;

  std::string name(kRootName);
  if (key != kRoot) name.append("\\").append(PlainPath(path));
  const std::string line = "[" + CodePageToInner(name, format.encoding) + "]" + format.lineEnd;
  sections.push_back({{{line, false}}, {}});
  altered = true;
  return last = sections.size() - 1;
}

void RegistryText::EndLine(std::string& text) const {
  if (!text.ends_with('\n')) text += format.lineEnd;
}

std::string RegistryText::PlainPath(std::string_view path) {
  std::string plain;
  while (const auto part = TakePart(path)) {
    if (!plain.empty()) plain.push_back('\\');
    plain += *part;
  }
  return plain;
}

std::string RegistryText::Render() const {
  std::string inner;
  for (const Section& section : sections) {
    for (const Item& item : section.items) inner += item.text;
    inner += section.tail;
  }
  return EncodeRegistryFile(characters, inner);
}

}  // namespace pw
