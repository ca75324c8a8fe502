#pragma once

#include <string>

#include "host/profile.h"

namespace pw {

// The text of a description that says what `wanted` says in its settings and its sync mode. All
// else stays as it was written, comments too, unless the text is written in such a way that only a
// fresh one can say it.
std::string EditedDescription(const std::string& text, const Profile& wanted);

}  // namespace pw
