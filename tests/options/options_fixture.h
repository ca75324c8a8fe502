#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "framework/application.h"
#include "platform/testing/test_platform.h"
#include "plugin/source_manager.h"
#include "tests/support/dialog_controls.h"

namespace pw::test {

// Chooses one of a page's choices, as the person would.
inline void Choose(PageModel& page, std::int32_t number) {
  for (DialogControl& control : page.Controls()) {
    if (control.kind == ControlKind::kChoice) control.chosen = control.number == number;
  }
}

// Presses the page's one button.
inline void Browse(PageModel& page) {
  for (const DialogControl& control : page.Controls()) {
    if (control.kind != ControlKind::kButton) continue;
    page.Press(control.number);
    return;
  }
  throw std::out_of_range("the page has no button");
}

// A manager of the desktop edition and a window for its pages.
class OptionsTest : public testing::Test {
 protected:
  OptionsTest() {
    manager.Config = &config;
    manager.ApplicationSource = &source;
    manager.Product = 2;
  }

  // A folder that can be chosen: it holds a file of each name and kind that is required.
  void PutData(const std::string& folder) {
    for (const char* file : kRequired) platform.files.Put(folder + "\\" + Whole(file), "");
  }
  static std::string Whole(const std::string& file) { return file[0] == 'W' ? "x." + file : file; }
  static constexpr const char* kRequired[] = {"CALL.WMW",     "CSCA.WMW", "EVEN.WMW", "INIT.WMW",
                                              "RECR.WMW",     "TASK.WMW", "WMCard",   "WMContent",
                                              "WMNoteHeader", "WMWrite"};

  TestPlatform platform;
  PWConfig config;  // the manager's
  PWApplicationSource source;
  WMSourceManager manager{0};
  WindowId sheetWindow = platform.windows.Add("Sheet");
  WindowId pageWindow = platform.windows.Add("Page", true, sheetWindow);
};

}  // namespace pw::test
