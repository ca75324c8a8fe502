#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Which edition of the organiser is served, and where its program and data lie.

// The codes of the editions. A code that isn't here is treated like that of the information
// manager, where nothing else is said.
namespace product {

inline constexpr std::int32_t kUnknown = -1;
inline constexpr std::int32_t kInformationManager = 0;
inline constexpr std::int32_t kWingmate98 = 1;
inline constexpr std::int32_t kDesktop = 2;
inline constexpr std::int32_t kWingmate99 = 3;

}  // namespace product

// The number of the text that is the main key of an edition, which is the desktop's as long as the
// edition isn't known; nothing for a code that no edition has.
std::optional<std::uint32_t> MainKeyOf(std::int32_t code);

// The organiser's install folder, less one backslash at its end; nothing where the registry doesn't
// tell.
std::optional<std::string> InstallFolder(std::int32_t code);

// Whether the organiser writes the files of data version 50. Asked of the registry at each call,
// and always of the desktop edition's key, whichever edition runs.
bool IsVersion50();

// The main key of the edition that the calendar was last opened for; empty before that. It holds
// for the whole process.
std::string& CalendarKeyPath();
