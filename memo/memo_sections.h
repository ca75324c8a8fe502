#pragma once

#include <cstdint>
#include <string>

// What is done to whole sections of binders.

// Makes a section, and the binder if there is none of that stem. 0, also if the binder is there and
// can't be opened; 1 if it has a section of that name already or its files can't be made.
std::int32_t CreateMemoSection(const std::string& stem, const std::string& name);

// Deletes all notes of a section; the section stays. 0, also if there is no such section or the
// binder can't be opened; 1, and nothing done, if the organiser has a dialog open.
std::int32_t ClearMemoSection(const std::string& location);
