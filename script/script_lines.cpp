#include "script/script_lines.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "formats/files.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

constexpr std::string_view kBlanks = " \t\r";  // lines may end in CR LF

bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

/// Takes words off the front of a line.
class WordReader {
 public:
  explicit WordReader(std::string_view line) : m_rest(line) {}

  /// Goes to the next word. False when there is none.
  bool GoOn() {
    const bool isFirst = std::exchange(m_isFirst, false);
    m_rest.remove_prefix(std::min(m_rest.find_first_not_of(kBlanks), m_rest.size()));
    if (m_rest.empty()) return false;
    const bool standsAlone = m_rest.size() == 1 || IsBlank(m_rest[1]);
    return m_rest.front() != '#' || !(isFirst || standsAlone);
  }

  /// The word at this place; its quotes are taken off.
  std::string Take() {
    std::string word;
    if (m_rest.front() == '\'') TakeQuoted(word);
    while (!m_rest.empty() && !IsBlank(m_rest.front())) {
      if (m_rest.front() == '"') {
        TakeQuoted(word);
      } else {
        word += m_rest.front();
        m_rest.remove_prefix(1);
      }
    }
    return word;
  }

 private:
  /// Takes what stands between the quote in front and the next one that isn't doubled.
  void TakeQuoted(std::string& word) {
    const char quote = m_rest.front();
    do {
      m_rest.remove_prefix(1);
      const std::size_t end = m_rest.find(quote);
      if (end == std::string_view::npos) throw Failure(kExitUsage, "a quote isn't closed");
      word += m_rest.substr(0, end);
      m_rest.remove_prefix(end + 1);
      if (m_rest.starts_with(quote)) word += quote;
    } while (m_rest.starts_with(quote));
  }

  std::string_view m_rest;
  bool m_isFirst = true;
};

}  // namespace

std::vector<std::string> SplitWords(std::string_view line) {
  std::vector<std::string> words;
  for (WordReader reader(line); reader.GoOn();) words.push_back(reader.Take());
  return words;
}

std::string ScriptWord(const std::string& text) {
  if (text.find('\n') != std::string::npos) {
    throw Failure(kExitUsage, Quoted(text) + " has a line feed, and can't stand in a script");
  }
  if (!text.empty() && text.find_first_of(" \t\r\"'#") == std::string::npos) return text;
  std::string word = "\"";
  for (const char c : text) word += c == '"' ? "\"\"" : std::string(1, c);
  return word + "\"";
}

void ForEachLine(const std::string& file, std::string_view bytes, ExitCode code,
                 const std::function<void(int number, std::string_view line)>& visit) {
  bytes = WithoutByteOrderMark(bytes);
  for (int number = 1; !bytes.empty(); ++number) {
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
    try {
      visit(number, line);
    } catch (const Failure& failure) {
      throw Failure(code, fmt::format("{}, line {}: {}", file, number, failure.what()));
    }
  }
}

}  // namespace dtsdb::tools
