#include "command/command_line.h"

#include <CLI/CLI.hpp>

namespace dtsdb::tools {

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

}  // namespace dtsdb::tools
