#include "validation/message_catalog.h"

#include <algorithm>

#include "model/text.h"

namespace dtsdb {
namespace {

constexpr MessageInfo kMessages[] = {
#include "validation/internal/message_rows.inc"
};

}  // namespace

std::span<const MessageInfo> AllMessages() { return kMessages; }

const MessageInfo* FindMessage(std::string_view code) {
  const auto* const found =
      std::lower_bound(std::begin(kMessages), std::end(kMessages), code,
                       [](const MessageInfo& message, std::string_view wanted) { return message.code < wanted; });
  return found != std::end(kMessages) && found->code == code ? found : nullptr;
}

QString TextOf(const Finding& finding, Language language) {
  const QString text = QString::fromUtf8(FindMessage(finding.code)->Text(language));
  return finding.other.isEmpty() ? text : text.arg(TextFromId(finding.other), TextFromId(finding.id));
}

}  // namespace dtsdb
