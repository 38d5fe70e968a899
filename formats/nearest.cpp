#include "formats/nearest.h"

#include <QString>
#include <algorithm>
#include <utility>

#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

constexpr std::size_t kMostNames = 3;

std::u32string Folded(const std::string& text) { return QString::fromStdString(text).toCaseFolded().toStdU32String(); }

/// Optimal string alignment, row by row; stops as soon as a whole row lies above the limit.
int Distance(const std::u32string& a, const std::u32string& b, int limit) {
  const auto longer = std::max(a.size(), b.size());
  const auto shorter = std::min(a.size(), b.size());
  if (longer - shorter > static_cast<std::size_t>(limit)) return limit + 1;
  std::vector<int> beforeLast(b.size() + 1);
  std::vector<int> last(b.size() + 1);
  std::vector<int> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::swap(beforeLast, last);
    std::swap(last, row);
    row[0] = static_cast<int>(i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const int replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    if (*std::min_element(row.begin(), row.end()) > limit) return limit + 1;
  }
  return std::min(row[b.size()], limit + 1);
}

}  // namespace

int EditDistance(const std::string& a, const std::string& b, int limit) {
  return Distance(Folded(a), Folded(b), limit);
}

std::vector<std::string> Nearest(const std::string& name, const std::vector<std::string>& known) {
  const std::u32string wanted = Folded(name);
  const int limit = std::max(1, static_cast<int>(wanted.size() + 1) / 3);
  std::vector<std::pair<int, const std::string*>> near;
  for (const std::string& candidate : known) {
    const int distance = Distance(wanted, Folded(candidate), limit);
    if (distance <= limit) near.emplace_back(distance, &candidate);
  }
  std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<std::string> names;
  for (const auto& [distance, candidate] : near) {
    if (names.size() == kMostNames) break;
    if (std::find(names.begin(), names.end(), *candidate) == names.end()) names.push_back(*candidate);
  }
  return names;
}

std::string DidYouMean(const std::string& name, const std::vector<std::string>& known) {
  const std::vector<std::string> names = Nearest(name, known);
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += OneLine(names[i]);
  }
  return text.empty() ? text : "; did you mean " + text + "?";
}

}  // namespace dtsdb::tools
