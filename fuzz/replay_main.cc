#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Stands in for the fuzzer: `NAME_fuzz PLACES FOLDER` gives the target every file of the folder,
// whole, cut at every length and with every byte damaged, but in no more places than so many.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Of the sanitizers, where this is built with them.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

// What the target has now, to be told of when it ends there.
const char* seed = "none";
std::size_t place = 0;
const char* damage = "whole";
std::size_t replayed = 0;

void TellOfEnd() {
  std::fprintf(stderr, "ended by %s, byte %zu %s\n", seed, place, damage);
}

void Try(const std::string& bytes, std::size_t at, const char* what) {
  place = at;
  damage = what;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  ++replayed;
}

// Whether it is as the bytes of that distance before and behind it, of which one is as good as
// another.
bool IsAlike(const std::string& bytes, std::size_t at, std::size_t distance) {
  return at >= distance && at + distance < bytes.size() && bytes[at - distance] == bytes[at] &&
         bytes[at + distance] == bytes[at];
}

std::vector<std::size_t> PlacesIn(const std::string& bytes) {
  constexpr std::size_t kTableEntry = 17;  // of the days of a year
  std::vector<std::size_t> places;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!IsAlike(bytes, at, 1) && !IsAlike(bytes, at, kTableEntry)) places.push_back(at);
  }
  return places;
}

// In no more than so many places, evenly spread.
void TryDamaged(const std::string& bytes, std::size_t most) {
  const std::vector<std::size_t> places = PlacesIn(bytes);
  const std::size_t step = 1 + places.size() / most;
  for (std::size_t i = 0; i < places.size(); i += step) {
    const std::size_t at = places[i];
    Try(bytes.substr(0, at), at, "and all behind it cut off");
    for (const unsigned mask : {0xFF, 0x01, 0x80}) {
      std::string damaged = bytes;
      damaged[at] = static_cast<char>(damaged[at] ^ mask);
      Try(damaged, at, "changed");
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(TellOfEnd);
  for (const int signal : {SIGABRT, SIGILL, SIGTRAP}) {
    std::signal(signal, [](int which) {
      TellOfEnd();
      std::signal(which, SIG_DFL);
      std::raise(which);
    });
  }
  if (argc != 3) return 2;
  const std::size_t most = std::strtoul(argv[1], nullptr, 10);
  for (const auto& entry : std::filesystem::directory_iterator(argv[2])) {
    const std::string path = entry.path().string();
    std::ifstream in(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    seed = path.c_str();
    Try(bytes, 0, "whole");
    if (most > 0) TryDamaged(bytes, most);
  }
  std::printf("%zu inputs tried\n", replayed);
  return replayed > 0 ? 0 : 1;
}
