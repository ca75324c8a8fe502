#include "framework/memo_record.h"

namespace {

// Texts.
constexpr PWPropertyId kSubject{1};
constexpr PWPropertyId kBody{2};

}  // namespace

PWString& PWMemoRecord::Subject() const {
  return record->Text(kSubject);
}

void PWMemoRecord::Subject(const char* text, std::uint32_t size) {
  record->SetText(kSubject, text, size);
}

PWString& PWMemoRecord::Body() const {
  return record->Text(kBody);
}

void PWMemoRecord::Body(const char* text, std::uint32_t size) {
  record->SetText(kBody, text, size);
}
