#include "base/process_wide.h"
#include "plugin/discovery.h"

// Apart from the operations of the source manager, so that the stores can do without one.

namespace {

pw::ProcessWide<std::string> keyPath;

}  // namespace

std::string& CalendarKeyPath() {
  return *keyPath;
}
