#include "command/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "formats/failure.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

constexpr const char* kSeeHelp = "; 'dtsdb --help' describes how to call it";
constexpr std::size_t kHelpColumn = 28;

/// How many of the first words are options of `app` with their values.
int OptionWords(const CLI::App& app, int argc, const char* const* argv) {
  int words = 0;
  while (words + 1 < argc) {
    const std::string word = argv[words + 1];
    const std::size_t sign = word.find('=');
    const CLI::Option* const option = app.get_option_no_throw(word.substr(0, sign));
    if (word.empty() || word.front() != '-' || option == nullptr || option->get_items_expected_max() == 0) break;
    words += sign == std::string::npos ? 2 : 1;
  }
  return std::min(words, argc - 1);
}

/// Refuses a first word that is no subcommand of `app`, and behind one that has subcommands a second one likewise.
void CheckSubcommand(CLI::App& app, int argc, const char* const* argv) {
  const int options = OptionWords(app, argc, argv);
  argc -= options;
  argv += options;
  const std::vector<CLI::App*> commands = app.get_subcommands([](CLI::App*) { return true; });
  const std::string word = argc > 1 ? argv[1] : "";
  if (commands.empty() || word.empty() || word.front() == '-') return;
  std::vector<std::string> known;
  for (CLI::App* command : commands) {
    if (command->get_name() == word) return CheckSubcommand(*command, argc - 1, argv + 1);
    known.push_back(command->get_name());
  }
  const std::string meant = DidYouMean(word, known);
  throw Failure(kExitUsage, "there is no command " + Quoted(word) + (meant.empty() ? kSeeHelp : meant));
}

/// The parts of a text such as "en|zh"; none for one part alone.
std::vector<std::string> ChoicesIn(const std::string& text) {
  const std::vector<std::string> parts = CLI::detail::split(text, '|');
  return parts.size() > 1 ? parts : std::vector<std::string>();
}

ParameterOutline OutlineOf(const CLI::Option& option) {
  ParameterOutline outline;
  outline.isOption = !option.get_positional();
  if (outline.isOption) {
    for (const std::string& name : option.get_snames()) outline.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) outline.names.push_back("--" + name);
  } else {
    outline.names.push_back(option.get_name(true));
  }
  const std::string shown = CLI::detail::trim_copy(option.get_option_text());
  if (option.get_items_expected_max() > 0) outline.value = shown.empty() ? "VALUE" : shown;
  outline.choices = ChoicesIn(shown);
  outline.what = option.get_description();
  outline.isRequired = option.get_required();
  outline.isList = option.get_items_expected_max() > 1;
  return outline;
}

CommandOutline OutlineOf(const CLI::App& app, const std::string& above) {
  CommandOutline outline;
  outline.name = above + app.get_name();
  outline.purpose = app.get_description();
  outline.footer = app.get_footer();
  for (const CLI::Option* option : app.get_options()) outline.parameters.push_back(OutlineOf(*option));
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    outline.commands.push_back(OutlineOf(*command, outline.name + " "));
  }
  return outline;
}

}  // namespace

Parameter Parameter::Required() const {
  m_option->required();
  return *this;
}

Parameter Parameter::Shown(const std::string& value) const {
  m_option->option_text(value);
  return *this;
}

Parameter Parameter::Within(int least, int most) const {
  m_option->check(CLI::Range(least, most).description(""));
  return *this;
}

Parameter Parameter::Excludes(const Parameter& other) const {
  m_option->excludes(other.m_option);
  return *this;
}

Parameter Parameter::Checked(const std::function<std::string(const std::string&)>& check) const {
  m_option->check(check);
  return *this;
}

Parameter CommandLine::Add(const std::string& name, std::string& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, int& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, std::optional<int>& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, unsigned long long& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, float& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, std::vector<std::string>& value, const std::string& what) {
  return Parameter(*m_app->add_option(name, value, what));
}

Parameter CommandLine::Add(const std::string& name, const std::function<void(const std::string&)>& take,
                           const std::string& what) {
  return Parameter(*m_app->add_option_function<std::string>(name, take, what));
}

Parameter CommandLine::AddChoice(const std::string& name, const std::function<void(const std::string&)>& take,
                                 const std::vector<std::string>& choices, const std::string& what) {
  CLI::Option* const option = m_app->add_option_function<std::string>(name, take, what);
  option->check(CLI::IsMember(choices))->option_text(CLI::detail::join(choices, "|"));
  return Parameter(*option);
}

void CommandLine::AddFlag(const std::string& name, bool& value, const std::string& what) {
  m_app->add_flag(name, value, what);
}

void CommandLine::Footer(const std::string& text) { m_app->footer(text); }

void CommandLine::AddToFooter(const std::string& text) { m_app->footer(m_app->get_footer() + text); }

CommandLine CommandLine::AddSubcommand(const std::string& name, const std::string& purpose,
                                       const std::function<void()>& chosen) {
  CLI::App* const command = m_app->add_subcommand(name, purpose);
  if (chosen) command->callback(chosen);
  return CommandLine(*command);
}

void CommandLine::RequireSubcommand() { m_app->require_subcommand(1); }

Program::Program(const std::string& name, const std::string& purpose, const std::string& footer,
                 const std::string& version)
    : m_purpose(purpose), m_app(std::make_unique<CLI::App>(name + " - " + purpose + '.', name)) {
  m_app->footer(footer);
  m_app->require_subcommand(1);
  m_app->fallthrough();  // the program's own options may stand behind a subcommand
  m_app->set_version_flag("--version", version);
  m_app->get_formatter()->column_width(kHelpColumn);
}

Program::~Program() = default;

std::string Program::Help() const { return m_app->help(); }

CommandOutline Program::Outline() const {
  CommandOutline outline = OutlineOf(*m_app, "");
  outline.purpose = m_purpose;
  return outline;
}

void Program::Read(int argc, const char* const* argv) {
  CheckSubcommand(*m_app, argc, argv);
  try {
    m_app->parse(argc, argv);
  } catch (const CLI::Success& wanted) {
    m_app->exit(wanted);  // prints help or version
  } catch (const CLI::ParseError& error) {
    throw Failure(kExitUsage, error.what() + std::string(kSeeHelp));
  }
}

std::string Program::ValueOf(const std::string& name) const {
  for (const CLI::App* command : m_app->get_subcommands()) {
    const CLI::Option* const option = command->get_option_no_throw(name);
    if (option != nullptr && !option->empty()) return option->as<std::string>();
  }
  return "";
}

}  // namespace dtsdb::tools
