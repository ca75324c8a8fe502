#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/record.h"
#include "host/city_clocks.h"

namespace pw {

// How the records of a type without fields of their own look to a person: as named texts.
struct RecordView {
  std::string_view type;
  std::vector<std::string> columns;

  // A text for each column, in UTF-8.
  std::vector<std::string> (*texts)(PWRecord& record, const CityClocks& cities);
};

// Columns that only a CSV file has: the section of a note, and the whole of a series as JSON.
inline constexpr const char* kCategoryColumn = "Category";
inline constexpr const char* kSeriesColumn = "Series";

// Whether records of a type tell when they were changed.
bool HasStamps(std::string_view type);

// Null for a type that has no such view.
const RecordView* FindRecordView(std::string_view type);

}  // namespace pw
