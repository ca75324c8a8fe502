#pragma once

#include <libical/ical.h>

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

// Parses a calendar, has each component of a kind looked at, and writes it again, all in memory.
// The number of components.
template <class Look>
std::uint32_t ParseWalkWrite(const std::string& calendar, icalcomponent_kind kind, Look look) {
  icalcomponent* all = icalparser_parse_string(calendar.c_str());
  if (all == nullptr) return 0;
  std::uint32_t found = 0;
  for (icalcomponent* each = icalcomponent_get_first_component(all, kind); each != nullptr;
       each = icalcomponent_get_next_component(all, kind)) {
    ++found;
    look(each);
  }
  char* written = icalcomponent_as_ical_string_r(all);
  benchmark::DoNotOptimize(written);
  icalmemory_free_buffer(written);
  icalcomponent_free(all);
  return found;
}
