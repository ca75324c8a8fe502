#include <memory>
#include <utility>

#include "framework/dialogs.h"
#include "options/folder_page.h"
#include "options/product_texts.h"
#include "options/setup_page.h"
#include "options/synchronize_page.h"
#include "plugin/source_manager.h"
#include "plugin/string_table.h"

// The sheets that the option pages stand in: the module's own, and the engine's setup wizard.

bool WMSourceManager::ShowOptions(PWConfig* config) {
  namespace options = pw::options;
  CPropertySheet sheet(LoadString(options::ProductTextsOf(GetProduct()).sheetTitle).Str());
  sheet.AddPage(std::make_unique<options::SynchronizePage>(*this));
  auto owned = std::make_unique<options::FolderPage>(*this);
  options::FolderPage& folderPage = *owned;
  folderPage.Load(*config);
  sheet.AddPage(std::move(owned));

  const PWHelp help(options::kHelpContext, false);
  if (sheet.DoModal(MainWindowId()) != pw::SheetAnswer::kOk) return true;
  folderPage.Apply(*config);
  return false;
}

PWRESULT WMSourceManager::AddSetupPages(CPropertySheet* sheet) {
  auto* wizard = dynamic_cast<CWizardSheet*>(sheet);
  sheet->AddPage(std::make_unique<pw::options::SetupPage>(*this, wizard));
  return kResultOk;
}

PWRESULT WMSourceManager::AddExtraSetupPages(CPropertySheet* sheet) {
  return AddSetupPages(sheet);
}
