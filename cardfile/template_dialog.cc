#include "cardfile/template_dialog.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/whole_file.h"
#include "plugin/string_table.h"

namespace cardfile = pw::cardfile;

namespace {

constexpr const char* kCaption = "Select Cardfile Template";
constexpr std::uint64_t kLargestList = 16 << 20;

// String 140 says where the name goes by "%1".
std::string NewCardfileLine(const std::string& fileName) {
  std::string line = LoadString(strings::kNewCardfile).Str();
  const std::string place = "%1";
  const std::size_t at = line.find(place);
  return at == std::string::npos ? line : line.replace(at, place.size(), fileName);
}

}  // namespace

WMTemplatePage::WMTemplatePage(const std::string& fileName, std::string_view list)
    : templates(cardfile::ReadTemplates(list)) {
  std::vector<std::string> names;
  for (const cardfile::CardTemplate& each : templates) names.emplace_back(each.name);
  if (!names.empty()) {
    names.front() = FormatString(strings::kDefaultTemplate, names.front().c_str());
  }
  Add(kNewCardfile, pw::ControlKind::kLabel, NewCardfileLine(fileName));
  Add(kTemplates, pw::ControlKind::kList, "");
  if (!names.empty()) Control(kTemplates)->selected = 0;
  Control(kTemplates)->items = std::move(names);
  Add(kFieldsLabel, pw::ControlKind::kLabel, "Field Names:");
  Add(kFields, pw::ControlKind::kList, "");
  ShowFields();
}

std::string WMTemplatePage::Caption() {
  return kCaption;
}

void WMTemplatePage::Press(std::int32_t control) {
  if (control == kTemplates) ShowFields();
}

void WMTemplatePage::ShowFields() {
  Control(kFields)->items = cardfile::FieldsOf(ChosenFields());
}

std::string_view WMTemplatePage::ChosenFields() {
  const std::optional<std::size_t> chosen = Control(kTemplates)->selected;
  return chosen ? templates[*chosen].fields : std::string_view();
}

std::optional<std::string> ChooseTemplate(pw::WindowId parent, const std::string& fileName,
                                          const std::string& listPath) {
  const std::string list = pw::ReadWholeFile(listPath, kLargestList).value_or("");
  if (list.empty()) return std::nullopt;
  auto page = std::make_unique<WMTemplatePage>(fileName, list);
  WMTemplatePage& shown = *page;
  CPropertySheet sheet(kCaption);
  sheet.AddPage(std::move(page));
  if (sheet.DoModal(parent) != pw::SheetAnswer::kOk) return std::nullopt;
  return std::string(shown.ChosenFields());
}
