#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace pw {

// The fields of the sample cardfile, without the contact log, which every cardfile has.
inline constexpr std::array kSampleFields = {
    "First Name", "Last Name", "Company", "Title",  "Street", "City",   "State",
    "ZIP",        "Country",   "Phone",   "Mobile", "Fax",    "E-mail", "Birthday"};

inline constexpr const char* kSampleLogField = "Contact Log";

// A card of people who never lived: a value for each field and the contact log, in UTF-8.
struct SampleCard {
  std::array<const char*, kSampleFields.size()> values;
  const char* log;
};

extern const SampleCard kSampleCards[];
extern const std::size_t kSampleCardCount;

// The list of templates for new cardfiles, of which the first one has the fields of the sample.
std::string SampleTemplates();

}  // namespace pw
