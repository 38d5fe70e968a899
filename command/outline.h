/// \file
/// What a program takes, as plain data: for its manual pages and for the completion of its command line in a shell.
#pragma once

#include <string>
#include <vector>

namespace dtsdb::tools {

/// An option or argument.
struct ParameterOutline {
  std::vector<std::string> names;    ///< of an option, such as "-o" and "--output"; of an argument its one name
  std::string value;                 ///< how help shows its value; empty for an option without one
  std::vector<std::string> choices;  ///< the values, where help lists all of them
  std::string what;                  ///< one sentence without a full stop
  bool isOption = false;
  bool isRequired = false;
  bool isList = false;  ///< it takes several values
};

/// True for an option of a program that may stand behind its subcommands too.
inline bool IsShared(const ParameterOutline& parameter) { return parameter.isOption && !parameter.value.empty(); }

/// A program or a subcommand.
struct CommandOutline {
  std::string name;  ///< of a subcommand with those above it, such as "dtsdb rtdb ls"
  std::string purpose;
  std::string footer;  ///< what help prints behind all else
  std::vector<ParameterOutline> parameters;
  std::vector<CommandOutline> commands;
};

}  // namespace dtsdb::tools
