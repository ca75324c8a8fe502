#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "framework/object.h"
#include "platform/files.h"
#include "timeplace/city_format.h"

// A city file as the organiser's classes see it: a tree of nodes, of which one at a time stands in
// a buffer, the current one. Behind the base's operations these stand in this order.
class WMCityFile : public PWObject {
 public:
  WMCityFile(const WMCityFile&) = delete;
  WMCityFile& operator=(const WMCityFile&) = delete;
  using PWObject::Compare;

  // Puts a record over the current one, in the buffer alone. Null changes nothing.
  virtual void Replace(const WMCityRecord* record) = 0;

  // Marks a city as deleted and writes its node, which stays in the tree. False if there is no such
  // city, or it could not be written: it is then deleted in the buffer alone.
  virtual bool DeleteKey(std::string_view key) = 0;
  virtual bool Delete(std::uint32_t number) = 0;

  // Of the current record, in the buffer alone.
  virtual void SetMark(std::uint16_t value) = 0;

  // What a record is found by.
  virtual std::string_view Key(const WMCityRecord& record) const { return record.Name(); }

  // -1, 0 or 1, as the bytes of key `a` stand before, with or behind those of `b`.
  virtual std::int32_t Compare(std::string_view a, std::string_view b) const = 0;

  // Of the current record.
  virtual bool IsDeleted() const = 0;

 protected:
  WMCityFile() = default;

  std::uint16_t root = 0;
  std::uint16_t current = 0;  // number of the node in the buffer
  pw::city::Node buffer;
  std::unique_ptr<pw::File> file;  // null if it could not be opened
};
