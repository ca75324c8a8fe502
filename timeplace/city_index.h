#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "timeplace/city_file.h"

// The cities of "cityinfo.dat". Nodes are known by their numbers, from 1.
//
// The whole file is read once, at construction; it stays open for `Write`, and what others write
// into it meanwhile isn't seen. A record that is handed out is the one in the buffer, changes
// when another becomes current, and goes with the index.
class WMCityIndex : public WMCityFile {
 public:
  // Opens the file for reading, sharing it with everybody. Of a file that is missing the person is
  // told in a message box. That one, and one that can't be opened, leave an index without cities.
  explicit WMCityIndex(const std::string& path);

  bool IsOpen() const { return file != nullptr; }

  // The number of nodes, deleted ones counted in.
  std::uint16_t Count() const { return count; }

  // Makes the node the current one, and gives its record. Null for a deleted city, which becomes
  // current nevertheless, and for a number without a whole node, which doesn't.
  const WMCityRecord* Read(std::uint32_t number);

  // Looks a name up in the tree. Null if it isn't there: the current node is then the one of before
  // again, read anew. Null also for a deleted city, which becomes the current one. A damaged tree
  // is given up once as many nodes were passed as there are.
  const WMCityRecord* Find(std::string_view key);

  // The first city of that name or zone, by the numbers of the nodes, which becomes the current
  // one. False if there is none: `out` is then left alone, and the last node is the current one.
  bool FindByName(std::string_view name, WMCityRecord& out);
  bool FindByZone(std::uint8_t zone, WMCityRecord& out);

  // Writes the current node in its place. False, and what was read stays, if the file doesn't take
  // it, as one that is open for reading only never does, or if there is no current node.
  bool Write();

  const WMCityRecord& Current() const { return buffer.record; }

  using WMCityFile::Compare;
  void Replace(const WMCityRecord* record) override;
  bool DeleteKey(std::string_view key) override;
  bool Delete(std::uint32_t number) override;
  void SetMark(std::uint16_t value) override { buffer.record.mark = value; }
  std::int32_t Compare(std::string_view a, std::string_view b) const override;
  bool IsDeleted() const override { return buffer.record.deleted != 0; }

 private:
  void LoadNodes();
  bool HasNode(std::uint32_t number) const { return number > 0 && number <= nodes.size(); }

  // Makes a node the current one; false, and nothing changes, for a number without one.
  bool Select(std::uint32_t number);
  bool DeleteCurrent();

  std::vector<pw::city::Node> nodes;  // the whole ones, from number 1
  std::uint16_t count = 0;
};
