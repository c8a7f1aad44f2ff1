// SPDX-License-Identifier: BSD-3-Clause
// The pages that explain the program: they show every option, and what they tell people to type works as it stands.
#include "EncryptedShow.h"
#include "SampleFolder.h"
#include "app/CommandLine.h"
#include "app/HelpText.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace Tool;
using testing::HasSubstr;

namespace {

struct HelpPage {
  std::string Path;  // "strata export spl"
  const Command* Of;
};

void Collect(const Command& command, const std::string& path, std::vector<HelpPage>& pages) {
  pages.push_back({path, &command});
  for (const Command& sub : command.Commands()) Collect(sub, path + ' ' + sub.Name(), pages);
}

/// The long names of a command's options, and the names of its arguments.
std::vector<std::string> NamesIn(const Command& command) {
  std::vector<std::string> names = {"--help"};
  for (const Option& option : command.Options()) {
    std::istringstream list(option.Names + ',' + option.NegatedBy);
    for (std::string name; std::getline(list, name, ',');)
      if (name.starts_with("--") || (option.IsArgument() && !name.empty())) names.push_back(name);
  }
  return names;
}

/// The program's command line, built in this process.
class CommandLine {
 public:
  CommandLine() { Collect(m_Program, "strata", Pages); }
  std::vector<HelpPage> Pages;

 private:
  bool m_IsVerbose = false;
  const Command m_Program = DescribeProgram(m_IsVerbose);
};

std::string TextOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The indented lines below "Examples:".
std::vector<std::string> ExamplesIn(const std::string& help) {
  std::vector<std::string> examples;
  bool below = false;
  for (const std::string& line : LinesOf(help)) {
    const bool goes_on = below && !examples.empty() && examples.back().ends_with('\\');
    if (goes_on) examples.back() += '\n' + line;
    if (below && line.starts_with("  strata ")) examples.push_back(line.substr(2));
    below = line == "Examples:" || (below && line.starts_with("  "));
  }
  return examples;
}

/// The lines that run the program in a document's blocks of shell commands.
std::vector<std::string> ExamplesInDocument(const std::string& text) {
  std::vector<std::string> examples;
  bool in_block = false;
  for (const std::string& line : LinesOf(text)) {
    if (line.starts_with("```")) in_block = line == "```sh";
    if (in_block && line.starts_with("strata ")) examples.push_back(line);
  }
  return examples;
}

/// The lines of the manual page's section EXAMPLES, as they are typed.
std::vector<std::string> ExamplesInManual(const std::string& page) {
  std::vector<std::string> examples;
  bool in_block = false;
  for (std::string line : LinesOf(page.substr(page.find(".SH EXAMPLES")))) {
    if (line == ".EX" || line == ".EE") in_block = line == ".EX";
    for (size_t at = line.find("\\-"); at != std::string::npos; at = line.find("\\-", at)) line.erase(at, 1);
    if (in_block && line.starts_with("strata ")) examples.push_back(line);
  }
  return examples;
}

class Help : public SampleFolder {
 protected:
  void SetUp() override {
    SampleFolder::SetUp();
    const EncryptedShow show;
    std::filesystem::copy(show.Path(), m_Keys.Path("secret"), std::filesystem::copy_options::recursive);
    m_Keys.Write("kdm.xml", SigilTest::SoundMessage());
    m_Keys.Write("server.pem", SigilTest::Device().front().PEM());
    m_Keys.Write("server.key", testsupport::TestKeyPEM("device"));
    m_Keys.Write("signer.key", testsupport::TestKeyPEM("leaf"));
    std::string chain;
    for (const Sigil::Certificate& certificate : SigilTest::Signer().Chain) chain += certificate.PEM();
    m_Keys.Write("chain.pem", chain);
  }

  /// Runs a line of shell in the folder beside the show, or in the one of the encrypted show where it tells of key messages,
  /// the program being found as "strata".
  std::string Run(const std::string& line, int exit_code = 0) const {
    const std::string script = Beside("line.sh");
    const std::string folder = line.find("kdm") == line.npos ? Beside("") : m_Keys.Path("");
    std::ofstream(script) << "cd '" << folder << "' && export HOME=$PWD PATH='" << BUILT_DOCUMENTS << "':$PATH && "
                          << line << '\n';
    const int status = std::system(("bash '" + script + "' >'" + Beside("out") + "' 2>&1 </dev/null").c_str());
    const std::string out = TextOf(Beside("out"));
    EXPECT_EQ(WEXITSTATUS(status), exit_code) << line << '\n' << out;
    return out;
  }

