#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "framework/source.h"
#include "host/drive_records.h"
#include "host/engine_objects.h"
#include "host/json_fields.h"

namespace pw {

// Drives the module as the engine would, call by call: each call is one line, a JSON object, and
// gets one such line as its answer. What is wrong with a line is its answer, and changes nothing.
class Drive {
 public:
  explicit Drive(EngineObjects objects);
  ~Drive();

  // The answer to one line, without a line end.
  std::string Answer(std::string_view line);

  // Whether a line was answered by an error so far, or a source is open, which is dropped then with
  // whatever was changed in it.
  bool IsUnclean() const { return anyError || source != nullptr; }

 private:
  using Operation = void (Drive::*)(JsonFields& line, Json& answer);
  enum class Needs { kNothing, kNoSource, kSource };
  struct Call {
    const char* name;
    Operation operation;
    Needs needs = Needs::kNothing;
  };
  static const Call kCalls[];
  static const Call* FindCall(std::string_view name);

  // What is wrong with the line, or nothing.
  std::string Run(const JsonInput& line, Json& answer);

  void Now(JsonFields& line, Json& answer);
  void Ticks(JsonFields& line, Json& answer);
  void Window(JsonFields& line, Json& answer);
  void Log(JsonFields& line, Json& answer);

  void Name(JsonFields& line, Json& answer);
  void Installed(JsonFields& line, Json& answer);
  void Types(JsonFields& line, Json& answer);
  void Launch(JsonFields& line, Json& answer);
  void ClearNames(JsonFields& line, Json& answer);
  void Config(JsonFields& line, Json& answer);
  void Limit(JsonFields& line, Json& answer);
  void Shared(JsonFields& line, Json& answer);
  void Categories(JsonFields& line, Json& answer);
  void NewCategory(JsonFields& line, Json& answer);
  void DeleteCategory(JsonFields& line, Json& answer);
  void FieldNames(JsonFields& line, Json& answer);
  void ImportPath(JsonFields& line, Json& answer);
  void PrepareImport(JsonFields& line, Json& answer);
  void Syncing(JsonFields& line, Json& answer);
  void DeleteAll(JsonFields& line, Json& answer);
  void Available(JsonFields& line, Json& answer);
  void HeaderName(JsonFields& line, Json& answer);
  void Icon(JsonFields& line, Json& answer);
  void ShowOptions(JsonFields& line, Json& answer);
  void SetupPages(JsonFields& line, Json& answer);
  void Backup(JsonFields& line, Json& answer);
  void Reserved(JsonFields& line, Json& answer);

  void Open(JsonFields& line, Json& answer);
  void Close(JsonFields& line, Json& answer);
  void Count(JsonFields& line, Json& answer);
  void First(JsonFields& line, Json& answer);
  void Next(JsonFields& line, Json& answer);
  void Find(JsonFields& line, Json& answer);
  void Id(JsonFields& line, Json& answer);
  void Stamp(JsonFields& line, Json& answer);
  void Crc(JsonFields& line, Json& answer);
  void Read(JsonFields& line, Json& answer);
  void Add(JsonFields& line, Json& answer);
  void Update(JsonFields& line, Json& answer);
  void Delete(JsonFields& line, Json& answer);
  void FindField(JsonFields& line, Json& answer);
  void GetField(JsonFields& line, Json& answer);
  void SetField(JsonFields& line, Json& answer);
  void GenerateCrc(JsonFields& line, Json& answer);
  void SourceReserved(JsonFields& line, Json& answer);

  // The form of the open source's records; null, and the line failed, where they have none.
  const RecordForm* Form(JsonFields& line) const;

  // The record that the line holds; empty where the line fails.
  void ReadRecord(JsonFields& line, PWRecord& record) const;

  EngineObjects objects;
  std::map<std::string, PWSourceCategoryVector> listed;  // by type, as last listed
  std::unique_ptr<PWSourceCategory> category;            // of the open source
  std::unique_ptr<PWSource> source;
  std::string sourceType;
  bool anyError = false;
};

// Answers all lines of `in` on `out`, each at once. A line longer than 16 MiB is answered by an
// error. Returns the exit code: 1 if anything was answered by an error, or a source was still open
// at the end.
int RunDrive(const EngineObjects& objects, std::istream& in, std::ostream& out);

}  // namespace pw
