#include "host/organiser_folder.h"

#include "framework/registry.h"

namespace pw {

std::string OrganiserFolder(EngineRun& run) {
  PWRegistry registry;
  PWString folder;
  if (registry.Open(run.Objects().config.String(PWConfig::kProductKey), false) == 0) return {};
  registry.Read("Data", folder);
  return folder.Str();
}

}  // namespace pw
