#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/process.h"
#include "tests/platform/temp_folder.h"

// What the shells offer and what the man page tells, against what the program's own help lists.
namespace pw {
namespace {

const std::string kSource = SOURCE_FOLDER;
const std::string kBashFile = kSource + "/completions/pairwise.bash";

std::string TextOf(const std::string& file) {
  std::ifstream in(file);
  std::ostringstream text;
  text << in.rdbuf();
  EXPECT_FALSE(text.str().empty()) << file;
  return text.str();
}

// What is in between; empty if there is no such beginning.
std::string Between(const std::string& text, const std::string& begin, const std::string& end) {
  const std::size_t at = text.find(begin);
  if (at == std::string::npos) return "";
  const std::size_t from = at + begin.size();
  return text.substr(from, text.find(end, from) - from);
}

std::set<std::string> WordsOf(std::string text) {
  for (char& c : text) {
    const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-';
    if (!isLetter) c = ' ';
  }
  std::istringstream in(text);
  std::set<std::string> words;
  for (std::string word; in >> word;) words.insert(word);
  return words;
}

std::set<std::string> OptionsAmong(const std::set<std::string>& words) {
  std::set<std::string> options;
  for (const std::string& word : words) {
    if (word.size() > 1 && word[0] == '-' && word != "-h" && word != "--help") options.insert(word);
  }
  return options;
}

// The first words of the lines below a heading of a help text.
std::vector<std::string> EntriesOf(const std::string& help, const std::string& heading) {
  std::istringstream lines(Between(help, "\n" + heading + ":\n", "\n\n"));
  std::vector<std::string> entries;
  for (std::string line; std::getline(lines, line);) {
    if (line.size() < 3 || line[2] == ' ') continue;
    entries.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return entries;
}

std::set<std::string> OptionsOf(const std::string& command) {
  std::string all;
  const auto help = RunPairwise({command, "--help"});
  for (const std::string& entry : EntriesOf(help.out, "Options")) all += entry + " ";
  return OptionsAmong(WordsOf(all));
}

// As the man page's source has an option: "--data" is "Fl -data".
bool TellsOf(const std::string& page, const std::string& option) {
  const std::string flag = "Fl " + option.substr(1);
  return page.find(flag + "\n") != std::string::npos || page.find(flag + " ") != std::string::npos;
}

TEST(CompletionTest, AllKnowTheCommandsAndTheirOptions) {
  const auto commands = EntriesOf(RunPairwise({"--help"}).out, "Subcommands");
  EXPECT_GE(commands.size(), 13U);
  const std::string bash = TextOf(kBashFile);
  const std::string zsh = TextOf(kSource + "/completions/_pairwise");
  const std::string page = TextOf(kSource + "/docs/pairwise.1");
  const auto ofBash = WordsOf(Between(bash, "_pairwise_commands='", "'"));
  const std::string listOfZsh = Between(zsh, "commands=(", "\n  )");
  for (const std::string& command : commands) {
    SCOPED_TRACE(command);
    EXPECT_TRUE(ofBash.contains(command));
    EXPECT_NE(listOfZsh.find("'" + command + ":"), std::string::npos);
    EXPECT_NE(page.find("\n.Cm " + command + "\n"), std::string::npos) << "in the synopsis";

    const std::string described = Between(page, "\n.Ss " + command + "\n", "\n.S");
    EXPECT_FALSE(described.empty());
    const auto options = OptionsOf(command);
    const std::string start = "\n    " + command + ")";
    EXPECT_EQ(OptionsAmong(WordsOf(Between(bash, start, ";;"))), options);
    EXPECT_EQ(OptionsAmong(WordsOf(Between(zsh, start, ";;"))), options);
    for (const std::string& option : options) EXPECT_TRUE(TellsOf(described, option)) << option;
  }
}

TEST(CompletionTest, BashOffersWhatFits) {
  const std::string functions = "set -e; source \"" + kBashFile + "\"; ";
  const auto offered = [&](const std::string& words) {
    return WordsOf(OutputOf("bash -c '" + functions + "COMP_WORDS=(pairwise " + words +
                            "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _pairwise; "
                            "echo \"${COMPREPLY[@]}\"'"));
  };
  using Words = std::set<std::string>;
  EXPECT_EQ(offered("exp"), Words{"export"});
  EXPECT_EQ(offered("-p somewhere show cal"), Words{"calendar"});
  EXPECT_EQ(offered("export contact --format v"), Words{"vcf"});
  EXPECT_EQ(offered("import contact --format r"), Words{});
  EXPECT_EQ(offered("init --product o"), Words{"orb"});
  EXPECT_EQ(offered("restore --k"), Words{"--keep"});
  EXPECT_EQ(offered("remove \"\""), Words{"contact"});
  EXPECT_EQ(offered("new t"), Words{"todo"}) << "clocks can't be made";
  EXPECT_EQ(offered("wipe contact t"), Words{"todo"}) << "nor emptied";
}

// The shell hands over what was typed, before it has expanded anything.
TEST(CompletionTest, BashFindsTheBackupsOfAnyProfile) {
  const TempFolder folder;
  for (const char* profile : {"organiser", "my own", "."}) {
    folder.Put(std::string(profile) + "/backups/2026-11-25T21-49-01/files.txt", "");
  }
  const std::string home = folder.Path().string();
  const auto offered = [&](const std::string& words) {
    folder.Put("try.bash", "source '" + kBashFile + "'\nCOMP_WORDS=(pairwise " + words +
                               ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_pairwise\n"
                               "echo \"${COMPREPLY[@]}\"\n");
    return OutputOf("HOME='" + home + "' PAIRWISE_PROFILE='" + home + "/organiser' bash '" + home +
                    "/try.bash'");
  };
  const std::string backup = "2026-11-25T21-49-01\n";
  for (const char* words :
       {"restore ''", "-p '~/organiser' restore ''", "restore --profile '~/organiser' 2026",
        "-p '~' restore ''", "-p '~/my\\ own' restore ''", "-p '~/\"my own\"' restore ''"}) {
    EXPECT_EQ(offered(words), backup) << words;
  }
  EXPECT_EQ(offered("-p '~/nowhere' restore ''"), "\n");
  EXPECT_EQ(offered("-p '~;touch>$HOME/made/' restore ''"), "\n");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "made")) << "nothing typed is run";
}

}  // namespace
}  // namespace pw
