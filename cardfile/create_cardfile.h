#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Makes a cardfile without cards, with fields of these names; names beyond 65,535 bytes are left
// out. Its cards will be known by the last name, the first name and the company, as far as it has
// these fields, and then by the others in their order, three in all. 0; or 1 if something of that
// path is there already, or it can't be made.
std::int32_t CreateCardfile(const std::string& path, const std::vector<std::string>& fieldNames);
