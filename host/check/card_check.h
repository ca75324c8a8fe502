#pragma once

#include <string_view>

#include "host/check/finding.h"

namespace pw {

FileCheck CheckCardfile(std::string_view bytes);

}  // namespace pw
