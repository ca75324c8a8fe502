#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "platform/dialogs.h"

namespace pw::test {

inline DialogControl& ControlOf(PageModel& page, std::int32_t number) {
  for (DialogControl& control : page.Controls()) {
    if (control.number == number) return control;
  }
  throw std::out_of_range("the page has no control " + std::to_string(number));
}

}  // namespace pw::test
