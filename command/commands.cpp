#include <unistd.h>

#include <QString>
#include <QStringList>
#include <algorithm>
#include <map>
#include <new>
#include <optional>

#include "command/commands.h"
#include "command/log_file.h"
#include "formats/failure.h"
#include "formats/messages.h"
#include "formats/text_layout.h"
#include "model/text.h"
#include "model/threads.h"

namespace dtsdb::tools {
namespace {

constexpr const char* kPurpose =
    "the network model of a power-system control centre: validation, topology, breaker flows, conversion";

constexpr const char* kProgramFooter =
    "A MODEL is an object file, a folder of text tables (one CSV file a table), rtdb:NAME, the realtime database\n"
    "NAME.fdb, an XIIDM file, or CGMES profiles: a folder, a file, a zip archive, or several as cgmes:PATH,PATH.\n"
    "Results go to the standard output, messages to the standard error.\n"
    "Exit codes: 0 good, 1 the model has faults or the models differ, 2 wrong usage, 3 a file can't be read or "
    "written.\n"
    "'dtsdb COMMAND --help' prints more about a command.";

void AddCommands(CommandLine commands, Action& action) {
  for (const auto add : {AddValidate, AddTopology, AddSwitch, AddScreen, AddDraw, AddReport, AddServe, AddRun, AddFlow,
                         AddEdit, AddConvert, AddCheck, AddGenerate, AddInfo, AddDump, AddDiff, AddRtdb,
#ifdef DTSDB_WITH_RELAY
                         AddRelay,
#endif
                         AddCompletion}) {
    add(commands, action);
  }
}

constexpr const char* kEncodings = "gbk or utf-8";

/// The option --encoding of the program as a whole.
void AddEncodingOption(CommandLine& commands, std::string& encoding) {
  const auto check = [](const std::string& name) {
    return FindIdEncoding(name) ? "" : Quoted(name) + " is no encoding of identities; it is " + kEncodings;
  };
  commands.Add("--encoding", encoding, "What the bytes of identities mean (default: DTSDB_ENCODING, or else gbk)")
      .Checked(check)
      .Shown("gbk|utf-8");
}

/// Chooses the encoding of identities: `option`, or else that of the environment.
void UseEncoding(const std::string& option) {
  const std::string variable = qgetenv("DTSDB_ENCODING").toStdString();
  const std::string& name = option.empty() ? variable : option;
  if (name.empty()) return;
  const std::optional<IdEncoding> encoding = FindIdEncoding(name);
  if (!encoding) {
    throw Failure(kExitUsage, "DTSDB_ENCODING is " + Quoted(name) + ", no encoding of identities; it is " + kEncodings);
  }
  SetIdEncoding(*encoding);
}

/// The option --threads of the program as a whole.
void AddThreadsOption(CommandLine& commands, std::optional<int>& threads) {
  commands.Add("--threads", threads, "Threads for work on a whole model (default: DTSDB_THREADS, or else 1)")
      .Within(1, kMostThreads)
      .Shown("N");
}

/// Chooses the number of threads: `option`, or else that of the environment, which the library takes by itself.
void UseThreads(const std::optional<int>& option) {
  if (option) return SetThreadCount(*option);
  const QByteArray variable = qgetenv("DTSDB_THREADS");
  bool isNumber = false;
  const int count = variable.toInt(&isNumber);
  if (variable.isEmpty() || (isNumber && count >= 1 && count <= kMostThreads)) return;
  throw Failure(kExitUsage, "DTSDB_THREADS is " + Quoted(variable.toStdString()) + "; it must be a number from 1 to " +
                                std::to_string(kMostThreads));
}

/// The program with all that it takes.
class DtsdbProgram {
 public:
  DtsdbProgram() : m_program("dtsdb", kPurpose, kProgramFooter, "dtsdb " DTSDB_VERSION) {
    CommandLine commands = m_program.Commands();
    AddEncodingOption(commands, m_encoding);
    AddThreadsOption(commands, m_threads);
    AddCommands(commands, m_action);
  }

  std::string Help() const { return m_program.Help(); }
  CommandOutline Outline() const { return m_program.Outline(); }

  int Run(int argc, const char* const* argv) {
    m_program.Read(argc, argv);
    if (!m_action) return kExitGood;  // help or version
    UseEncoding(m_encoding);
    UseThreads(m_threads);
    LogFile log(m_program.ValueOf("--log"));
    const int result = m_action();
    log.Close();
    return result;
  }

