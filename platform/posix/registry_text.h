#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/posix/registry_text_encoding.h"
#include "platform/posix/registry_text_line.h"
#include "platform/registry.h"

namespace pw {

// The local-machine part of the registry in a registry editor's export, whose text it keeps.
//
//   file   := header line*            header: "REGEDIT4" or "Windows Registry Editor Version 5.00"
//   line   := "[" key "]"             the key that the values below it belong to
//           | "[-" key "]"            the key and all under it are taken away
//           | value                   see registry_text_line.h
//           | blanks [";" comment]
//
// A key starts with the name of its root and ends before the last "]" of its line. What is read
// later overrides what came before. Each change alters no more than its own lines: everything else
// stays as it stood, byte for byte, whether it is understood or not. Keys of other roots are only
// carried, and so are names with characters outside the code page, which the organiser could not
// ask for.
//
// Key paths are those of `Registry`; empty parts of them don't count. Reading takes time in
// proportion to the text, a look-up in proportion to the names looked up.
class RegistryText {
 public:
  // What is wrong with a line, and its number, from 1.
  using Complain = std::function<void(std::size_t line, const char* what)>;

  // A registry without keys, in version 5.00 and UTF-16 with "\r\n": what the registry editor
  // writes.
  RegistryText();

  // Nothing if the text doesn't start with one of the two headers. No bytes at all are a registry
  // without keys. Lines that can't be understood are told, and skipped.
  static std::optional<RegistryText> Parse(std::string_view bytes, const Complain& complain);

  // A key is there if a section names it or one under it. The root always is.
  bool HasKey(std::string_view path) const;

  // Null if there is no such value. Lasts until the next change.
  const RegistryValue* Find(std::string_view path, std::string_view name) const;

  // Make a key, or set a value and its key, where it isn't so already. A value's new data takes the
  // place of the old; a new value goes to the end of its key's last section; a new key to the end
  // of the text. False, and nothing changes, if a name can't be kept in a line
  // (`IsRegistryLine`).
  bool AddKey(std::string_view path);
  bool Set(std::string_view path, std::string_view name, const RegistryValue& value);

  // Whether a change has altered the text since it was read, or since this was last put back.
  bool IsAltered() const { return altered; }
  void ForgetAltered() { altered = false; }

  // The bytes of the file.
  std::string Render() const;

  // The path without its empty parts: the same for all ways to write it but the letter case.
  static std::string PlainPath(std::string_view path);

 private:
  enum class KeyId : std::uint32_t {};
  static constexpr KeyId kRoot{0};

  // A line that holds a value, or any number of lines that don't.
  struct Item {
    std::string text;
    bool isValue = false;
  };

  // From one "[" line to before the next; the first holds what stands before any. Blank lines and
  // comments at the end belong to what follows, so new values go before them.
  struct Section {
    std::vector<Item> items;
    std::string tail;
  };

  struct Value {
    RegistryValue value;
    std::size_t section = 0;
    std::size_t item = 0;
  };

  // Whose values the lines are that are just being read.
  struct Reader {
    std::optional<KeyId> key;
    bool silent = false;  // not ours: nothing is said of the lines
  };

  // These return what is wrong with the line, or null.
  const char* ReadLine(std::string_view line, Reader& reader);
  const char* ReadKey(std::string_view line, Reader& reader);
  const char* RemoveKey(std::string_view path);
  const char* ReadValue(std::string_view line, const Reader& reader);

  void Carry(std::string_view line, bool isValue = false);
  KeyId MakeChild(KeyId parent, std::string_view name);
  KeyId MakeKey(std::string_view path);
  std::optional<KeyId> FindKey(std::string_view path) const;
  std::size_t SectionOf(KeyId key, std::string_view path);
  void EndLine(std::string& text) const;

  RegistryCharacters characters;  // without its inner text, which is in the sections
  RegistryFormat format;
  std::vector<Section> sections;
  bool altered = false;

  // Keys by the number of the key above and their folded name, values by the key and theirs. A key
  // that is taken away loses its entry here and can't be reached any more, nor anything under it.
  std::unordered_map<std::string, KeyId> keys;
  std::unordered_map<std::string, Value> values;
  std::vector<std::size_t> lastSections;  // of each key; `kNoSection` if none names it
};

}  // namespace pw
