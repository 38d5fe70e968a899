/// \file
/// A model as Python programs hold it: one thread at a time, and what they have read stays what it was.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "analysis/model.h"
#include "analysis/switching.h"
#include "python/core/errors.h"

namespace dtsdb::python {

/// The tables at one moment. Nobody changes them any more while a copy of it lives.
struct Snapshot {
  std::shared_ptr<DTSDB> tables;
  std::shared_ptr<const char> pin;  ///< Network counts its users
};

/// The states of all components at one moment, and the network and the records that they belong to.
struct Mark {
  analysis::Moment moment;
  std::uint64_t network = 0;
  std::uint64_t edits = 0;
};

/// A model that several Python threads may share. Each call has it to itself; the others wait, without holding up the
/// interpreter: no call here needs its lock, and none may be made with it.
///
/// Columns that a program has taken share the memory of the tables (Snapshot). A call that changes the model looks
/// whether there are any; then it goes on in a copy, and the columns keep the tables that they were taken from.
///
/// Every call throws Raised when the model is closed, and when it comes from a callback that the model itself is
/// waiting for.
class Network {
 public:
  explicit Network(analysis::Model model) : m_name(model.Name()), m_model(std::move(model)) {}
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  /// The name by which errors call the model.
  const std::string& Name() const { return m_name; }

  /// Gives the model up. What was taken from it lives on.
  void Close();
  bool IsClosed() const;

  /// What `work(model)` returns, which changes nothing in it.
  template <class Work>
  auto Look(Work work) const {
    const Turn turn(*this);
    return work(Required());
  }

  /// What `work(model)` returns, which may change all but the records and their order.
  template <class Work>
  auto Change(Work work) {
    const Turn turn(*this);
    Unshare();
    m_switching.reset();
    return work(Required());
  }

  /// What `work(model)` returns; it needs a good model, which is validated where it isn't.
  template <class Work>
  auto WithGood(Work work) {
    const Turn turn(*this);
    RequireGood();
    return work(Required());
  }

  /// What `work(model)` returns; it needs a good model with a topology, which is worked out where there is none.
  template <class Work>
  auto WithTopology(Work work) {
    const Turn turn(*this);
    RequireTopology();
    return work(Required());
  }

  /// The tables as they are.
  Snapshot Now() const;

  /// The topology. One that switching has left is not worked out anew.
  analysis::Topology WorkOutTopology();

  /// The states as they are, to come back to. Works out a topology where there is none.
  Mark MakeMark();
  /// Switches, and follows it up with one run.
  analysis::Outcome Switch(const std::vector<SwitchEvent>& events);
  /// Brings all components back into their states. Refused when records were edited since, and for the mark of another
  /// network.
  analysis::Outcome GoBack(const Mark& mark);
  /// What has happened to the supply since the mark.
  analysis::Effect EffectSince(const Mark& mark);

  /// A copy of the model to edit; and how many edits it has had.
  std::pair<analysis::Model, std::uint64_t> CopyToEdit() const;
  /// Puts an edited copy in the place of the model. Refused when the model has changed since the copy was made.
  void Replace(analysis::Model edited, std::uint64_t changes);

 private:
  /// The model to oneself, as long as this lives.
  class Turn {
   public:
    explicit Turn(const Network& network);
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn();

   private:
    const Network& m_network;
    std::unique_lock<std::mutex> m_lock;
  };

  static std::uint64_t NextNumber();
  analysis::Model& Required() const;
  void Unshare();
  void RequireGood();
  void RequireTopology();
  analysis::Switching& RequireSwitching();
  analysis::Outcome Apply(const std::vector<SwitchEvent>& events);
  void RequireSameRecords(const Mark& mark) const;

  const std::string m_name;
  const std::uint64_t m_number = NextNumber();  // which network this is
  mutable std::mutex m_mutex;
  mutable std::atomic<std::thread::id> m_owner{};
  mutable std::optional<analysis::Model> m_model;  // nothing: closed
  std::shared_ptr<const char> m_pin = std::make_shared<const char>();
  std::optional<analysis::Switching> m_switching;  // what has made the topology in the tables
  analysis::RunReport m_lastRun;                   // of m_switching
  std::uint64_t m_edits = 0;
  std::uint64_t m_changes = 0;  // edits, and all that an edited copy would lack
};

}  // namespace dtsdb::python
