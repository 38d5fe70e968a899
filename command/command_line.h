/// \file
/// What a subcommand takes from the command line.
///
/// The library that reads the command line is compiled in command_line.cpp alone: its headers cost each file that
/// includes them several seconds.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "command/outline.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace dtsdb::tools {

/// An option or argument: how help shows it and what is asked of its value. A handle; the command line owns it.
class Parameter {
 public:
  explicit Parameter(CLI::Option& option) : m_option(&option) {}

  Parameter Required() const;
  /// Help shows `value` in the place of what the user gives.
  Parameter Shown(const std::string& value) const;
  /// Only numbers from `least` to `most` are taken.
  Parameter Within(int least, int most) const;
  /// The two aren't given together.
  Parameter Excludes(const Parameter& other) const;
  /// `check` returns what is wrong with a value, or nothing.
  Parameter Checked(const std::function<std::string(const std::string&)>& check) const;

 private:
  CLI::Option* m_option;
};

/// The options and arguments of a command, and its subcommands. A handle; values are read into what the caller names,
/// which must live until the command line has been read.
class CommandLine {
 public:
  explicit CommandLine(CLI::App& app) : m_app(&app) {}

  /// An option (its name begins with -) or argument that takes a value, or as many as `value` is a list for.
  Parameter Add(const std::string& name, std::string& value, const std::string& what);
  Parameter Add(const std::string& name, int& value, const std::string& what);
  Parameter Add(const std::string& name, std::optional<int>& value, const std::string& what);
  Parameter Add(const std::string& name, unsigned long long& value, const std::string& what);
  Parameter Add(const std::string& name, float& value, const std::string& what);
  Parameter Add(const std::string& name, std::vector<std::string>& value, const std::string& what);
  /// One whose value is handed to `take`.
  Parameter Add(const std::string& name, const std::function<void(const std::string&)>& take, const std::string& what);
  /// One that takes one of `choices`, which help shows.
  Parameter AddChoice(const std::string& name, const std::function<void(const std::string&)>& take,
                      const std::vector<std::string>& choices, const std::string& what);
  /// An option without a value; `value` becomes true when it is given.
  void AddFlag(const std::string& name, bool& value, const std::string& what);
  /// What help prints behind all else.
  void Footer(const std::string& text);
  void AddToFooter(const std::string& text);

  /// Adds a subcommand; `chosen` is called when the command line names it.
  CommandLine AddSubcommand(const std::string& name, const std::string& purpose, const std::function<void()>& chosen);
  /// One of the subcommands must be given.
  void RequireSubcommand();

 private:
  CLI::App* m_app;
};

/// The whole command line of a program. Its purpose and those of its subcommands are phrases without a full stop.
class Program {
 public:
  Program(const std::string& name, const std::string& purpose, const std::string& footer, const std::string& version);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program();

  /// Where its subcommands are added, and before them the options of the program as a whole, which may stand before or
  /// behind a subcommand.
  CommandLine Commands() { return CommandLine(*m_app); }
  std::string Help() const;
  CommandOutline Outline() const;
  /// Reads the words that the program was started with. Help and version are printed. Throws Failure where the words
  /// can't be understood; an unknown subcommand gets the nearest known one.
  void Read(int argc, const char* const* argv);
  /// What option `name` of the subcommand got; empty without it.
  std::string ValueOf(const std::string& name) const;

 private:
  std::string m_purpose;
  std::unique_ptr<CLI::App> m_app;
};

}  // namespace dtsdb::tools