  void RunAll(const std::vector<std::string>& lines) const {
    EXPECT_FALSE(lines.empty());
    for (const std::string& line : lines) Run(line);
  }

  testsupport::TemporaryFolder m_Keys;  // an encrypted show, its key message, who made it, and who opens it
};

TEST_F(Help, EveryPageNamesItsOptionsInLinesOfDecentLength) {
  for (const HelpPage& page : CommandLine().Pages) {
    const std::string help = Run(page.Path + " --help");
    EXPECT_THAT(help, HasSubstr(page.Of->Description())) << page.Path;
    for (const std::string& name : NamesIn(*page.Of)) EXPECT_THAT(help, HasSubstr(name)) << page.Path;
    for (const Command& sub : page.Of->Commands()) EXPECT_THAT(help, HasSubstr("  " + sub.Name()));
    for (const std::string& line : LinesOf(help)) EXPECT_LE(line.size(), 120U) << page.Path << ": " << line;
    EXPECT_FALSE(ExamplesIn(help).empty()) << page.Path << " shows no example";
  }
}

TEST_F(Help, ExamplesOfEveryPageWork) {
  for (const HelpPage& page : CommandLine().Pages) RunAll(ExamplesIn(page.Of->Footer()));
}

TEST_F(Help, ExamplesOfTheManualWork) {
  RunAll(ExamplesInManual(TextOf(BUILT_DOCUMENTS "/strata.1")));
}

TEST_F(Help, ExamplesOfTheDocumentsWork) {
  std::vector<std::string> examples = ExamplesInDocument(TextOf(DOCUMENTS "/README.md"));
  for (const auto& entry : std::filesystem::directory_iterator(DOCUMENTS "/docs"))
    if (entry.path().extension() == ".md")
      for (const std::string& line : ExamplesInDocument(TextOf(entry.path()))) examples.push_back(line);
  RunAll(examples);
}

TEST_F(Help, ManualIsCleanRoffAndHasEveryCommandAndOption) {
  EXPECT_EQ(Run("groff -man -ww -b -z -Tutf8 " BUILT_DOCUMENTS "/strata.1"), "");
  const std::string manual = Run("groff -man -Tascii -P-cbou -rLL=300n " BUILT_DOCUMENTS "/strata.1");
  for (const HelpPage& page : CommandLine().Pages) {
    EXPECT_THAT(manual, HasSubstr(page.Path));
    for (const std::string& name : NamesIn(*page.Of)) EXPECT_THAT(manual, HasSubstr(name)) << page.Path;
  }
}

TEST_F(Help, CompletionOffersEveryCommandAndOption) {
  const std::string complete = "source " BUILT_DOCUMENTS
                               "/strata.bash; COMP_CWORD=$((${#COMP_WORDS[@]}-1)); _strata; "
                               "printf '%s\\n' \"${COMPREPLY[@]}\"";
  for (const HelpPage& page : CommandLine().Pages) {
    const std::string options = '\n' + Run("COMP_WORDS=(" + page.Path + " --); " + complete);
    for (const std::string& name : NamesIn(*page.Of)) {
      const bool is_option = name.starts_with("--");
      EXPECT_TRUE(!is_option || options.find('\n' + name + '\n') != options.npos) << page.Path << ' ' << name;
    }
    const std::string names = '\n' + Run("COMP_WORDS=(" + page.Path + " ''); " + complete);
    for (const Command& sub : page.Of->Commands()) EXPECT_THAT(names, HasSubstr('\n' + sub.Name() + '\n')) << page.Path;
  }
  EXPECT_EQ(Run("COMP_WORDS=(strata ch); " + complete), "check\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata check sho); " + complete), "show\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata check x --store sho); " + complete), "show\n");
  EXPECT_EQ(Run("COMP_WORDS=(strata frame show --white d); " + complete), "dci\nd65\n");
}

TEST(HelpText, TextIsBrokenAtBlanks) {
  EXPECT_EQ(BreakIntoLines("one two three", 7, "> "), "one two\n> three");
  EXPECT_EQ(BreakIntoLines("one two three", 100, "> "), "one two three");
  EXPECT_EQ(BreakIntoLines("overlong word", 4, ""), "overlong\nword");
  EXPECT_EQ(BreakIntoLines("", 4, ""), "");
}

}  // namespace
