#pragma once

#include "framework/vector.h"

namespace pw::options {

// What a data folder must hold to be chosen: six file names, then four extensions.
PWStringVector RequiredFiles();

}  // namespace pw::options
