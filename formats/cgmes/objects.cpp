#include "formats/cgmes/objects.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace dtsdb::tools::cgmes {
namespace {

constexpr std::size_t kMostNumbers = std::numeric_limits<int>::max();

}  // namespace

int Objects::Find(std::string_view mrid) const {
  const auto found = m_byMrid.find(mrid);
  return found == m_byMrid.end() ? kNone : found->second;
}

int Objects::FindOrMake(std::string_view mrid) {
  const int found = Find(mrid);
  if (found != kNone) return found;
  const auto [place, isNew] = m_byMrid.emplace(std::string(mrid), Count());
  m_objects.push_back({&place->first});
  return place->second;
}

std::string Objects::Name(int object) const {
  const std::string_view name = Text(object, kName);
  return name.empty() ? Mrid(object) : std::string(name);
}

int Objects::ClassNumber(QStringView name) {
  const QByteArray bytes = name.toUtf8();
  const std::string_view key(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  const auto found = m_classNumbers.find(key);
  if (found != m_classNumbers.end()) return found->second;
  m_classes.emplace_back(key);
  return m_classNumbers.emplace(key, ClassCount() - 1).first->second;
}

void Objects::Describe(int object, int type, bool defines, int file, long long line) {
  Object& described = m_objects[static_cast<std::size_t>(object)];
  if (described.isDefined && defines && described.type != type) {
    m_clashes.push_back({object, type, file, static_cast<int>(line)});
  }
  if (described.isDefined || (!defines && described.type != kNone)) return;
  described.type = type;
  described.isDefined = defines;
  described.file = file;
  described.line = static_cast<int>(line);
}

bool Objects::SetText(int object, Property property, std::string_view text) {
  if (m_text.size() + text.size() > kMostNumbers || m_values.size() >= kMostNumbers) return false;
  Set(object,
      {property, false, kNone, static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(m_text.size())});
  m_text += text;
  return true;
}

bool Objects::SetTarget(int object, Property property, int target) {
  if (m_values.size() >= kMostNumbers) return false;
  Set(object, {property, true, kNone, 0, static_cast<std::uint32_t>(target)});
  return true;
}

void Objects::Set(int object, const Value& value) {
  const int found = IsList(value.property) ? kNone : FindValue(object, value.property);
  if (found != kNone) {
    Value& old = m_values[static_cast<std::size_t>(found)];
    const int next = old.next;
    old = value;
    old.next = next;
    return;
  }
  Object& owner = m_objects[static_cast<std::size_t>(object)];
  int& chain = IsList(value.property) ? owner.listed : owner.first;
  m_values.push_back(value);
  m_values.back().next = chain;
  chain = static_cast<int>(m_values.size()) - 1;
}

int Objects::FindValue(int object, Property property) const {
  if (object == kNone) return kNone;
  int i = At(object).first;
  while (i != kNone && m_values[static_cast<std::size_t>(i)].property != property) {
    i = m_values[static_cast<std::size_t>(i)].next;
  }
  return i;
}

std::string_view Objects::Text(int object, Property property) const {
  const int found = FindValue(object, property);
  if (found == kNone) return {};
  const Value& value = m_values[static_cast<std::size_t>(found)];
  if (value.isReference) return {};
  return std::string_view(m_text).substr(value.place, value.length);
}

int Objects::Target(int object, Property property) const {
  const int found = FindValue(object, property);
  if (found == kNone) return kNone;
  const Value& value = m_values[static_cast<std::size_t>(found)];
  return value.isReference ? static_cast<int>(value.place) : kNone;
}

std::optional<double> Objects::Number(int object, Property property) const {
  const std::string_view text = Text(object, property);
  if (text.empty()) return std::nullopt;
  const char* const begin = text.front() == '+' ? text.data() + 1 : text.data();
  const char* const end = text.data() + text.size();
  double number = 0;
  const auto [behind, error] = std::from_chars(begin, end, number);
  if (error != std::errc() || behind != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

}  // namespace dtsdb::tools::cgmes
