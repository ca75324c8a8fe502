#pragma once

#include <filesystem>
#include <string>

#include "host/outcome.h"

// The home city of an organiser, as the city file in its folder names it, in its code page.
namespace pw {

// That of the home clock; empty where there is none, or the city file doesn't know it.
std::string HomeCityOfClocks(const std::filesystem::path& folder);

// The city that a person names, in UTF-8 and any letter case.
Outcome<std::string> FindCity(const std::filesystem::path& folder, const std::string& name);

}  // namespace pw
