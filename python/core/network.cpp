#include "python/core/network.h"

namespace dtsdb::python {

using analysis::Model;
using analysis::Outcome;
using analysis::Switching;

Network::Turn::Turn(const Network& network) : m_network(network), m_lock(network.m_mutex, std::defer_lock) {
  if (network.m_owner == std::this_thread::get_id()) {
    RefuseCall(network.m_name + ": the model is at work; a callback can't use it", network.m_name);
  }
  m_lock.lock();
  network.m_owner = std::this_thread::get_id();
}

Network::Turn::~Turn() { m_network.m_owner = std::thread::id(); }

Model& Network::Required() const {
  if (!m_model) RefuseCall(m_name + ": the model is closed; open it again", m_name);
  return *m_model;
}

std::uint64_t Network::NextNumber() {
  static std::atomic<std::uint64_t> last = 0;
  return ++last;
}

void Network::Close() {
  const Turn turn(*this);
  m_switching.reset();
  m_model.reset();
}

bool Network::IsClosed() const {
  const Turn turn(*this);
  return !m_model;
}

Snapshot Network::Now() const {
  const Turn turn(*this);
  SettleTables(Required().Tables());  // so that reading changes nothing
  return {Required().Shared(), m_pin};
}

/// Goes on in a copy when somebody reads the tables.
void Network::Unshare() {
  Model& model = Required();
  if (m_pin.use_count() == 1) return;
  Model copy = Take(model.Copy());
  m_switching.reset();
  model = std::move(copy);
  m_pin = std::make_shared<const char>();
}

void Network::RequireGood() {
  if (Required().IsGood()) return;
  Unshare();
  m_switching.reset();
  Take(Required().RequireGood());
}

void Network::RequireTopology() {
  if (HasTopology(Required())) return;
  Unshare();
  m_switching.reset();
  Take(analysis::WorkOutTopology(Required()));
}

analysis::Topology Network::WorkOutTopology() {
  const Turn turn(*this);
  if (!m_switching) {
    Unshare();
    return Take(analysis::WorkOutTopology(Required()));
  }
  analysis::Topology topology = m_switching->Now();
  topology.findings = m_lastRun.findings;
  topology.leftOut = m_lastRun.leftOut;
  return topology;
}

Switching& Network::RequireSwitching() {
  Unshare();
  if (!m_switching) {
    m_switching = Take(Switching::Begin(Required()));
    m_lastRun = m_switching->First().run;
  }
  return *m_switching;
}

Mark Network::MakeMark() {
  const Turn turn(*this);
  RequireSwitching();
  return {analysis::Moment(Required()), m_number, m_edits};
}

Outcome Network::Apply(const std::vector<SwitchEvent>& events) {
  Switching& switching = RequireSwitching();
  ++m_changes;
  analysis::Result<Outcome> outcome = switching.Apply(events);
  if (!outcome) {
    m_switching.reset();
    throw Raised(outcome.error());
  }
  if (outcome->run.kind != analysis::RunKind::kNothing) m_lastRun = outcome->run;
  return std::move(*outcome);
}

Outcome Network::Switch(const std::vector<SwitchEvent>& events) {
  const Turn turn(*this);
  return Apply(events);
}

void Network::RequireSameRecords(const Mark& mark) const {
  if (mark.network != m_number) RefuseCall(m_name + ": these states are those of another model", m_name);
  if (mark.edits == m_edits) return;
  RefuseCall(m_name + ": records were edited since, so that the states can't be brought back; open the model again",
             m_name);
}

Outcome Network::GoBack(const Mark& mark) {
  const Turn turn(*this);
  RequireSameRecords(mark);
  return Apply(mark.moment.WayBack(Required()));
}

analysis::Effect Network::EffectSince(const Mark& mark) {
  const Turn turn(*this);
  RequireSameRecords(mark);
  RequireTopology();
  return mark.moment.EffectUntil(Required());
}

std::pair<Model, std::uint64_t> Network::CopyToEdit() const {
  const Turn turn(*this);
  return {Take(Required().Copy()), m_changes};
}

void Network::Replace(Model edited, std::uint64_t changes) {
  const Turn turn(*this);
  Required();
  if (changes != m_changes) {
    RefuseCall(m_name + ": the model was switched or edited since these edits were begun; begin them again", m_name);
  }
  m_switching.reset();
  m_model = std::move(edited);
  m_pin = std::make_shared<const char>();
  ++m_edits;
  ++m_changes;
}

}  // namespace dtsdb::python
