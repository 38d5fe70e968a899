#include "page/internal/search.h"

#include <QString>
#include <algorithm>

#include "formats/nearest.h"

namespace dtsdb::page::internal {
namespace {

constexpr std::size_t kMost = 50;

void AddUpToMost(std::vector<Thing>& found, const std::vector<const Thing*>& more) {
  for (const Thing* const thing : more) {
    if (found.size() == kMost) return;
    found.push_back(*thing);
  }
}

/// The records with the identities nearest to `text`.
std::vector<const Thing*> NearTo(const std::vector<Thing>& all, const std::string& text) {
  std::vector<std::string> known;
  known.reserve(all.size());
  for (const Thing& thing : all) known.push_back(thing.id);
  std::vector<const Thing*> near;
  for (const std::string& id : tools::Nearest(text, known)) {
    for (const Thing& thing : all) {
      if (thing.id == id) near.push_back(&thing);
    }
  }
  return near;
}

}  // namespace

std::vector<Thing> FindLike(const std::vector<Thing>& all, const std::string& text) {
  const QString wanted = QString::fromStdString(text).trimmed();
  std::vector<Thing> found;
  if (wanted.isEmpty()) return found;
  std::vector<const Thing*> same;
  std::vector<const Thing*> begins;
  std::vector<const Thing*> contains;
  for (const Thing& thing : all) {
    const QString id = QString::fromStdString(thing.id);
    const qsizetype place = id.indexOf(wanted, 0, Qt::CaseInsensitive);
    if (place < 0) continue;
    std::vector<const Thing*>& likes = place > 0 ? contains : id.size() == wanted.size() ? same : begins;
    if (likes.size() < kMost) likes.push_back(&thing);
  }
  AddUpToMost(found, same);
  AddUpToMost(found, begins);
  AddUpToMost(found, contains);
  if (found.empty()) AddUpToMost(found, NearTo(all, wanted.toStdString()));
  return found;
}

}  // namespace dtsdb::page::internal
