/// \file
/// What holds of every picture: nothing overlaps, ids are unique, the SVG is well formed.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QXmlStreamReader>
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "pictures/svg.h"

namespace dtsdb::pictures::test {

struct NamedBox {
  Box box;
  std::string owner;  ///< id of its element
  std::string name;   ///< of the symbol, or the text
};

/// The boxes of all symbols and labels. A hatch lies behind the symbol of its own element, and the circles of a
/// transformer are drawn into each other; these are left out.
inline std::vector<NamedBox> BoxesOf(const Picture& picture) {
  std::vector<NamedBox> boxes;
  for (const Element& element : picture.elements) {
    for (const Symbol& symbol : element.symbols) {
      if (symbol.name != "hatch" && symbol.name != "winding") boxes.push_back({symbol.box, element.id, symbol.name});
    }
    for (const Label& label : element.labels) boxes.push_back({label.box, element.id, label.text});
  }
  return boxes;
}

/// The overlapping pairs, a line each.
inline std::string Overlaps(const Picture& picture) {
  std::vector<NamedBox> boxes = BoxesOf(picture);
  std::sort(boxes.begin(), boxes.end(), [](const NamedBox& a, const NamedBox& b) { return a.box.x < b.box.x; });
  std::string lines;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    for (std::size_t j = i + 1; j < boxes.size() && boxes[j].box.x < boxes[i].box.x + boxes[i].box.width; ++j) {
      if (!Overlap(boxes[i].box, boxes[j].box)) continue;
      lines += boxes[i].owner + " '" + boxes[i].name + "' and " + boxes[j].owner + " '" + boxes[j].name + "'\n";
    }
  }
  return lines;
}

/// The boxes that reach out of the picture, a line each.
inline std::string Outside(const Picture& picture) {
  std::string lines;
  for (const NamedBox& each : BoxesOf(picture)) {
    const Box& box = each.box;
    const bool inside =
        box.x >= 0 && box.y >= 0 && box.x + box.width <= picture.width && box.y + box.height <= picture.height;
    if (!inside) lines += each.owner + " '" + each.name + "'\n";
  }
  return lines;
}

/// How often each record stands in the picture, by "TABLE identity". Titles and legends of maps stand for none.
inline std::map<std::string, int> RecordsOf(const Picture& picture) {
  std::map<std::string, int> records;
  for (const Element& element : picture.elements) {
    if (!element.record.table.empty()) ++records[element.record.table + " " + element.record.identity];
  }
  return records;
}

/// The records that stand in the picture more or less often than expected, a line each.
inline std::string WrongRecords(const Picture& picture, const std::map<std::string, int>& expected) {
  std::map<std::string, int> surplus = RecordsOf(picture);
  for (const auto& [record, count] : expected) surplus[record] -= count;
  std::string lines;
  for (const auto& [record, count] : surplus) {
    if (count != 0) lines += record + ": " + std::to_string(count) + "\n";
  }
  return lines;
}

/// Checks an SVG: it is well formed, and no id stands there twice.
inline void ExpectSoundSvg(const std::string& svg) {
  QXmlStreamReader reader{QByteArray::fromStdString(svg)};
  std::set<QString> ids;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    const QString id = reader.attributes().value(QLatin1String("id")).toString();
    const bool isNew = id.isEmpty() || ids.insert(id).second;
    EXPECT_TRUE(isNew) << id.toStdString() << " stands there twice";
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
}

}  // namespace dtsdb::pictures::test
