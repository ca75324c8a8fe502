#pragma once

#include <cstdint>

#include "options/option_page.h"

namespace pw::options {

// What the next synchronisation may do with the organiser's data: the sync mode of the engine's
// application source.
class SynchronizePage : public OptionPage {
 public:
  static constexpr std::int32_t kDialog = 128;

  explicit SynchronizePage(WMSourceManager& manager);

  // Asks before the page is left with a mode that deletes, unless it is the one that was agreed to
  // last. A mode that was set before has not been agreed to yet.
  bool Leave() override;
  void Accept() override;
  std::int32_t Picture() override;

 protected:
  void Start() override;

 private:
  void ReadMode();

  std::int32_t mode;  // see `kModes`; one that has no control stays as long as none is chosen
  std::int32_t acceptedMode = -1;
};

}  // namespace pw::options
