#include "formats/xiidm/objects.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace dtsdb::tools::xiidm {
namespace {

constexpr std::size_t kMost = std::numeric_limits<int>::max();

}  // namespace

int Objects::Add(const ElementRow& row, int parent, long long line, std::string_view id) {
  const auto [place, isNew] = m_byId.emplace(std::string(id), Count());
  if (!isNew) return kNone;
  m_objects.push_back({&row, &place->first, parent, static_cast<int>(line)});
  return Count() - 1;
}

int Objects::Find(std::string_view id) const {
  const auto found = m_byId.find(id);
  return found == m_byId.end() ? kNone : found->second;
}

std::string Objects::Name(int object) const {
  const std::string_view name = Text(object, kName);
  return name.empty() ? Id(object) : std::string(name);
}

bool Objects::Set(int object, Attribute attribute, std::string_view text) {
  if (m_text.size() + text.size() > kMost || m_values.size() >= kMost) return false;
  Object& owner = m_objects[static_cast<std::size_t>(object)];
  m_values.push_back(
      {attribute, owner.first, static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(m_text.size())});
  owner.first = static_cast<int>(m_values.size()) - 1;
  m_text += text;
  return true;
}

int Objects::FindValue(int object, Attribute attribute) const {
  for (int i = At(object).first; i != kNone; i = m_values[static_cast<std::size_t>(i)].next) {
    if (m_values[static_cast<std::size_t>(i)].attribute == attribute) return i;
  }
  return kNone;
}

std::string_view Objects::Text(int object, Attribute attribute) const {
  const int found = FindValue(object, attribute);
  if (found == kNone) return {};
  const Value& value = m_values[static_cast<std::size_t>(found)];
  return std::string_view(m_text).substr(value.place, value.length);
}

std::optional<double> Objects::Number(int object, Attribute attribute) const {
  return NumberOf(Text(object, attribute));
}

bool Objects::IsTrue(int object, Attribute attribute) const {
  const std::string_view text = Text(object, attribute);
  return text == "true" || text == "1";
}

std::vector<int> Objects::WithRole(Role role) const {
  std::vector<int> objects;
  for (int i = 0; i < Count(); ++i) {
    if (RoleOf(i) == role) objects.push_back(i);
  }
  return objects;
}

std::optional<double> NumberOf(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
  return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<int> NodeNumberOf(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isNumber = error == std::errc() && end == text.data() + text.size() && number >= 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace dtsdb::tools::xiidm
