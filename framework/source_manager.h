#pragma once

#include <cstdint>

#include "framework/category.h"
#include "framework/config.h"
#include "framework/dialogs.h"
#include "framework/log.h"
#include "framework/result.h"
#include "framework/vector.h"
#include "platform/dialogs.h"

class PWApplicationSource;
class PWSource;

// What the engine asks of an application as a whole: its name, its data types, its categories, its
// option pages. The engine fills `ApplicationSource`, `Log` and `Config` before it calls an
// operation that uses them.
class PWSourceManager : public PWObject {
 public:
  explicit PWSourceManager(std::uint32_t owner) : Owner(owner) {}
  PWSourceManager(const PWSourceManager&) = delete;
  PWSourceManager& operator=(const PWSourceManager&) = delete;

  // Destroys the icon if one was loaded, then deletes the log.
  ~PWSourceManager() override;

  virtual bool IsAvailable() { return false; }

  // What the product is called, good until the next call.
  virtual const PWString& Name() = 0;

  // A new source, owned by the caller, or null for a type that isn't served.
  virtual PWSource* CreateSource(const char* typeName) = 0;

  // Appends the names of the data types.
  virtual void GetTypes(PWStringVector& out) = 0;
  virtual std::uint32_t ReservedFlag() = 0;

  // Add this application's pages, which the sheet owns then, to the setup wizard's sheet. 0.
  virtual PWRESULT AddSetupPages(CPropertySheet* sheet) = 0;
  virtual PWRESULT AddExtraSetupPages(CPropertySheet* sheet) = 0;

  // Whether the product is installed on this machine.
  virtual bool IsInstalled() { return true; }
  virtual std::uint32_t ReservedQueryA() { return 0; }
  virtual std::uint32_t ReservedQueryB() { return 0; }
  virtual void ReservedNoticeA(std::uint32_t /*word*/) {}
  virtual void ReservedNoticeB(std::uint32_t /*word*/) {}

  // Forgets which categories were made for a run, at its end. 0.
  virtual PWRESULT ClearSyncCategoryNames() { return kResultOk; }
  virtual std::uint32_t ReservedQueryC() { return 0; }

  // False if the person left by OK.
  virtual bool ShowOptions(PWConfig* /*config*/) { return false; }

  // Empties every category of every type that takes part in the run. 1 where the organiser won't
  // let go, and the log tells so.
  virtual PWRESULT DeleteAllData() { return kResultFailed; }

  // Starts the organiser. 1 where it can't be started.
  virtual PWRESULT LaunchApplication() { return kResultFailed; }

  // Copies every file of the data folder (entry 2 of `Config`) into the target folder, which must
  // be there, overwrites nothing, and compares each copy with its original. On failure `out`, if
  // given, names the file or the folder; on success it is the target.
  virtual PWRESULT Backup(const char* target, PWString* out);
  virtual std::uint32_t ReservedActionA(std::uint32_t /*word*/) { return 1; }
  virtual std::uint32_t ReservedActionB(std::uint32_t /*word*/) { return 1; }

  // Appends the categories of a type.
  virtual PWRESULT ListCategories(const char* /*typeName*/, PWSourceCategoryVector& /*out*/) {
    return kResultFailed;
  }

  // Makes a category. `location` is what `PWSourceCategory::Location` is to be, and is set even
  // where nothing is made. 1 where it can't be made, is there already, or has no such type.
  virtual PWRESULT NewCategory(const char* /*name*/, const char* /*typeName*/,
                               PWString* /*location*/) {
    return kResultOk;
  }

  // Removes the category at a location. 1 where that can't be done.
  virtual PWRESULT DeleteCategory(const char* /*typeName*/, const char* /*location*/) {
    return kResultFailed;
  }

  // How many categories a type may have; -1 for any number.
  virtual std::int32_t CategoryLimit(const char* /*typeName*/) { return -1; }

  // Whether another type has the same categories, so that a choice for one holds for both.
  virtual bool IsSharedCategory(const char* /*typeName*/) { return false; }

  // What a category is called; empty here.
  virtual PWString CategoryHeaderName();

  // Appends the names of the fields that the records of a category have. 11 where the category had
  // no file and was made, so that the list of categories is to be fetched again; 1 on failure.
  virtual PWRESULT CategoryFieldNames(const char* /*typeName*/, const char* /*location*/,
                                      PWStringVector& /*out*/) {
    return kResultFailed;
  }
  virtual PWRESULT ReservedTriple(std::uint32_t /*a*/, std::uint32_t /*b*/, std::uint32_t /*c*/) {
    return kResultNotImplemented;
  }

  // Null where there is none; owned by this.
  virtual pw::IconHandle Icon() { return IconHandle; }

  pw::IconHandle IconHandle = nullptr;  // loaded on first need; owned
  bool Flag = false;
  PWApplicationSource* ApplicationSource = nullptr;  // the engine's
  std::uint32_t WordA = 0;
  std::uint32_t WordB = 0;
  PWLog* Log = nullptr;  // null outside a run; owned
  std::uint32_t WordC = 0;
  PWConfig* Config = nullptr;  // the engine's
  std::uint32_t Owner;         // as given at construction
};
