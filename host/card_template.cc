#include "host/card_template.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <system_error>

#include "base/codepage.h"
#include "base/text.h"
#include "cardfile/card_templates.h"
#include "host/native_file.h"
#include "host/outcome.h"
#include "host/text_table.h"

namespace pw {
namespace {

using Templates = std::vector<cardfile::CardTemplate>;

constexpr std::uintmax_t kLargestList = 16 << 20;

// Where it lies, as a private copy of the data folder has no folders below it.
std::string NativeListPath(EngineRun& run) {
  return run.NativePathOf(run.Objects().config.String(PWConfig::kInstallFolder).Str() +
                          "\\Data\\crdstyle.dat");
}

Failure WhyNone(EngineRun& run, const std::string& why) {
  return {NativeListPath(run) + ": " + why +
          " (entry 3 of the profile's [config] is the folder above Data); --field names fields "
          "without a template"};
}

std::string Shown(std::string_view name) {
  return OneLine(CodePageToUtf8(name));
}

std::string InQuotes(const Templates& templates) {
  std::string text;
  for (const cardfile::CardTemplate& each : templates) {
    text += (text.empty() ? "'" : ", '") + Shown(each.name) + "'";
  }
  return text;
}

std::optional<std::size_t> PlaceOf(const Templates& templates, const std::string& wanted) {
  const auto name = Utf8ToCodePage(wanted);
  const auto found = std::find_if(templates.begin(), templates.end(), [&](const auto& each) {
    return name && EqualIgnoringCase(each.name, *name);
  });
  if (found == templates.end()) return std::nullopt;
  return static_cast<std::size_t>(found - templates.begin());
}

// The number that a person typed, less one; nothing for what is none up to `most`.
std::optional<std::size_t> PlaceTyped(const std::string& text, std::size_t most) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size();
  if (!isNumber || number < 1 || number > most) return std::nullopt;
  return number - 1;
}

Outcome<std::size_t> Ask(const Console& console, const Templates& templates) {
  for (std::size_t i = 0; i < templates.size(); ++i) {
    console.messages << "  " << i + 1 << "  " << Shown(templates[i].name) << "\n";
  }
  const std::string most = std::to_string(templates.size());
  const auto answer = console.Ask("Which template (1 to " + most + ", Enter for the first)? ");
  if (answer && answer->empty()) return std::size_t{0};
  const auto place = PlaceTyped(answer.value_or(""), templates.size());
  if (place) return *place;
  return Failure{"'" + OneLine(answer.value_or("")) + "' is none of 1 to " + most +
                 "; nothing was made"};
}

Outcome<std::size_t> Choose(const Console& console, const Templates& templates,
                            const std::optional<std::string>& wanted) {
  if (!wanted) return Ask(console, templates);
  if (const auto place = PlaceOf(templates, *wanted)) return *place;
  return Failure{"there is no template '" + *wanted + "'; there is " + InQuotes(templates)};
}

}  // namespace

std::optional<int> ChooseCardTemplate(EngineRun& run, const Console& console,
                                      const std::optional<std::string>& wanted,
                                      CardTemplateChoice& chosen) {
  const auto list = ReadNativeFile(NativeListPath(run), kLargestList);
  if (!list) return console.Fail(WhyNone(run, "no templates can be read there"));
  const Templates templates = cardfile::ReadTemplates(*list);
  if (templates.empty()) return console.Fail(WhyNone(run, "it names no template"));
  if (!wanted && !console.isAsking) {
    return console.FailUsage("which template? Give one as --template NAME; there is " +
                             InQuotes(templates));
  }
  const auto place = Choose(console, templates, wanted);
  if (!place) return console.Fail(place.Why());
  chosen = {*place, cardfile::FieldsOf(templates[*place].fields)};
  return std::nullopt;
}

}  // namespace pw
