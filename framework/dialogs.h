#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/string.h"
#include "framework/vector.h"
#include "platform/dialogs.h"

class PWApplicationSource;

// While one exists, help shows the named context. They nest.
class PWHelp {
 public:
  // The flag has no meaning here.
  PWHelp(const char* name, bool flag);
  ~PWHelp();
  PWHelp(const PWHelp&) = delete;
  PWHelp& operator=(const PWHelp&) = delete;
};

// Lets the person choose a folder that holds all that is required of it. An entry of the list with
// a dot is the name of a file, one without an extension that some file must have; letter case is
// ignored.
class PWBrowseFolder {
 public:
  // Copies the texts and the list. `productName` stands in the dialog's title.
  PWBrowseFolder(pw::WindowId parent, const char* productName, const char* startFolder,
                 PWStringVector& requiredFiles);

  // True when the person chose a folder, which `Folder` then gives: as the start folder was spelled
  // if it is that, else in its plain spelling, without a backslash at its end.
  bool DoModal();

  const PWString& Folder() const { return folder; }

 private:
  pw::WindowId parent;
  PWString productName;
  PWString folder;
  std::vector<std::string> required;
};

// The engine's main window as the parent of a dialog; none where it has none.
pw::WindowId MainWindowId();

// A page of controls, without a look: its logic, which a dialog or a test drives.
class CPropertyPage : public pw::PageModel {
 public:
  explicit CPropertyPage(std::int32_t dialog = 0) : dialog(dialog) {}

  std::int32_t Dialog() override { return dialog; }

  // Starts the page the first time. An override calls this first.
  void Show(pw::WindowId shownIn) override;
  std::vector<pw::DialogControl>& Controls() override { return controls; }
  void Press(std::int32_t /*control*/) override {}
  bool Leave() override { return true; }
  void Help() override;
  std::int32_t Focus() override { return focus; }

  // Called on each page, in order, when the sheet was left by OK.
  virtual void Accept() {}

 protected:
  // Called once, before anything else is done with the controls: the place to make them.
  virtual void Start() {}

  void Add(std::int32_t number, pw::ControlKind kind, const std::string& text);

  // The control of that number, or null.
  pw::DialogControl* Control(std::int32_t number);

  // Take over what a control holds, and show something in it. Nothing happens without the control,
  // as on a page that was never shown.
  void ReadText(std::int32_t number, std::string& out);
  void ShowText(std::int32_t number, const std::string& text);

  std::vector<pw::DialogControl> controls;
  std::int32_t focus = 0;
  pw::WindowId window = pw::kNoWindow;  // that the page was last shown in

 private:
  std::int32_t dialog;
  bool started = false;
};

// A modal sheet that owns its pages.
class CPropertySheet : public pw::SheetModel {
 public:
  explicit CPropertySheet(std::string title) : title(std::move(title)) {}

  void AddPage(std::unique_ptr<CPropertyPage> page) { pages.push_back(std::move(page)); }

  std::string Title() override { return title; }
  std::vector<pw::PageModel*> Pages() override;

  // Shows the sheet; left by OK, every page is told to accept.
  pw::SheetAnswer DoModal(pw::WindowId parent);

 private:
  std::string title;
  std::vector<std::unique_ptr<CPropertyPage>> pages;
};

// The engine's setup wizard, which the setup page is added to.
class CWizardSheet : public CPropertySheet {
 public:
  using CPropertySheet::CPropertySheet;

  // Stands in the core, and with it what the class is known by: the module asks of a sheet whether
  // it is one that the engine's program has made.
  ~CWizardSheet() override;

  // The person has chosen another data folder: what the engine knew of the source is void.
  virtual void ResetApplicationSource(PWApplicationSource* source) = 0;
};
