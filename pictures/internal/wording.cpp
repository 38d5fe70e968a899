#include "pictures/internal/wording.h"

#include <fmt/format.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string_view>

#include "formats/text_layout.h"
#include "model/text.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kLongestLine = 16;   // columns
constexpr int kLongestShort = 14;  // of a switch
constexpr std::size_t kMostLines = 3;

bool IsSeparator(char c) { return std::string_view("-_./ :|").find(c) != std::string_view::npos; }

/// The characters of UTF-8 text that take up to `width` columns, as a number of bytes.
std::size_t BytesWithin(const std::string& text, int width) {
  std::size_t end = 0;
  while (end < text.size()) {
    std::size_t next = end + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80) ++next;
    if (tools::DisplayWidth(text.substr(0, next)) > width) break;
    end = next;
  }
  return end;
}

constexpr float kShownAsZero = 0.05F;  // with one digit behind the point

/// Reactive power in the direction of the arrow; without a minus in front of zero.
float ReactiveAlong(const Power& power) {
  const float q = GoesAlong(power) ? power.q : -power.q;
  return std::fabs(q) < kShownAsZero ? 0.0F : q;
}

/// The last characters of UTF-8 text that take up to `width` columns.
std::string EndWithin(const std::string& text, int width) {
  std::size_t begin = text.size();
  while (begin > 0) {
    std::size_t next = begin - 1;
    while (next > 0 && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80) --next;
    if (tools::DisplayWidth(text.substr(next)) > width) break;
    begin = next;
  }
  return text.substr(begin);
}

/// Beginning and end of a long text: names that begin alike often end differently.
std::string Shortened(const std::string& text, int width) {
  if (tools::DisplayWidth(text) <= width) return text;
  const int end = (width - 1) / 2;
  return text.substr(0, BytesWithin(text, width - 1 - end)) + "…" + EndWithin(text, end);
}

}  // namespace

bool IsZero(const Power& power) { return std::fabs(power.p) < kShownAsZero && std::fabs(power.q) < kShownAsZero; }

bool GoesAlong(const Power& power) { return std::fabs(power.p) < kShownAsZero ? power.q >= 0 : power.p > 0; }

Label MakeLabel(const std::string& text, Point at, Anchor anchor, const Font& font) {
  const int width = TextWidth(text, font);
  const int left = anchor == Anchor::kStart ? at.x : anchor == Anchor::kEnd ? at.x - width : at.x - width / 2;
  return {text, at, anchor, {left, at.y - font.size + 1, width, font.size + kLineHeight - kUsualFont.size}};
}

std::string ElementId(const RecordName& record, const std::string& part) {
  std::string id = record.table + "-";
  for (const char c : IdToBytes(record.id)) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = c == '-' || (byte < 0x80 && std::isalnum(byte) != 0);
    id += plain ? std::string(1, c) : fmt::format("_{:02x}", byte);
  }
  return part.empty() ? id : id + "." + part;
}

std::string ShortName(const std::string& identity, const std::vector<std::string>& owners) {
  for (const std::string& owner : owners) {
    if (owner.empty() || identity.size() <= owner.size() + 1 || !identity.starts_with(owner)) continue;
    if (IsSeparator(identity[owner.size()]))
      return Shortened(tools::OneLine(identity.substr(owner.size() + 1)), kLongestShort);
  }
  return Shortened(tools::OneLine(identity), kLongestShort);
}

std::vector<std::string> Wrapped(const std::string& text) {
  std::vector<std::string> lines;
  std::string rest = tools::OneLine(text);
  while (!rest.empty()) {
    if (lines.size() + 1 == kMostLines || tools::DisplayWidth(rest) <= kLongestLine) {
      lines.push_back(Shortened(rest, kLongestLine));
      break;
    }
    const std::size_t room = std::max<std::size_t>(BytesWithin(rest, kLongestLine), 1);
    std::size_t cut = room;
    while (cut > room / 3 && !IsSeparator(rest[cut - 1])) --cut;
    if (cut <= room / 3) cut = room;
    lines.push_back(rest.substr(0, cut));
    rest.erase(0, cut);
  }
  return lines;
}

std::vector<std::string> PowerTexts(const Power& power) {
  return {fmt::format("{:.1f} MW", std::fabs(power.p)), fmt::format("{:.1f} Mvar", ReactiveAlong(power))};
}

std::string ShortPowerText(const Power& power) {
  return fmt::format("{:.1f} / {:.1f}", std::fabs(power.p), ReactiveAlong(power));
}

const char* KindText(DeviceKind kind) {
  static constexpr std::array kTexts = {"line", "DC line", "winding", "unit", "load", "capacitor", "reactor"};
  return kTexts[static_cast<std::size_t>(kind)];
}

}  // namespace dtsdb::pictures::internal
