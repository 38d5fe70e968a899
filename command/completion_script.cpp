#include "command/completion_script.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <functional>
#include <iterator>

namespace dtsdb::tools {
namespace {

using Visit = std::function<void(const CommandOutline&)>;

/// Visits the program and all its subcommands.
void ForEachCommand(const CommandOutline& command, const Visit& visit) {
  visit(command);
  for (const CommandOutline& other : command.commands) ForEachCommand(other, visit);
}

std::string LastWord(const std::string& name) { return name.substr(name.find_last_of(' ') + 1); }

std::string Joined(const std::vector<std::string>& words, std::string_view between = " ") {
  return fmt::format("{}", fmt::join(words, between));
}

/// The names of the subcommands.
std::vector<std::string> CommandWords(const CommandOutline& command) {
  std::vector<std::string> words;
  for (const CommandOutline& other : command.commands) words.push_back(LastWord(other.name));
  return words;
}

/// The options of a program, or of a subcommand and those of the program that stand behind it too.
std::vector<ParameterOutline> OptionsOf(const CommandOutline& command, const CommandOutline& program) {
  std::vector<ParameterOutline> options;
  const auto isOption = [](const ParameterOutline& parameter) { return parameter.isOption; };
  std::copy_if(command.parameters.begin(), command.parameters.end(), std::back_inserter(options), isOption);
  if (command.name == program.name) return options;
  std::copy_if(program.parameters.begin(), program.parameters.end(), std::back_inserter(options), IsShared);
  return options;
}

/// Their names.
std::vector<std::string> OptionWords(const CommandOutline& command, const CommandOutline& program) {
  std::vector<std::string> words;
  for (const ParameterOutline& parameter : OptionsOf(command, program)) {
    words.insert(words.end(), parameter.names.begin(), parameter.names.end());
  }
  return words;
}

/// What the arguments may be, where help lists it.
std::vector<std::string> ArgumentWords(const CommandOutline& command) {
  std::vector<std::string> words;
  for (const ParameterOutline& parameter : command.parameters) {
    if (!parameter.isOption) words.insert(words.end(), parameter.choices.begin(), parameter.choices.end());
  }
  return words;
}

bool TakesFile(const ParameterOutline& parameter) {
  return parameter.value == "FILE" || parameter.value == "OUT" || parameter.value == "DIR";
}

/// `text` in single quotes, as all three shells read it.
std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
  return quoted + '\'';
}

// --- bash

/// The case of an option's value.
std::string BashValue(const CommandOutline& command, const ParameterOutline& option) {
  std::vector<std::string> patterns;
  for (const std::string& name : option.names) patterns.push_back(ShellQuoted(command.name + '|' + name));
  const std::string action = !option.choices.empty() ? "words=" + ShellQuoted(Joined(option.choices))
                             : TakesFile(option)     ? "files=1"
                                                     : "files=0";
  return fmt::format("    {}) {}; isValue=1 ;;\n", Joined(patterns, "|"), action);
}

// --- zsh

/// Text within an entry of _arguments.
std::string ZshText(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == ':' || c == '[' || c == ']' || c == '\\') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

std::string ZshAction(const ParameterOutline& parameter) {
  if (!parameter.choices.empty()) return '(' + Joined(parameter.choices) + ')';
  return !parameter.isOption || TakesFile(parameter) ? "_files" : " ";
}

/// An entry of _arguments for each name of a parameter.
std::vector<std::string> ZshEntries(const ParameterOutline& parameter) {
  if (!parameter.isOption) {
    return {
        fmt::format("{}:{}:{}", parameter.isList ? "*" : "", ZshText(parameter.names.front()), ZshAction(parameter))};
  }
  std::vector<std::string> entries;
  for (const std::string& name : parameter.names) {
    const bool isLong = name.starts_with("--");
    const bool hasValue = !parameter.value.empty();
    std::string one = fmt::format("({}){}{}[{}]", Joined(parameter.names), name,
                                  !hasValue ? ""
                                  : isLong  ? "="
                                            : "+",
                                  ZshText(parameter.what));
    if (hasValue) one += fmt::format(":{}:{}", ZshText(parameter.value), ZshAction(parameter));
    entries.push_back(one);
  }
  return entries;
}

std::string ZshFunction(const CommandOutline& command) {
  std::string name = '_' + command.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

std::string ZshArguments(const CommandOutline& command, const CommandOutline& program) {
  std::vector<ParameterOutline> parameters = OptionsOf(command, program);
  const auto isArgument = [](const ParameterOutline& parameter) { return !parameter.isOption; };
  std::copy_if(command.parameters.begin(), command.parameters.end(), std::back_inserter(parameters), isArgument);
  std::string text;
  for (const ParameterOutline& parameter : parameters) {
    for (const std::string& one : ZshEntries(parameter)) text += " \\\n    " + ShellQuoted(one);
  }
  return text;
}

std::string ZshDefinition(const CommandOutline& command, const CommandOutline& program) {
  std::string text = fmt::format("{}() {{\n", ZshFunction(command));
  const std::string arguments = ZshArguments(command, program);
  if (command.commands.empty()) return text + "  _arguments -s" + arguments + "\n}\n\n";
  text += "  local context state state_descr line\n  typeset -A opt_args\n  local -a commands=(\n";
  for (const CommandOutline& other : command.commands) {
    text += "    " + ShellQuoted(LastWord(other.name) + ':' + ZshText(other.purpose)) + '\n';
  }
  text += "  )\n  _arguments -s -C" + arguments + " \\\n    '1: :->command' '*:: :->rest'\n  case $state in\n";
  text += "    command) _describe -t commands command commands ;;\n    rest)\n      case $words[1] in\n";
  for (const CommandOutline& other : command.commands) {
    text += fmt::format("        {}) {} ;;\n", LastWord(other.name), ZshFunction(other));
  }
  return text + "      esac ;;\n  esac\n}\n\n";
}

// --- fish

/// The condition that the words so far name `command` and none of its subcommands.
std::string FishCondition(const CommandOutline& command, const CommandOutline& program) {
  std::vector<std::string> parts;
  std::string rest = command.name.substr(program.name.size());
  for (std::size_t begin = 0; (begin = rest.find_first_not_of(' ', begin)) != std::string::npos;) {
    const std::size_t end = std::min(rest.find(' ', begin), rest.size());
    parts.push_back("__fish_seen_subcommand_from " + rest.substr(begin, end - begin));
    begin = end;
  }
  if (!command.commands.empty()) {
    parts.push_back("not __fish_seen_subcommand_from " + Joined(CommandWords(command)));
  }
  return parts.empty() ? "true" : Joined(parts, "; and ");
}

std::string FishOption(const std::string& start, const ParameterOutline& option) {
  std::string text = start;
  for (const std::string& name : option.names) {
    text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  if (!option.choices.empty()) {
    text += " -x -a " + ShellQuoted(Joined(option.choices));
  } else if (!option.value.empty()) {
    text += TakesFile(option) ? " -r -F" : " -x";
  }
  return text + " -d " + ShellQuoted(option.what) + '\n';
}

std::string FishCommand(const CommandOutline& command, const CommandOutline& program) {
  const bool isProgram = command.name == program.name;
  const std::string start =
      fmt::format("complete -c {} -n {}", program.name, ShellQuoted(FishCondition(command, program)));
  std::string text;
  for (const CommandOutline& other : command.commands) {
    text += fmt::format("{} -f -a {} -d {}\n", start, LastWord(other.name), ShellQuoted(other.purpose));
  }
  const std::vector<std::string> words = ArgumentWords(command);
  if (!words.empty()) text += fmt::format("{} -f -a {}\n", start, ShellQuoted(Joined(words)));
  for (const ParameterOutline& parameter : command.parameters) {
    // The options of the program as a whole may stand anywhere.
    if (parameter.isOption) text += FishOption(isProgram ? "complete -c " + program.name : start, parameter);
  }
  return text;
}

}  // namespace

std::string BashCompletion(const CommandOutline& program) {
  std::string commands;
  std::string values;
  std::string words;
  ForEachCommand(program, [&](const CommandOutline& command) {
    if (command.name != program.name) commands += (commands.empty() ? "" : "|") + ShellQuoted(command.name);
    for (const ParameterOutline& parameter : command.parameters) {
      if (parameter.isOption && !parameter.value.empty()) values += BashValue(command, parameter);
    }
    std::vector<std::string> arguments = CommandWords(command);
    const std::vector<std::string> choices = ArgumentWords(command);
    arguments.insert(arguments.end(), choices.begin(), choices.end());
    words += fmt::format("    {}) words={} options={}; files={} ;;\n", ShellQuoted(command.name),
                         ShellQuoted(Joined(arguments)), ShellQuoted(Joined(OptionWords(command, program))),
                         arguments.empty() ? 1 : 0);
  });
  return fmt::format(R"(# Completion of {0} for bash.
_{0}() {{
  local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD - 1]}}
  local command={0} words='' options='' files=0 isValue=0 i
  if [ "$current" = = ]; then current=''; fi
  if [ "$previous" = = ]; then previous=${{COMP_WORDS[COMP_CWORD - 2]}}; fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "$command ${{COMP_WORDS[i]}}" in
      {1}) command="$command ${{COMP_WORDS[i]}}" ;;
    esac
  done
  case "$command|$previous" in
{2}  esac
  if [ "$isValue" = 0 ]; then
    case "$command" in
{3}    esac
    if [ "${{current#-}}" != "$current" ]; then words=$options files=0; fi
  fi
  COMPREPLY=($(compgen -W "$words" -- "$current"))
  if [ "$files" = 1 ]; then
    compopt -o filenames 2>/dev/null
    local IFS=$'\n'
    COMPREPLY+=($(compgen -f -- "$current"))
  fi
}}
complete -F _{0} {0}
)",
                     program.name, commands, values, words);
}

std::string ZshCompletion(const CommandOutline& program) {
  std::string text = fmt::format("#compdef {0}\n# Completion of {0} for zsh.\n\n", program.name);
  ForEachCommand(program, [&](const CommandOutline& command) { text += ZshDefinition(command, program); });
  // Read as a function it is called at once; read as a script it announces itself.
  return text + fmt::format(
                    "if [ \"$funcstack[1]\" = _{0} ]; then\n  _{0} \"$@\"\nelif [ -n \"$functions[compdef]\" ]; then\n "
                    " compdef _{0} {0}\nfi\n",
                    program.name);
}

std::string FishCompletion(const CommandOutline& program) {
  std::string text = fmt::format("# Completion of {} for fish.\n", program.name);
  ForEachCommand(program, [&](const CommandOutline& command) { text += FishCommand(command, program); });
  return text;
}

}  // namespace dtsdb::tools
