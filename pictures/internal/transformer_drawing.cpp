#include "pictures/internal/transformer_drawing.h"

#include <fmt/format.h>

#include <utility>

#include "pictures/internal/symbols.h"
#include "pictures/internal/wording.h"

namespace dtsdb::pictures::internal {
namespace {

constexpr int kRadius = 10;
constexpr int kCircleStep = 16;  // from the middle of one circle to that of the next
constexpr int kStarStep = 14;
constexpr int kNameGap = 24;
constexpr int kPowerGap = 8;

int StepOf(const DrawnTransformer& transformer) { return transformer.primary.pin.up ? -1 : 1; }

Point FirstCircle(const DrawnTransformer& transformer) {
  const Pin& pin = transformer.primary.pin;
  return {pin.x, pin.y + StepOf(transformer) * kRadius};
}

Point OtherCircle(const DrawnTransformer& transformer, std::size_t number) {
  const Point first = FirstCircle(transformer);
  const int step = StepOf(transformer);
  if (transformer.others.size() == 1) return {first.x, first.y + step * kCircleStep};
  return {first.x + (number == 0 ? -kAside : kAside), first.y + step * kStarStep};
}

/// The element of a winding, without symbols.
Element ElementOf(const DrawnEnd& end) {
  const StationDevice& device = *end.device;
  Element element;
  element.record = device.name;
  element.id = ElementId(device.name);
  element.classes = "device winding";
  if (device.state.find("out of service") != std::string::npos || device.open) element.classes += " off";
  if (device.state.find("dead") != std::string::npos) element.classes += " dead";
  if (device.state.find("isolated") != std::string::npos) element.classes += " isolated";
  element.title = fmt::format("{} {}: winding, {}", device.name.table, device.name.identity, device.state);
  if (device.flow) element.title += fmt::format(", {:.3f} MW, {:.3f} Mvar", device.flow->p, device.flow->q);
  return element;
}

void AddLines(const std::vector<std::string>& lines, Point at, Element& element) {
  for (const std::string& line : lines) {
    element.labels.push_back(MakeLabel(line, at, Anchor::kStart));
    at.y += kLineHeight;
  }
}

/// Arrow and power of an end beside its wire.
void AddPowerOf(const DrawnEnd& end, Element& element) {
  if (!end.device->flow || IsZero(*end.device->flow)) return;
  const int step = end.pin.up ? -1 : 1;
  const bool away = GoesAlong(*end.device->flow);
  element.symbols.push_back(
      MakeSymbol("arrow", {end.pin.x, end.pin.y - step * 8}, away == (step > 0) ? 0 : 2, end.classes));
}

/// The circle of another end. Its powers stand where it leaves its level.
void AddOther(const DrawnTransformer& transformer, std::size_t number, Element& element) {
  const DrawnEnd& end = transformer.others[number];
  element.symbols.push_back(MakeSymbol("winding", OtherCircle(transformer, number), 0, end.classes));
  const int count = static_cast<int>(end.words.size());
  const int y = end.pin.up ? end.pin.y + kLineHeight : end.pin.y - count * kLineHeight + kLineHeight - 4;
  AddLines(end.words, {end.pin.x + kPowerGap, y}, element);
  if (transformer.flows) AddPowerOf(end, element);
}

/// The element of the primary end: its circle, and the names of all.
Element PrimaryElement(const DrawnTransformer& transformer) {
  const Point first = FirstCircle(transformer);
  const int count = static_cast<int>(transformer.primary.words.size());
  const int names = StepOf(transformer) > 0 ? first.y + 2 : first.y - (count - 1) * kLineHeight;
  Element element = ElementOf(transformer.primary);
  element.symbols.push_back(MakeSymbol("winding", first, 0, transformer.primary.classes));
  AddLines(transformer.primary.words, {first.x + kNameGap, names}, element);
  if (transformer.flows) AddPowerOf(transformer.primary, element);
  return element;
}

void DrawStar(const StationLevel& star, Point centre, Picture& picture) {
  const auto add = [&](const RecordName& name, const char* classes, const char* what) -> Element& {
    Element& element = picture.elements.emplace_back();
    element.record = name;
    element.id = ElementId(name);
    element.classes = classes;
    element.title = fmt::format("{} {}: {}", name.table, name.identity, what);
    return element;
  };
  add(star.name, "level star", "star point of a transformer");
  for (const StationNode& node : star.nodes) add(node.name, "node star", "star point").dots.push_back(centre);
  for (const StationBus& bus : star.buses) add(bus.name, "bus star", "star point");
}

}  // namespace

std::vector<Point> TerminalsOf(const DrawnTransformer& transformer) {
  std::vector<Point> terminals;
  for (std::size_t i = 0; i < transformer.others.size(); ++i) {
    const Point circle = OtherCircle(transformer, i);
    terminals.push_back({circle.x, circle.y + StepOf(transformer) * kRadius});
  }
  return terminals;
}

void DrawTransformer(const DrawnTransformer& transformer, Picture& picture) {
  Element primary = PrimaryElement(transformer);
  if (transformer.star == nullptr) {
    AddOther(transformer, 0, primary);
    picture.elements.push_back(std::move(primary));
    return;
  }
  picture.elements.push_back(std::move(primary));
  for (std::size_t i = 0; i < transformer.others.size(); ++i) {
    Element other = ElementOf(transformer.others[i]);
    AddOther(transformer, i, other);
    picture.elements.push_back(std::move(other));
  }
  const Point first = FirstCircle(transformer);
  DrawStar(*transformer.star, {first.x, first.y + StepOf(transformer) * (kRadius - 1)}, picture);
}

}  // namespace dtsdb::pictures::internal
