#include "page/report.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>
#include <string_view>
#include <utility>

#include "formats/catalog.h"
#include "formats/json_text.h"
#include "page/assets.h"
#include "page/internal/gzip.h"

namespace dtsdb::page {
namespace {

using tools::JsonText;

std::string Base64(const std::string& bytes) { return QByteArray::fromStdString(bytes).toBase64().toStdString(); }

/// What a content-security policy knows a piece of script or style by.
std::string HashOf(std::string_view text) {
  const QByteArray bytes(text.data(), static_cast<qsizetype>(text.size()));
  return "'sha256-" + QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toBase64().toStdString() + "'";
}

/// Text for an attribute in double quotes.
std::string Attribute(const std::string& text) {
  return QString::fromStdString(text).toHtmlEscaped().replace(QLatin1Char('\r'), QLatin1String("&#13;")).toStdString();
}

/// A member of a JSON object whose value is JSON already.
std::string Member(const std::string& name, const std::string& json) { return JsonText(name) + ":" + json; }

/// A block of data; browsers run nothing of an unknown type.
std::string Block(const std::string& attribute, const std::string& json) {
  return "<script type=\"application/octet-stream\" " + attribute + ">" + Base64(internal::Gzip(json)) + "</script>\n";
}

/// All that isn't about one station.
std::string CommonJson(const Documents& documents, const std::string& runs) {
  std::string tables;
  for (const std::string& name : tools::TableNames()) {
    if (!tables.empty()) tables += ',';
    tables += Member(name, documents.Table(name).value_or("null"));
  }
  std::string json = "{" + Member("model", documents.Model()) + "," + Member("tables", "{" + tables + "}") + "," +
                     Member("state", documents.State()) + "," + Member("findings", documents.Findings()) + "," +
                     Member("grid", documents.Grid()) + "," + Member("records", documents.Records());
  if (!runs.empty()) json += "," + Member("runs", runs);
  return json + "}";
}

std::string Blocks(const Documents& documents, const std::string& runs) {
  std::string blocks = Block("id=\"data\"", CommonJson(documents, runs));
  if (!documents.HasPictures()) return blocks;
  for (const std::string& id : documents.Stations()) {
    const auto station = documents.Station(id);
    if (station) blocks += Block("data-station=\"" + Attribute(id) + "\"", *station);
  }
  return blocks;
}

/// Puts `text` in the place of `mark`, which the page contains once.
void Put(std::string& page, std::string_view mark, const std::string& text) {
  const std::size_t place = page.find(mark);
  if (place != std::string::npos) page.replace(place, mark.size(), text);
}

/// The page with its script and style inside, and with `blocks`. Its policy lets these two run and nothing else.
std::string PageWith(const std::string& blocks) {
  const std::string_view style = FindAsset("page.css")->bytes;
  const std::string_view script = FindAsset("page.js")->bytes;
  const std::string policy = "default-src 'none'; script-src " + HashOf(script) + "; style-src " + HashOf(style) +
                             "; img-src data:; base-uri 'none'; form-action 'none'";
  std::string page(FindAsset("index.html")->bytes);
  Put(page, "<script src=\"page.js\" defer></script>", blocks + "<script>" + std::string(script) + "</script>");
  Put(page, "<link rel=\"stylesheet\" href=\"page.css\">", "<style>" + std::string(style) + "</style>");
  Put(page, "<meta name=\"viewport\"",
      "<meta http-equiv=\"Content-Security-Policy\" content=\"" + policy + "\">\n<meta name=\"viewport\"");
  return page;
}

/// A state within a run.
std::string StateMember(const Documents& documents) {
  return "{" + Member("state", documents.State()) + "," + Member("grid", documents.Grid()) + "}";
}

/// The diagrams of a station before and after a run.
std::string PairOf(const Documents& before, const Documents& after, const std::string& id) {
  return "{" + Member("before", before.StationSvg(id)) + "," + Member("after", after.StationSvg(id)) + "}";
}

std::string EventsJson(const std::vector<RunEvent>& events) {
  std::string json;
  for (const RunEvent& event : events) {
    if (!json.empty()) json += ',';
    json += "{" + Member("text", JsonText(event.text)) + "," + Member("effect", JsonText(event.effect)) + "}";
  }
  return "[" + json + "]";
}

}  // namespace

RunHistory::RunHistory(const Documents& documents, const analysis::Model& model)
    : m_now(documents.Later(model, documents.Version())), m_model(model) {}

void RunHistory::Add(const std::string& title, const std::vector<RunEvent>& events, const analysis::Model& model) {
  const Documents after = m_now.Tried(model);     // marked where it differs from the state before
  const Documents before = after.Tried(m_model);  // and the other way round
  const Changes changes = after.ChangesSince(m_now);
  std::string stations;
  for (const std::string& id : changes.stations) {
    if (!stations.empty()) stations += ',';
    stations += Member(id, PairOf(before, after, id));
  }
  m_runs.push_back("{" + Member("title", JsonText(title)) + "," + Member("events", EventsJson(events)) + "," +
                   Member("changes", ToJson(changes)) + "," + Member("before", StateMember(before)) + "," +
                   Member("after", StateMember(after)) + "," + Member("stations", "{" + stations + "}") + "}");
  m_now = m_now.Later(model, m_now.Version() + 1);
  m_model = model;
}

std::string RunHistory::Json() const {
  std::string json;
  for (const std::string& run : m_runs) json += (json.empty() ? "" : ",") + run;
  return "[" + json + "]";
}

std::string WriteReport(const Documents& documents) { return PageWith(Blocks(documents, "")); }

std::string WriteReport(const RunHistory& runs) { return PageWith(Blocks(runs.Now(), runs.Json())); }

}  // namespace dtsdb::page
