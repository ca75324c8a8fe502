#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/bytes.h"

// Cardfiles laid out byte by byte, apart from the encoder that they test.
namespace pw::test {

inline std::string Padded(std::string text, std::size_t width, char fill = '\0') {
  text.resize(width, fill);
  return text;
}

// A card's text with the stamp behind it.
inline std::string Stamped(const std::string& text, const std::string& stamp) {
  return text + '\x7F' + stamp;
}

struct CardBytes {
  std::int32_t id = 0;
  std::string title;
  std::string text;   // with the stamp, as it stands in the file
  std::string notes;  // the contact log
  std::uint16_t word8 = 0;
  std::uint16_t word14 = 0;
};

// Bytes that must survive a save carry a pattern of their own.
struct CardFileBytes {
  std::string names = "First Name\r\nLast Name\r\nCompany\r\n";
  std::string keyLine = "Last Name, First Name, Company";
  std::vector<CardBytes> cards;

  std::uint32_t NamesOffset() const { return static_cast<std::uint32_t>(1489 + 64 * cards.size()); }
  std::uint32_t FirstBody() const {
    return static_cast<std::uint32_t>(NamesOffset() + 2 + names.size());
  }

  std::string Header() const {
    return std::string("WMW300\0\x07\xAB\xCD", 10) + Word(cards.size(), 2) + std::string(48, 'h') +
           Word(NamesOffset(), 4) + "\x05" + Word(FirstBody(), 4) + Word(0, 4) +
           std::string(1288, 'l');
  }

  std::string IndexEntry(const CardBytes& card, std::uint32_t bodyOffset) const {
    return Word(bodyOffset, 4) + Word(static_cast<std::uint32_t>(card.id), 4) +
           Word(card.word8, 2) + Word(card.text.size(), 2) + Word(card.notes.size(), 2) +
           Word(card.word14, 2) + Padded(card.title, 48);
  }

  std::string Build() const {
    std::string bytes = Header();
    std::uint32_t offset = FirstBody();
    std::string bodies;
    for (const CardBytes& card : cards) {
      bytes += IndexEntry(card, offset);
      bodies += card.text + card.notes;
      offset += static_cast<std::uint32_t>(card.text.size() + card.notes.size());
    }
    bytes += Padded(keyLine, 128);
    bytes += Word(names.size(), 2) + names;
    return bytes + bodies;
  }
};

// Three cards in the order of their titles, with values that hold what a cardfile can hold: line
// breaks in the last named field and the notes, bytes above 0x7F, empty fields, a card without a
// stamp.
inline CardFileBytes ThreeCards() {
  CardFileBytes file;
  file.cards = {
      {7, "Abel, Ann, Acme", Stamped("Ann\r\nAbel\r\nAcme\r\nSecond line\r\n", "917000000"),
       "met in May\r\nlikes tea", 0x1111, 0x2222},
      {3,
       "B\xFC"
       "cher, Bo",
       "Bo\r\nB\xFC"
       "cher\r\n\r\n\x7F-5",
       "", 0, 0},
      {12, "Corp", Stamped("\r\n\r\nCorp\r\n", "917000001"), "n", 0, 9},
  };
  return file;
}

}  // namespace pw::test
