#include "command/man_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <sstream>
#include <vector>

namespace dtsdb::tools {
namespace {

constexpr std::size_t kLongestLine = 79;

std::string WithHyphens(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '-');
  return text;
}

std::string Capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

/// Text in which no character is taken for more than itself.
std::string PlainInside(const std::string& text) {
  std::string plain;
  for (const char c : text) {
    if (c == '\\') {
      plain += "\\e";
    } else if (c == '-') {
      plain += "\\-";
    } else {
      plain += c;
    }
  }
  return plain;
}

/// The same at the beginning of a line, where a full stop or apostrophe would begin a request.
std::string Plain(const std::string& text) {
  const bool isRequest = !text.empty() && (text.front() == '.' || text.front() == '\'');
  return (isRequest ? "\\&" : "") + PlainInside(text);
}

std::string Bold(const std::string& text) { return "\\fB" + Plain(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Plain(text) + "\\fR"; }

/// A page, line by line.
class Page {
 public:
  void Line(const std::string& text) { m_text += text + '\n'; }
  void Section(const char* title) { Line(std::string(".SH ") + title); }
  /// Running text, in lines that aren't long.
  void Words(const std::string& text) {
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;) {
      if (!line.empty() && line.size() + 1 + Plain(word).size() > kLongestLine) {
        Line(line);
        line.clear();
      }
      line += line.empty() ? Plain(word) : ' ' + PlainInside(word);
    }
    if (!line.empty()) Line(line);
  }
  /// A term, and behind it what it means.
  void Entry(const std::string& term, const std::string& meaning) {
    Line(".TP");
    Line(term);
    Words(meaning);
  }
  const std::string& Text() const { return m_text; }

 private:
  std::string m_text;
};

std::string Term(const ParameterOutline& parameter) {
  if (!parameter.isOption) return Italic(parameter.names.front());
  std::string term;
  for (const std::string& name : parameter.names) term += (term.empty() ? "" : ", ") + Bold(name);
  if (parameter.value.empty()) return term;
  return term + ' ' + (parameter.choices.empty() ? Italic(parameter.value) : Bold(parameter.value));
}

bool HasOptions(const CommandOutline& command) {
  const auto isOption = [](const ParameterOutline& parameter) { return parameter.isOption; };
  return std::any_of(command.parameters.begin(), command.parameters.end(), isOption);
}

std::string Synopsis(const CommandOutline& command) {
  std::string line = Bold(command.name);
  if (HasOptions(command)) line += " [" + Italic("OPTIONS") + "]";
  for (const ParameterOutline& parameter : command.parameters) {
    if (parameter.isOption) continue;
    const std::string name = Italic(parameter.names.front()) + (parameter.isList ? " ..." : "");
    line += parameter.isRequired ? ' ' + name : " [" + name + ']';
  }
  return command.commands.empty() ? line : line + ' ' + Italic("COMMAND");
}

void AddParameters(Page& page, const CommandOutline& command, bool areOptions) {
  for (const ParameterOutline& parameter : command.parameters) {
    if (parameter.isOption == areOptions) page.Entry(Term(parameter), parameter.what + '.');
  }
}

/// The program's own options that stand behind subcommands too: those that take a value.
void AddSharedOptions(Page& page, const CommandOutline& program) {
  for (const ParameterOutline& parameter : program.parameters) {
    if (IsShared(parameter)) page.Entry(Term(parameter), parameter.what + '.');
  }
}

/// The paragraphs of what help prints behind all else, by their kind.
struct Footer {
  std::vector<std::string> description;
  std::vector<std::string> examples;
  std::string exitCodes;
};

Footer FooterIn(const std::string& text) {
  constexpr std::string_view kExamples = "Examples:\n";
  constexpr std::string_view kExitCodes = "Exit codes: ";
  Footer footer;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find("\n\n", begin), text.size());
    const std::string paragraph = text.substr(begin, end - begin);
    if (paragraph.starts_with(kExamples)) {
      footer.examples.push_back(paragraph.substr(kExamples.size()));
    } else if (paragraph.starts_with(kExitCodes)) {
      footer.exitCodes = paragraph.substr(kExitCodes.size());
    } else if (!paragraph.empty()) {
      footer.description.push_back(paragraph);
    }
    begin = end + 2;
  }
  return footer;
}

void AddDescription(Page& page, const CommandOutline& command, const Footer& footer) {
  page.Section("DESCRIPTION");
  page.Words(command.purpose + '.');
  for (const std::string& paragraph : footer.description) {
    page.Line(".PP");
    page.Words(paragraph);
  }
}

std::string WithoutIndent(const std::string& line) {
  return line.substr(std::min(line.find_first_not_of(' '), line.size()));
}

void AddExamples(Page& page, const Footer& footer) {
  if (footer.examples.empty()) return;
  page.Section("EXAMPLES");
  page.Line(".EX");
  for (const std::string& example : footer.examples) {
    std::istringstream lines(example);
    for (std::string line; std::getline(lines, line);) page.Line(Plain(WithoutIndent(line)));
  }
  page.Line(".EE");
}

void AddExitCodes(Page& page, const Footer& footer) {
  if (footer.exitCodes.empty()) return;
  page.Section("EXIT STATUS");
  page.Words(footer.exitCodes);
}

void AddCommands(Page& page, const CommandOutline& command) {
  if (command.commands.empty()) return;
  page.Section("COMMANDS");
  for (const CommandOutline& other : command.commands) {
    page.Entry(Bold(other.name.substr(command.name.size() + 1)), other.purpose + '.');
  }
}

void AddSeeAlso(Page& page, const CommandOutline& command, const CommandOutline& program) {
  std::vector<std::string> names;
  if (command.name != program.name) names.push_back(program.name);
  for (const CommandOutline& other : command.commands) names.push_back(other.name);
  if (names.empty()) return;
  page.Section("SEE ALSO");
  for (std::size_t i = 0; i < names.size(); ++i) {
    page.Line(fmt::format(".BR {} (1){}", Plain(WithHyphens(names[i])), i + 1 < names.size() ? "," : ""));
  }
}

}  // namespace

std::string ManPageFile(const CommandOutline& command) { return WithHyphens(command.name) + ".1"; }

std::string ManPage(const CommandOutline& command, const CommandOutline& program, const std::string& version,
                    const std::string& date) {
  const Footer footer = FooterIn(command.footer);
  const std::string name = WithHyphens(command.name);
  Page page;
  page.Line(fmt::format(".TH {} 1 {} \"{}\"", Capitals(name), date, PlainInside(version)));
  page.Section("NAME");
  page.Line(fmt::format("{} \\- {}", Plain(name), Plain(command.purpose)));
  page.Section("SYNOPSIS");
  page.Line(Synopsis(command));
  AddDescription(page, command, footer);
  AddCommands(page, command);
  page.Section("OPTIONS");
  AddParameters(page, command, false);
  AddParameters(page, command, true);
  if (command.name != program.name) AddSharedOptions(page, program);
  AddExamples(page, footer);
  AddExitCodes(page, footer);
  AddSeeAlso(page, command, program);
  return page.Text();
}

}  // namespace dtsdb::tools
