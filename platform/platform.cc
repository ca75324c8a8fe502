#include "platform/platform.h"

#include <cstdio>
#include <cstdlib>

namespace pw {
namespace {

// Not a `ProcessWide`: a test's platform stays for as long as its owner, over any reset of the
// state that runs on it.
Platform current;

}  // namespace

const Platform& CurrentPlatform() {
  if (current.files == nullptr) {
    std::fputs("pairwise: no platform was set before the module was used\n", stderr);
    std::abort();
  }
  return current;
}

Platform SetPlatform(const Platform& platform) {
  const Platform before = current;
  current = platform;
  return before;
}

}  // namespace pw
