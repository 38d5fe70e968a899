#include "page/site.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "analysis/error.h"
#include "formats/text_layout.h"
#include "page/assets.h"
#include "script/switch_events.h"

namespace dtsdb::page {
namespace {

using analysis::Error;
using analysis::ErrorCode;
using analysis::Result;
using SiteJson = nlohmann::ordered_json;

constexpr const char* kJsonType = "application/json";
constexpr const char* kTextType = "text/plain; charset=utf-8";

/// All that the page uses comes from the server; only its icon stands within it.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src data:; base-uri 'none'; "
    "form-action 'none'; frame-ancestors 'none'";

std::string Written(const SiteJson& json) { return json.dump(-1, ' ', false, SiteJson::error_handler_t::replace); }

PageAnswer Refuse(int status, const std::string& why) { return {status, kJsonType, Written({{"error", why}})}; }

int StatusOf(const Error& error) {
  switch (error.code) {
    case ErrorCode::kUsage:
    case ErrorCode::kUnknownComponent:
      return 404;
    case ErrorCode::kFaultyModel:
    case ErrorCode::kNoTopology:
      return 409;
    case ErrorCode::kFile:
    case ErrorCode::kInternal:
      break;
  }
  return 500;
}

PageAnswer Refuse(const Error& error) { return Refuse(StatusOf(error), error.message); }

/// The nearest identities are looked for in a time that grows with the length of what they are like.
constexpr std::size_t kLongestArgument = 200;

/// What a document is about: its name, and the parameter that it needs, if any.
struct DocumentKind {
  const char* name;
  const char* parameter;
};

constexpr DocumentKind kDocuments[] = {{"model", ""}, {"table", "name"}, {"state", ""},  {"findings", ""},
                                       {"grid", ""},  {"station", "id"}, {"search", "q"}};

const DocumentKind* FindDocument(const std::string& name) {
  for (const DocumentKind& kind : kDocuments) {
    if (name == kind.name) return &kind;
  }
  return nullptr;
}

Result<std::string> WriteDocument(const Documents& documents, const std::string& name, const std::string& argument) {
  if (name == "model") return documents.Model();
  if (name == "table") return documents.Table(argument);
  if (name == "state") return documents.State();
  if (name == "findings") return documents.Findings();
  if (name == "grid") return documents.Grid();
  if (name == "station") return documents.Station(argument);
  return documents.Search(argument);
}

PageAnswer AnswerWith(const Result<std::string>& text) {
  if (!text) return Refuse(text.error());
  return {200, kJsonType, *text};
}

std::string Parameter(const PageRequest& request, const std::string& name) {
  const auto found = request.parameters.find(name);
  return found != request.parameters.end() ? found->second : "";
}

/// A member of an object, where it is there and of the right type.
template <class V>
std::optional<V> Member(const SiteJson& object, const char* name) {
  const auto found = object.find(name);
  if (found == object.end()) return std::nullopt;
  if constexpr (std::is_same_v<V, std::string>) {
    return found->is_string() ? std::optional<V>(found->get<V>()) : std::nullopt;
  } else if constexpr (std::is_same_v<V, bool>) {
    return found->is_boolean() ? std::optional<V>(found->get<V>()) : std::nullopt;
  } else {
    return found->is_number_integer() ? std::optional<V>(found->get<V>()) : std::nullopt;
  }
}

/// An event as the page has written it, and as the topology knows it.
struct AskedEvent {
  std::string table;
  std::string id;
  bool open = false;
  std::string end;  ///< of a branch; empty for all of it
  SwitchEvent event;
};

Result<AskedEvent> ReadEvent(const SiteJson& json) {
  const auto table = Member<std::string>(json, "table");
  const auto id = Member<std::string>(json, "id");
  const auto open = Member<bool>(json, "open");
  if (!table || !id || !open) {
    return tl::unexpected(Error{ErrorCode::kUsage, "an event has a table, an id and open, which is true or false", ""});
  }
  const std::string end = Member<std::string>(json, "end").value_or("");
  const auto event = tools::FindSwitchEvent(*table, *id, end, !*open);
  if (event) return AskedEvent{*table, *id, *open, end, *event};
  const std::string what = end.empty() ? "" : ", end " + tools::Quoted(end);
  return tl::unexpected(
      Error{ErrorCode::kUsage, "table " + tools::Quoted(*table) + what + ": nothing is switched there", *id});
}

/// A list that a viewer tries out.
struct Trial {
  std::string viewer;
  std::optional<int> version;
  std::vector<AskedEvent> asked;

