#pragma once

#include <cstdint>

#include "framework/source_manager.h"

// What the engine asks of the organiser as a whole. One module serves four editions of the
// organiser; which one it is hangs on `Product`.
class WMSourceManager : public PWSourceManager {
 public:
  explicit WMSourceManager(std::uint32_t owner) : PWSourceManager(owner) {}
  ~WMSourceManager() override;

  bool IsAvailable() override { return true; }
  const PWString& Name() override;
  PWSource* CreateSource(const char* typeName) override;
  void GetTypes(PWStringVector& out) override;
  std::uint32_t ReservedFlag() override { return 1; }
  PWRESULT AddSetupPages(CPropertySheet* sheet) override;
  PWRESULT AddExtraSetupPages(CPropertySheet* sheet) override;
  bool IsInstalled() override;
  PWRESULT ClearSyncCategoryNames() override;
  bool ShowOptions(PWConfig* config) override;
  PWRESULT LaunchApplication() override;

  // Empties what is paired of the types that take part, up to the first whose files the organiser
  // doesn't let go of: then 1, and a line in the log.
  PWRESULT DeleteAllData() override;
  PWRESULT ListCategories(const char* typeName, PWSourceCategoryVector& out) override;

  // Makes the files of a new category and tells where they are, null if nobody wants to know. For a
  // contact category the person chooses a template. 1 if it is there already, or nothing was made.
  PWRESULT NewCategory(const char* name, const char* typeName, PWString* location) override;

  // Deletes a cardfile. 1 for a memo category, whose location is no file.
  PWRESULT DeleteCategory(const char* typeName, const char* location) override;
  std::int32_t CategoryLimit(const char* typeName) override;
  bool IsSharedCategory(const char* typeName) override;
  PWString CategoryHeaderName() override;
  PWRESULT CategoryFieldNames(const char* typeName, const char* location,
                              PWStringVector& out) override;
  pw::IconHandle Icon() override;

  // Makes the file of every contact category that has none. Whether there was one.
  virtual bool CreateMissingCategories();

  // The edition, -1 as long as it isn't known.
  std::int32_t GetProduct();

  // Where the calendar and task files of the organiser's default user lie: `out` gets the whole
  // path, and its two parts become the data folder and the file stem of `Config`; a path without a
  // folder leaves the data folder as it was. False, and nothing changed, if the organiser names no
  // such user.
  bool FindDefaultCalendar(PWString& out);

  std::int32_t Product = -1;  // as read; see `GetProduct`
};
