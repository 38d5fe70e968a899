// The scripts by which shells complete the command line, run by the shells; and the manual pages, read by mandoc.

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "command/commands.h"
#include "command/man_page.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools {
namespace {

using test::CommandResult;
using test::Workplace;

using Words = std::set<std::string>;

/// The first word of each line.
Words FirstWords(const std::string& text) {
  Words words;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::string word = line.substr(0, line.find_first_of("\t:"));
    if (!word.empty()) words.insert(word);
  }
  return words;
}

/// A place with the script for a shell.
class CompletedShell {
 public:
  /// `option` keeps it from reading the user's settings.
  CompletedShell(const char* shell, const char* option) : m_shell(shell), m_option(option) {
    const CommandResult script = m_here.Run(QStringList{QStringLiteral("completion"), QString::fromUtf8(shell)});
    EXPECT_EQ(script.code, 0);
    m_here.Write("script", script.out);
    m_here.Write("grid.obj", "");
  }

  /// What the shell prints when it runs `lines` behind the script, by first words.
  Words Printed(const std::string& lines) const {
    m_here.Write("lines", "source ./script\n" + lines);
    const CommandResult result =
        m_here.RunOther(QString::fromUtf8(m_shell), {QString::fromUtf8(m_option), QStringLiteral("./lines")});
    EXPECT_EQ(result.code, 0) << m_shell << ": " << result.err;
    EXPECT_EQ(result.err, "") << m_shell;
    return FirstWords(result.out);
  }

 private:
  const char* m_shell;
  const char* m_option;
  Workplace m_here;
};

/// What bash offers behind `words`, the last of which is still being written.
Words BashOffers(const CompletedShell& bash, const std::string& words) {
  return bash.Printed("COMP_WORDS=(" + words +
                      ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_dtsdb\n"
                      "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
}

TEST(Completion, OfBashOffersCommandsOptionsAndTheirValues) {
  const CompletedShell bash("bash", "--norc");
  EXPECT_EQ(BashOffers(bash, "dtsdb sc"), Words{"screen"});
  EXPECT_EQ(BashOffers(bash, "dtsdb rtdb ''"), (Words{"ls", "show", "put", "check", "prune", "backup", "restore"}));
  EXPECT_EQ(BashOffers(bash, "dtsdb rtdb show --fo"), Words{"--format"});
  EXPECT_EQ(BashOffers(bash, "dtsdb validate --format ''"), (Words{"text", "json", "csv"}));
  EXPECT_EQ(BashOffers(bash, "dtsdb validate m --format = j"), Words{"json"});
  EXPECT_EQ(BashOffers(bash, "dtsdb completion ''"), (Words{"bash", "zsh", "fish"}));
}

TEST(Completion, OfBashOffersFilesForModelsAndOutputs) {
  const CompletedShell bash("bash", "--norc");
  EXPECT_EQ(BashOffers(bash, "dtsdb validate gr"), Words{"grid.obj"});
  EXPECT_EQ(BashOffers(bash, "dtsdb validate grid.obj -o gr"), Words{"grid.obj"});
  EXPECT_EQ(BashOffers(bash, "dtsdb topology m --station gr"), Words{});
}

TEST(Completion, OfFishOffersCommandsOptionsAndTheirValues) {
  const CompletedShell fish("fish", "--no-config");
  EXPECT_EQ(fish.Printed("complete -C 'dtsdb sc'"), Words{"screen"});
  EXPECT_EQ(fish.Printed("complete -C 'dtsdb rtdb '"),
            (Words{"ls", "show", "put", "check", "prune", "backup", "restore"}));
  EXPECT_EQ(fish.Printed("complete -C 'dtsdb rtdb show --fo'"), Words{"--format"});
  EXPECT_EQ(fish.Printed("complete -C 'dtsdb validate --format '"), (Words{"text", "json", "csv"}));
  EXPECT_EQ(fish.Printed("complete -C 'dtsdb validate gr'"), Words{"grid.obj"});
}

// zsh completes only at a terminal: its own functions are replaced by some that print what they get.
TEST(Completion, OfZshDescribesCommandsAndOptions) {
  const CompletedShell zsh("zsh", "-f");
  const std::string stubs =
      "_describe() { print -rl -- ${(P)4} }\n"
      "_arguments() { state=$wanted; for one in $@; do print -r -- ${one#\\(*\\)}; done }\n";
  const Words commands = zsh.Printed(stubs + "wanted=command\n_dtsdb | grep '^rtdb\\|^switch'\n");
  EXPECT_EQ(commands, (Words{"rtdb", "switch"}));
  const Words options = zsh.Printed(stubs + "wanted=rest words=(validate)\n_dtsdb | grep -o '^--all\\|^--format'\n");
  EXPECT_EQ(options, (Words{"--all", "--format"}));
}

TEST(Completion, RefusesAnotherShell) {
  const Workplace here;
  const CommandResult result = here.Run("completion tcsh");
  EXPECT_EQ(result.code, 2);
  EXPECT_TRUE(test::Contains(result.err, "tcsh")) << result.err;
}

void ExpectReadByMandoc(const Workplace& here, const CommandOutline& command, const CommandOutline& program) {
  here.Write(ManPageFile(command), ManPage(command, program, "dtsdb 1.2.3", "2026-11-22"));
  const QStringList lint{QStringLiteral("-Tlint"), QStringLiteral("-Wwarning"),
                         QString::fromStdString(ManPageFile(command))};
  const CommandResult result = here.RunOther(QStringLiteral("mandoc"), lint);
  EXPECT_EQ(result.code, 0) << result.out << result.err;
  EXPECT_EQ(result.out, "");
  for (const CommandOutline& other : command.commands) ExpectReadByMandoc(here, other, program);
}

TEST(ManPages, OfAllCommandsAreReadWithoutAWarning) {
  const Workplace here;
  const CommandOutline program = OutlineOfProgram();
  ExpectReadByMandoc(here, program, program);
  EXPECT_TRUE(here.Exists("dtsdb.1"));
  EXPECT_TRUE(here.Exists("dtsdb-rtdb-show.1"));
}

TEST(ManPages, ShowWhatAParameterIsAndWhatACommandEndsWith) {
  CommandOutline command{"tool do", "Do it", "It is done.\n\nExamples:\n  tool do it\n\nExit codes: 0 done.", {}, {}};
  command.parameters.push_back({{"-o", "--out"}, "FILE", {}, "Where to", true, false, false});
  command.parameters.push_back({{"WHAT"}, "", {}, ".hidden files too", false, true, true});
  const std::string page = ManPage(command, {"tool", "Tools", "", {}, {}}, "tool 1", "2026-11-22");
  EXPECT_EQ(page,
            ".TH TOOL-DO 1 2026-11-22 \"tool 1\"\n.SH NAME\ntool\\-do \\- Do it\n"
            ".SH SYNOPSIS\n\\fBtool do\\fR [\\fIOPTIONS\\fR] \\fIWHAT\\fR ...\n"
            ".SH DESCRIPTION\nDo it.\n.PP\nIt is done.\n"
            ".SH OPTIONS\n.TP\n\\fIWHAT\\fR\n\\&.hidden files too.\n"
            ".TP\n\\fB\\-o\\fR, \\fB\\-\\-out\\fR \\fIFILE\\fR\nWhere to.\n"
            ".SH EXAMPLES\n.EX\ntool do it\n.EE\n.SH EXIT STATUS\n0 done.\n.SH SEE ALSO\n.BR tool (1)\n");
}

}  // namespace
}  // namespace dtsdb::tools