  std::vector<SwitchEvent> Events() const {
    std::vector<SwitchEvent> events;
    for (const AskedEvent& each : asked) events.push_back(each.event);
    return events;
  }
};

Result<Trial> ReadTrial(const std::string& body, std::size_t mostEvents) {
  const auto wrong = [](const std::string& why) { return tl::unexpected(Error{ErrorCode::kUsage, why, ""}); };
  const SiteJson json = SiteJson::parse(body, nullptr, false);
  if (!json.is_object()) return wrong("the request is no JSON object");
  Trial trial;
  trial.viewer = Member<std::string>(json, "viewer").value_or("");
  trial.version = Member<int>(json, "version");
  if (!IsViewerName(trial.viewer)) return wrong("viewer has 16 to 32 letters and digits");
  const auto events = json.find("events");
  if (events == json.end() || !events->is_array()) return wrong("the list of events is missing");
  if (events->size() > mostEvents) return wrong("there are more than " + std::to_string(mostEvents) + " events");
  for (const SiteJson& event : *events) {
    Result<AskedEvent> read = ReadEvent(event);
    if (!read) return tl::unexpected(read.error());
    trial.asked.push_back(std::move(*read));
  }
  return trial;
}

/// `tried` is what has become of the events that were asked for, in their order.
std::string TrialText(int version, const Trial& trial, const std::vector<TriedEvent>& tried, const Changes& changes) {
  SiteJson events = SiteJson::array();
  for (std::size_t i = 0; i < std::min(trial.asked.size(), tried.size()); ++i) {
    const AskedEvent& asked = trial.asked[i];
    SiteJson event = {{"table", asked.table}, {"id", asked.id}, {"open", asked.open}};
    if (!asked.end.empty()) event["end"] = asked.end;
    event["applied"] = tried[i].applied;
    event["text"] = tried[i].text;
    events.push_back(std::move(event));
  }
  return Written({{"version", version}, {"events", std::move(events)}, {"changes", SiteJson::parse(ToJson(changes))}});
}

}  // namespace

Site::Site(const LiveModel& model, Access access, SiteLimits limits)
    : m_model(model), m_access(std::move(access)), m_limits(limits), m_copies(limits.copies, limits.copyIdle) {}

std::map<std::string, std::string> Site::Headers() {
  return {{"Content-Security-Policy", kPolicy},
          {"X-Content-Type-Options", "nosniff"},
          {"X-Frame-Options", "DENY"},
          {"Referrer-Policy", "no-referrer"},
          {"Cross-Origin-Opener-Policy", "same-origin"},
          {"Cross-Origin-Resource-Policy", "same-origin"},
          {"Permissions-Policy", "camera=(), geolocation=(), microphone=()"},
          {"Cache-Control", "no-store"}};
}

bool Site::Admits(const PageRequest& request, std::string& path, PageAnswer& refusal) const {
  refusal = Refuse(404, "there is nothing here; the address of the page is the one that dtsdb serve has printed");
  if (!m_access.IsOwnHost(request.host)) {
    refusal = Refuse(403, "this host name is not one of the server; use its address in digits, or localhost");
    return false;
  }
  if (!Access::IsOwnOrigin(request.origin, request.host)) {
    refusal = Refuse(403, "requests from other pages are not answered");
    return false;
  }
  if (request.path.empty() || request.path.front() != '/') return false;
  const std::size_t end = std::min(request.path.find('/', 1), request.path.size());
  if (!m_access.IsToken(std::string_view(request.path).substr(1, end - 1))) return false;
  path = request.path.substr(end);
  return true;
}

bool Site::TakesBody(const PageRequest& request) const {
  std::string path;
  PageAnswer refusal;
  return request.method == "POST" && Admits(request, path, refusal) && path == "/api/whatif";
}

PageAnswer Site::AnswerTo(const PageRequest& request) {
  std::string path;
  PageAnswer refusal;
  if (!Admits(request, path, refusal)) return refusal;
  const bool isTrial = path == "/api/whatif";
  if (request.method != (isTrial ? "POST" : "GET")) {
    refusal = Refuse(405, "this address takes " + std::string(isTrial ? "POST" : "GET"));
    refusal.headers["Allow"] = isTrial ? "POST" : "GET";
    return refusal;
  }
  if (path.empty()) return {308, kTextType, "", {{"Location", "/" + m_access.Token() + "/"}}};
  constexpr std::string_view kApi = "/api/";
  if (path.starts_with(kApi)) return Api(path.substr(kApi.size()), request);
  return File(path == "/" ? "index.html" : path.substr(1));
}

PageAnswer Site::File(const std::string& name) {
  const Asset* const asset = FindAsset(name);
  if (asset == nullptr) return Refuse(404, "the page has no such file");
  return {200, std::string(asset->type), std::string(asset->bytes)};
}

PageAnswer Site::Api(const std::string& name, const PageRequest& request) {
  if (name == "events") {
    PageAnswer answer;
    answer.isEventStream = true;
    return answer;
  }
  if (name == "whatif") return Try(request);
  if (name == "script") return Script(Parameter(request, "viewer"));
  return Document(name, request);
}

PageAnswer Site::Document(const std::string& name, const PageRequest& request) {
  const DocumentKind* const kind = FindDocument(name);
  if (kind == nullptr) return Refuse(404, "there is no such document");
  const std::string argument = *kind->parameter != '\0' ? Parameter(request, kind->parameter) : "";
  if (argument.size() > kLongestArgument) return Refuse(400, "no identity is as long as that");
  const std::string viewer = Parameter(request, "viewer");
  if (!viewer.empty()) return DocumentOfCopy(name, argument, viewer);
  const auto state = m_model.Now();
  const auto write = [&](const Documents& documents) { return WriteDocument(documents, name, argument); };
  if (name == "search") {
    return AnswerWith(
        state->InTurn([&](const analysis::Model&, const Documents& documents) { return write(documents); }));
  }
  const Result<DocumentText> text = state->Get(name + "?" + argument, write);
  if (!text) return Refuse(text.error());
  return {200, kJsonType, **text};
}

PageAnswer Site::DocumentOfCopy(const std::string& name, const std::string& argument, const std::string& viewer) {
  const auto copy = m_copies.Find(viewer);
  if (!copy) return Refuse(410, "this viewer has no copy; hand the list of events over again");
  const std::lock_guard lock(copy->mutex);
  if (!copy->whatIf) return Refuse(410, "this viewer has no copy; hand the list of events over again");
  return AnswerWith(
      copy->whatIf->InTurn([&](const Documents& documents) { return WriteDocument(documents, name, argument); }));
}

PageAnswer Site::Try(const PageRequest& request) {
  if (request.body.size() > m_limits.body) return Refuse(413, "the request is too large");
  const Result<Trial> trial = ReadTrial(request.body, m_limits.events);
  if (!trial) return Refuse(400, trial.error().message);
  const auto now = m_model.Now();
  if (trial->asked.empty()) {
    m_copies.Drop(trial->viewer);
    const Changes none =
        now->InTurnWith(*now, [](const Documents& a, const Documents& b) { return a.ChangesSince(b); });
    return {200, kJsonType, TrialText(now->Version(), *trial, {}, none)};
  }
  const auto copy = m_copies.FindOrMake(trial->viewer);
  if (!copy) return Refuse(503, copy.error().message);
  const std::lock_guard lock((*copy)->mutex);
  std::unique_ptr<WhatIf>& whatIf = (*copy)->whatIf;
  // Where another version is shown by now, the list begins there.
  if (whatIf && trial->version && *trial->version != whatIf->State().Version()) whatIf.reset();
  if (!whatIf) {
    Result<std::unique_ptr<WhatIf>> begun = WhatIf::Begin(now);
    if (!begun) return Refuse(begun.error());
    whatIf = std::move(*begun);
  }
  if (const Result<void> tried = whatIf->Try(trial->Events()); !tried) {
    whatIf.reset();
    return Refuse(tried.error());
  }
  return {200, kJsonType, TrialText(whatIf->State().Version(), *trial, whatIf->Events(), whatIf->ChangesSinceState())};
}

PageAnswer Site::Script(const std::string& viewer) {
  const auto copy = m_copies.Find(viewer);
  std::string script;
  if (copy) {
    const std::lock_guard lock(copy->mutex);
    if (copy->whatIf) {
      const Result<std::string> text = copy->whatIf->Script();
      if (!text) return Refuse(text.error());
      script = *text;
    }
  }
  return {200, kTextType, script, {{"Content-Disposition", "attachment; filename=\"what-if.txt\""}}};
}

}  // namespace dtsdb::page