 private:
  Program m_program;
  Action m_action;
  std::string m_encoding;
  std::optional<int> m_threads;
};

/// Writes what the library warns of like the command's own messages, a line each.
void WriteLibraryMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
  for (const QString& line : text.split(QLatin1Char('\n'))) {
    const QString words = line.trimmed();
    if (!words.isEmpty()) WriteMessage(words.toStdString());
  }
}

/// Refuses an empty path: a script whose variable is empty is to hear of it, not to lose its result.
Parameter RequirePath(const Parameter& parameter) {
  return parameter.Checked(
      [](const std::string& path) { return path.empty() ? "the path is empty; name an output" : ""; });
}

constexpr const char* kNoType = " ";  ///< in the help, in place of "TEXT REQUIRED"

/// An option or argument that is read into the name of a model.
Parameter AddModel(CommandLine& command, ModelName& model, const std::string& name, const std::string& what) {
  const auto read = [&model](const std::string& text) {
    const ImportOptions import = model.Import();  // the options may stand before the name
    model = ModelName(text);
    model.Import() = import;
  };
  return command.Add(name, read, what);
}

/// Runs a command and reports why it failed. Throws what there is no memory to report.
int RunReported(int argc, const char* const* argv) {
  qInstallMessageHandler(WriteLibraryMessage);
  try {
    DtsdbProgram program;
    if (argc <= 1) {
      WriteResult(Format::kText, program.Help());
      return kExitGood;
    }
    return program.Run(argc, argv);
  } catch (const Failure& failure) {
    WriteMessage(failure.what());
    return failure.Code();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    WriteMessage(std::string("ended unexpectedly: ") + error.what());
    return kExitFile;
  }
}

}  // namespace

Parameter AddArgument(CommandLine& command, const std::string& name, std::string& value, const std::string& what) {
  return command.Add(name, value, what).Shown(kNoType);
}

Parameter AddModelArgument(CommandLine& command, ModelName& model, const std::string& name, const std::string& what) {
  return AddModel(command, model, name, what).Shown(kNoType);
}

void AddDatabaseArgument(CommandLine& command, ModelName& database) {
  const auto read = [&database](const std::string& text) { database = ModelName::OfDatabase(text); };
  command.Add("NAME", read, "The realtime database").Shown(kNoType).Required();
}

void AddIdOption(CommandLine& command, std::string& id, const std::string& what) {
  command.Add("--id", id, what).Shown("ID");
}

void AddFormatOption(CommandLine& command, Format& format) {
  static const std::map<std::string, Format> formats = {
      {"text", Format::kText}, {"json", Format::kJson}, {"csv", Format::kCsv}};
  const auto choose = [&format](const std::string& name) { format = formats.at(name); };
  command.AddChoice("--format", choose, {"text", "json", "csv"},
                    "text for people (default), json or csv for programs, in UTF-8");
}

void AddLanguageOption(CommandLine& command, Language& language) {
  const auto choose = [&language](const std::string& name) {
    language = name == "zh" ? Language::kChinese : Language::kEnglish;
  };
  command.AddChoice("--lang", choose, {"en", "zh"}, "Findings in English or Chinese (default: as the locale)");
}

void AddSheetOption(CommandLine& command, std::string& sheet, const std::string& sheets) {
  command.Add("--sheet", sheet, "Only this part of the result: " + sheets).Shown("NAME");
}

void AddLogOption(CommandLine& command, const std::string& what) {
  const auto readLater = [](const std::string&) {};
  RequirePath(command.Add("--log", readLater, "Write a log to FILE: that of " + what).Shown("FILE"));
}

void AddExitCodes(CommandLine& command, const std::string& good, const std::string& faults) {
  const std::string second = faults.empty() ? "" : ", 1 " + faults;
  command.AddToFooter("\n\nExit codes: 0 " + good + second + ", 2 wrong usage, 3 a file can't be read or written.");
}

void AddPathOption(CommandLine& command, const std::string& name, std::string& path, const std::string& what) {
  RequirePath(command.Add(name, path, what).Shown("FILE"));
}

Parameter AddModelOption(CommandLine& command, const std::string& name, ModelName& output, const std::string& what) {
  return RequirePath(AddModel(command, output, name, what).Shown("OUT"));
}

Parameter AddOutputOption(CommandLine& command, ModelName& output, const std::string& what) {
  return AddModelOption(command, "-o,--output", output, what);
}

Parameter AddOutputArgument(CommandLine& command, ModelName& output, const std::string& what) {
  return RequirePath(AddModelArgument(command, output, "OUT", what));
}

CommandOutline OutlineOfProgram() { return DtsdbProgram().Outline(); }

int RunCommand(int argc, const char* const* argv) {
  try {
    return RunReported(argc, argv);
  } catch (const std::bad_alloc&) {  // all that it took has been given back
    ReportNoMemory();
    return kExitFile;
  }
}

void ReportNoMemory() {
  constexpr std::string_view kLine = "dtsdb: there is not enough memory\n";
  if (::write(STDERR_FILENO, kLine.data(), kLine.size()) < 0) return;  // nobody reads it
}

}  // namespace dtsdb::tools
