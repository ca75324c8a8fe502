#include "host/drive.h"

#include <algorithm>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>
#include <utility>

#include "base/codepage.h"
#include "host/line_reader.h"

namespace pw {
namespace {

constexpr std::size_t kLongestLine = 16 << 20;

constexpr const char* kResult = "result";
constexpr const char* kType = "type";
constexpr const char* kLocation = "location";

Json TextArray(const PWStringVector& texts) {
  Json array = Json::array();
  for (std::uint32_t i = 0; i < texts.Count(); ++i) array.push_back(JsonText(texts.At(i)->View()));
  return array;
}

Json ErrorAnswer(std::string what) {
  return Json{{"error", std::move(what)}};
}

}  // namespace

const Drive::Call Drive::kCalls[] = {
    {"now", &Drive::Now},
    {"ticks", &Drive::Ticks},
    {"window", &Drive::Window},
    {"log", &Drive::Log},
    {"name", &Drive::Name},
    {"installed", &Drive::Installed},
    {"types", &Drive::Types},
    {"launch", &Drive::Launch},
    {"clearnames", &Drive::ClearNames},
    {"config", &Drive::Config},
    {"limit", &Drive::Limit},
    {"shared", &Drive::Shared},
    {"categories", &Drive::Categories},
    {"newcategory", &Drive::NewCategory},
    {"deletecategory", &Drive::DeleteCategory},
    {"fieldnames", &Drive::FieldNames},
    {"importpath", &Drive::ImportPath},
    {"prepareimport", &Drive::PrepareImport},
    {"syncing", &Drive::Syncing},
    {"deleteall", &Drive::DeleteAll},
    {"available", &Drive::Available},
    {"headername", &Drive::HeaderName},
    {"icon", &Drive::Icon},
    {"showoptions", &Drive::ShowOptions},
    {"setuppages", &Drive::SetupPages},
    {"backup", &Drive::Backup},
    {"reserved", &Drive::Reserved},
    {"open", &Drive::Open, Needs::kNoSource},
    {"close", &Drive::Close, Needs::kSource},
    {"count", &Drive::Count, Needs::kSource},
    {"first", &Drive::First, Needs::kSource},
    {"next", &Drive::Next, Needs::kSource},
    {"find", &Drive::Find, Needs::kSource},
    {"id", &Drive::Id, Needs::kSource},
    {"stamp", &Drive::Stamp, Needs::kSource},
    {"crc", &Drive::Crc, Needs::kSource},
    {"read", &Drive::Read, Needs::kSource},
    {"add", &Drive::Add, Needs::kSource},
    {"update", &Drive::Update, Needs::kSource},
    {"delete", &Drive::Delete, Needs::kSource},
    {"findfield", &Drive::FindField, Needs::kSource},
    {"getfield", &Drive::GetField, Needs::kSource},
    {"setfield", &Drive::SetField, Needs::kSource},
    {"generatecrc", &Drive::GenerateCrc, Needs::kSource},
    {"sourcereserved", &Drive::SourceReserved, Needs::kSource},
};

Drive::Drive(EngineObjects objects) : objects(std::move(objects)) {}
Drive::~Drive() = default;

const Drive::Call* Drive::FindCall(std::string_view name) {
  const auto* found = std::find_if(std::begin(kCalls), std::end(kCalls),
                                   [&](const Call& call) { return call.name == name; });
  return found == std::end(kCalls) ? nullptr : found;
}

std::string Drive::Answer(std::string_view line) {
  Json answer = Json::object();
  std::string problem;
  if (line.find('\0') != std::string_view::npos) {
    // The parser would take it for the end of the line.
    problem = "a zero byte in the line";
  } else if (IsTooDeep(line)) {
    problem = "nested too deeply";
  } else {
    const JsonInput parsed = JsonInput::parse(line, nullptr, false);
    problem = parsed.is_discarded() ? "not valid JSON" : Run(parsed, answer);
  }
  if (!problem.empty()) {
    anyError = true;
    answer = ErrorAnswer(std::move(problem));
  }
  return JsonLine(answer);
}

std::string Drive::Run(const JsonInput& line, Json& answer) {
  JsonFields fields(line);
  const std::string name = fields.Text("op");
  if (fields.Failed()) return fields.Problem();
  const Call* call = FindCall(name);
  if (call == nullptr) return "unknown op \"" + CodePageToUtf8(name) + "\"";
  if (call->needs == Needs::kSource && source == nullptr) return "no source is open";
  if (call->needs == Needs::kNoSource && source != nullptr) return "a source is already open";
  (this->*call->operation)(fields, answer);
  return fields.Problem();
}

void Drive::Now(JsonFields& line, Json& /*answer*/) {
  const std::int32_t seconds = line.Signed("seconds");
  if (!line.Failed()) objects.clock.FixNow(seconds);
}

void Drive::Ticks(JsonFields& line, Json& /*answer*/) {
  const std::uint32_t value = line.Unsigned("value");
  if (!line.Failed()) objects.clock.FixTicks(value);
}

void Drive::Window(JsonFields& line, Json& /*answer*/) {
  const bool chain = line.Bool("chain");
  if (!line.Failed()) objects.setWindowChain(chain);
}

void Drive::Log(JsonFields& /*line*/, Json& answer) {
  Json lines = Json::array();
  for (const LogLine& line : objects.log) {
    lines.push_back(
        Json{{"image", static_cast<std::int32_t>(line.image)}, {"text", JsonText(line.text)}});
  }
  objects.log.clear();
  answer["log"] = std::move(lines);
}

void Drive::Name(JsonFields& /*line*/, Json& answer) {
  answer["name"] = JsonText(objects.manager.Name().View());
}

void Drive::Installed(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.IsInstalled();
}

void Drive::Types(JsonFields& /*line*/, Json& answer) {
  PWStringVector types;
  objects.manager.GetTypes(types);
  answer["types"] = TextArray(types);
}

void Drive::Launch(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.LaunchApplication();
}

void Drive::ClearNames(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.ClearSyncCategoryNames();
}

void Drive::Config(JsonFields& line, Json& answer) {
  const std::uint32_t id = line.Unsigned("id");
  const bool sets = line.Has("value");
  const std::string value = sets ? line.Text("value") : std::string();
  if (line.Failed()) return;
  PWString& entry = objects.config.String(id);
  if (sets) entry = value;
  answer["value"] = JsonText(entry.View());
}

void Drive::Limit(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  if (!line.Failed()) answer[kResult] = objects.manager.CategoryLimit(type.c_str());
}

void Drive::Shared(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  if (!line.Failed()) answer[kResult] = objects.manager.IsSharedCategory(type.c_str());
}

void Drive::Categories(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  if (line.Failed()) return;
  PWSourceCategoryVector categories;
  answer[kResult] = objects.manager.ListCategories(type.c_str(), categories);
  Json list = Json::array();
  for (std::uint32_t i = 0; i < categories.Count(); ++i) {
    const PWSourceCategory& found = *categories.At(i);
    list.push_back(Json{{"name", JsonText(found.Name().View())},
                        {kLocation, JsonText(found.Location.View())}});
  }
  answer["categories"] = std::move(list);
  const bool known = objects.applicationSource.FindTypeInfo(type.c_str()) != nullptr;
  if (known) listed[type] = categories;
}

void Drive::NewCategory(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  const std::string name = line.Text("name");
  const std::int32_t entry = line.Has("template") ? line.Signed("template") : -1;
  if (line.Failed()) return;
  if (entry >= 0) {
    objects.dialogs.ChooseFromLists([entry](const std::vector<std::string>& /*entries*/) {
      return static_cast<std::size_t>(entry);
    });
  }
  PWString location;
  answer[kResult] = objects.manager.NewCategory(name.c_str(), type.c_str(), &location);
  answer[kLocation] = JsonText(location.View());
  objects.dialogs.ChooseFromLists({});
}

void Drive::DeleteCategory(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  const std::string location = line.Text(kLocation);
  if (line.Failed()) return;
  answer[kResult] = objects.manager.DeleteCategory(type.c_str(), location.c_str());
}

void Drive::FieldNames(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  const std::string location = line.Text(kLocation);
  if (line.Failed()) return;
  PWStringVector names;
  answer[kResult] = objects.manager.CategoryFieldNames(type.c_str(), location.c_str(), names);
  answer["names"] = TextArray(names);
}

void Drive::ImportPath(JsonFields& line, Json& answer) {
  if (line.Has("path")) {
    const std::string path = line.Text("path");
    if (!line.Failed()) answer[kResult] = objects.importManager.SetImportPath(path.c_str());
    return;
  }
  const std::string type = line.Has(kType) ? line.Text(kType) : std::string();
  if (line.Failed()) return;
  PWString path;
  answer[kResult] = objects.importManager.GetImportPath(type.c_str(), path);
  answer["path"] = JsonText(path.View());
}

void Drive::PrepareImport(JsonFields& line, Json& answer) {
  const std::string type = line.Text(kType);
  PWStringVector names;
  for (const std::string& name : line.Texts("fields")) names.AppendText(name);
  if (line.Failed()) return;
  answer[kResult] = objects.importManager.PrepareImport(type.c_str(), names);
}

void Drive::Syncing(JsonFields& line, Json& /*answer*/) {
  const std::vector<std::string> chosen = line.Texts("types");
  const std::vector<std::string> names = TypeNames(objects.manager);
  for (const std::string& type : chosen) {
    const bool known = std::find(names.begin(), names.end(), type) != names.end();
    if (!known) line.Fail("unknown type \"" + CodePageToUtf8(type) + "\"");
  }
  if (line.Failed()) return;
  std::vector<TypeCategories> types;
  for (const std::string& name : names) {
    const bool takesPart = std::find(chosen.begin(), chosen.end(), name) != chosen.end();
    types.push_back({name, takesPart, listed[name]});
  }
  PairTypes(objects, types);
}

void Drive::DeleteAll(JsonFields& /*line*/, Json& answer) {
  answer[kResult] = objects.manager.DeleteAllData();
}

int RunDrive(const EngineObjects& objects, std::istream& in, std::ostream& out) {
  Drive drive(objects);
  std::string line;
  bool anyTooLong = false;
  // Nobody is to be served unheard: where the answers can't be written, the run ends.
  while (out) {
    const LineState state = ReadLine(in, kLongestLine, line);
    if (state == LineState::kNone) break;
    if (state == LineState::kTooLong) anyTooLong = true;
    out << (state == LineState::kTooLong ? JsonLine(ErrorAnswer("line too long"))
                                         : drive.Answer(line))
        << std::endl;
  }
  return drive.IsUnclean() || anyTooLong ? 1 : 0;
}

}  // namespace pw
