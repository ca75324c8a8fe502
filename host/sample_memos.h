#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "framework/record.h"

namespace pw {

// A note of the sample's binder. Texts are UTF-8.
struct SampleMemo {
  std::size_t section;  // its place among the sections
  const char* subject;
  const char* body;
};

inline constexpr const char* kSampleBinder = "Notebook";

// Names of the binder's sections.
extern const std::vector<std::string> kSampleSections;

extern const SampleMemo kSampleMemos[];
extern const std::size_t kSampleMemoCount;

// As the engine passes it.
PWRecord RecordOf(const SampleMemo& memo);

}  // namespace pw
