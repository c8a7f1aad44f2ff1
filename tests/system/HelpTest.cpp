// SPDX-License-Identifier: BSD-3-Clause
// The pages that explain the program: they show every option, and what they tell people to type works as it stands.
#include "SampleFolder.h"
#include "app/CommandLine.h"
#include "app/HelpFormat.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

using testing::HasSubstr;

namespace {

struct Command {
  std::string Path;  // "strata export spl"
  const CLI::App* App;
};

void collect(const CLI::App& app, const std::string& path, std::vector<Command>& commands) {
  commands.push_back({path, &app});
  for (const CLI::App* sub : SubcommandsOf(app)) collect(*sub, path + ' ' + sub->get_name(), commands);
}

/// The program's command line, built in this process.
class CommandLine {
 public:
  CommandLine() {
    DescribeCommandLine(m_App, m_IsVerbose, m_ExitCode);
    collect(m_App, "strata", Commands);
  }
  std::vector<Command> Commands;

 private:
  CLI::App m_App;
  bool m_IsVerbose = false;
  int m_ExitCode = 0;
};

std::string text_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The indented lines below "Examples:".
std::vector<std::string> examples_in(const std::string& help) {
  std::vector<std::string> examples;
  bool below = false;
  for (const std::string& line : lines_of(help)) {
    if (below && line.starts_with("  strata ")) examples.push_back(line.substr(2));
    below = line == "Examples:" || (below && line.starts_with("  "));
  }
  return examples;
}

/// The lines that run the program in a document's blocks of shell commands.
std::vector<std::string> examples_in_document(const std::string& text) {
  std::vector<std::string> examples;
  bool in_block = false;
  for (const std::string& line : lines_of(text)) {
    if (line.starts_with("```")) in_block = line == "```sh";
    if (in_block && line.starts_with("strata ")) examples.push_back(line);
  }
  return examples;
}

/// The lines of the manual page's section EXAMPLES, as they are typed.
std::vector<std::string> examples_in_manual(const std::string& page) {
  std::vector<std::string> examples;
  bool in_block = false;
  for (std::string line : lines_of(page.substr(page.find(".SH EXAMPLES")))) {
    if (line == ".EX" || line == ".EE") in_block = line == ".EX";
    for (size_t at = line.find("\\-"); at != std::string::npos; at = line.find("\\-", at)) line.erase(at, 1);
    if (in_block && line.starts_with("strata ")) examples.push_back(line);
  }
  return examples;
}

class Help : public SampleFolder {
 protected:
  /// Runs a line of shell in the folder beside the show, the program being found as "strata".
  std::string Run(const std::string& line, int exit_code = 0) const {
    const std::string script = Beside("line.sh");
    std::ofstream(script) << "cd '" << Beside("") << "' && export HOME=$PWD PATH='" << BUILT_DOCUMENTS << "':$PATH && "
                          << line << '\n';
    const int status = std::system(("bash '" + script + "' >'" + Beside("out") + "' 2>&1 </dev/null").c_str());
    const std::string out = text_of(Beside("out"));
    EXPECT_EQ(WEXITSTATUS(status), exit_code) << line << '\n' << out;
    return out;
  }

  void RunAll(const std::vector<std::string>& lines) const {
    EXPECT_FALSE(lines.empty());
    for (const std::string& line : lines) Run(line);
  }
};

TEST_F(Help, EveryPageNamesItsOptionsInLinesOfDecentLength) {
  for (const Command& command : CommandLine().Commands) {
    const std::string help = Run(command.Path + " --help");
    EXPECT_THAT(help, HasSubstr(command.App->get_description())) << command.Path;
    for (const CLI::Option* option : command.App->get_options()) EXPECT_THAT(help, HasSubstr(option->get_name()));
    for (const CLI::App* sub : SubcommandsOf(*command.App)) EXPECT_THAT(help, HasSubstr("  " + sub->get_name()));
    for (const std::string& line : lines_of(help)) EXPECT_LE(line.size(), 120U) << command.Path << ": " << line;
    EXPECT_FALSE(examples_in(help).empty()) << command.Path << " shows no example";
  }
}

TEST_F(Help, ExamplesOfEveryPageWork) {
  for (const Command& command : CommandLine().Commands) RunAll(examples_in(command.App->get_footer()));
}

TEST_F(Help, ExamplesOfTheManualWork) {
  RunAll(examples_in_manual(text_of(BUILT_DOCUMENTS "/strata.1")));
}

TEST_F(Help, ExamplesOfTheDocumentsWork) {
  std::vector<std::string> examples = examples_in_document(text_of(DOCUMENTS "/README.md"));
  for (const auto& entry : std::filesystem::directory_iterator(DOCUMENTS "/docs"))
    if (entry.path().extension() == ".md")
      for (const std::string& line : examples_in_document(text_of(entry.path()))) examples.push_back(line);
  RunAll(examples);
}

TEST_F(Help, ManualIsCleanRoffAndHasEveryCommandAndOption) {
  EXPECT_EQ(Run("groff -man -ww -b -z -Tutf8 " BUILT_DOCUMENTS "/strata.1"), "");
  const std::string page = Run("groff -man -Tascii -P-cbou -rLL=300n " BUILT_DOCUMENTS "/strata.1");
  for (const Command& command : CommandLine().Commands) {
    EXPECT_THAT(page, HasSubstr(command.Path));
    for (const CLI::Option* option : command.App->get_options())
      for (const std::string& name : option->get_lnames()) EXPECT_THAT(page, HasSubstr("--" + name)) << command.Path;
  }
}

TEST_F(Help, CompletionOffersEveryCommandAndOption) {
  const std::string complete = "source " BUILT_DOCUMENTS
                               "/strata.bash; COMP_CWORD=$((${#COMP_WORDS[@]}-1)); _strata; "
                               "printf '%s\\n' \"${COMPREPLY[@]}\"";
  for (const Command& command : CommandLine().Commands) {
    const std::string options = '\n' + Run("COMP_WORDS=(" + command.Path + " --); " + complete);
    for (const CLI::Option* option : command.App->get_options())
      for (const std::string& name : option->get_lnames())
        EXPECT_THAT(options, HasSubstr("\n--" + name + '\n')) << command.Path;
    const std::string names = '\n' + Run("COMP_WORDS=(" + command.Path + " ''); " + complete);
    for (const CLI::App* sub : SubcommandsOf(*command.App))
      EXPECT_THAT(names, HasSubstr('\n' + sub->get_name() + '\n')) << command.Path;
  }
  EXPECT_EQ(Run("COMP_WORDS=(strata ch); " + complete), "check\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata check sho); " + complete), "show\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata check x --store sho); " + complete), "show\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata frame show --white d); " + complete), "dci\nd65\n");
}

TEST(HelpFormat, TextIsBrokenAtBlanks) {
  EXPECT_EQ(WrapText("one two three", 7, "> "), "one two\n> three");
  EXPECT_EQ(WrapText("one two three", 100, "> "), "one two three");
  EXPECT_EQ(WrapText("overlong word", 4, ""), "overlong\nword");
  EXPECT_EQ(WrapText("", 4, ""), "");
}

}  // namespace
