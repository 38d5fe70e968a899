#include "pictures/svg.h"

#include <fmt/format.h>

#include <QString>
#include <iterator>
#include <utility>

#include "formats/text_layout.h"
#include "pictures/internal/symbols.h"

namespace dtsdb::pictures {
namespace {

/// Text that XML can hold: its control characters but tabulator and line ends can't stand in a document.
std::string Clean(const std::string& text) {
  QString clean = QString::fromStdString(text);
  for (QChar& c : clean) {
    const bool isControl = c.unicode() < 0x20 && c != QLatin1Char('\t') && c != QLatin1Char('\n');
    if (isControl || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF) c = QChar(QChar::ReplacementCharacter);
  }
  return clean.toHtmlEscaped().toStdString();
}

/// The same for people: nothing turns the text around it.
std::string Shown(const std::string& text) {
  QString shown = QString::fromStdString(text);
  for (QChar& c : shown) {
    if (tools::TurnsText(c.unicode())) c = QChar(QChar::ReplacementCharacter);
  }
  return Clean(shown.toStdString());
}

const char* AnchorText(Anchor anchor) {
  switch (anchor) {
    case Anchor::kStart:
      return "start";
    case Anchor::kMiddle:
      return "middle";
    default:
      return "end";
  }
}

class SvgWriter {
 public:
  std::string Write(const Picture& picture) {
    Add("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" "
        "role=\"img\">\n",
        picture.width, picture.height);
    Add("<title>{}</title>\n<style>\n{}</style>\n<defs>{}</defs>\n", Shown(picture.title), internal::kStyleFile,
        internal::SymbolDefinitions());
    Add("<rect class=\"paper\" width=\"{}\" height=\"{}\"/>\n", picture.width, picture.height);
    for (const Element& element : picture.elements) WriteElement(element);
    m_out += "</svg>\n";
    return std::move(m_out);
  }

 private:
  template <class... Values>
  void Add(fmt::format_string<Values...> format, Values&&... values) {
    fmt::format_to(std::back_inserter(m_out), format, std::forward<Values>(values)...);
  }

  void WriteElement(const Element& element) {
    Add("<g id=\"{}\" class=\"{}\"", element.id, element.classes);
    if (!element.record.table.empty()) {
      Add(" data-table=\"{}\" data-id=\"{}\"", element.record.table, Clean(element.record.identity));
    }
    Add("><title>{}</title>", Shown(element.title));
    for (const Wire& wire : element.wires) WriteWire(wire);
    for (const Point& dot : element.dots) {
      Add("<circle class=\"dot\" cx=\"{}\" cy=\"{}\" r=\"{}\"/>", dot.x, dot.y, element.dotRadius);
    }
    for (const Symbol& symbol : element.symbols) WriteSymbol(symbol);
    for (const Label& label : element.labels) {
      Add("<text x=\"{}\" y=\"{}\" text-anchor=\"{}\">{}</text>", label.at.x, label.at.y, AnchorText(label.anchor),
          Shown(label.text));
    }
    m_out += "</g>\n";
  }

  void WriteWire(const Wire& wire) {
    m_out += "<path class=\"wire\" d=\"";
    for (std::size_t i = 0; i < wire.size(); ++i) Add("{}{} {}", i == 0 ? 'M' : 'L', wire[i].x, wire[i].y);
    m_out += "\"/>";
  }

  void WriteSymbol(const Symbol& symbol) {
    const internal::Size size = internal::SizeOfSymbol(symbol.name);
    Add("<use href=\"#{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"", symbol.name, -size.width / 2,
        -size.height / 2, size.width, size.height);
    if (!symbol.classes.empty()) Add(" class=\"{}\"", symbol.classes);
    Add(" transform=\"translate({},{})", symbol.centre.x, symbol.centre.y);
    const int degrees = 90 * symbol.quarterTurns + symbol.degrees;
    if (degrees != 0) Add(" rotate({})", degrees);
    m_out += "\"/>";
  }

  std::string m_out;
};

}  // namespace

std::string ToSvg(const Picture& picture) { return SvgWriter().Write(picture); }

}  // namespace dtsdb::pictures
