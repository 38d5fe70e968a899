/// \file
/// A model that is shown while others change it: its newest version, and the news of it.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "analysis/error.h"
#include "analysis/model.h"
#include "model/table_kinds.h"
#include "page/commit_log.h"
#include "page/documents.h"
#include "page/event_hub.h"
#include "page/followed_database.h"
#include "page/live_state.h"

namespace dtsdb::page {

/// A model of any form that is shown as it is, or a realtime database that is followed.
///
/// One thread makes the looks; any thread takes the newest state. The state of a database is what its programs have
/// stored there: colours and islands are those of the last run of whoever works out its topology. A model that is not
/// marked good, or has no topology, gets it here, in memory. Powers through breakers are worked out here in either
/// case.
class LiveModel {
 public:
  /// Shows a model that nobody changes. One with errors is shown without states.
  static analysis::Result<std::unique_ptr<LiveModel>> Show(const analysis::Model& model, Subject subject);
  /// Follows a realtime database, which must be there. `hub` must outlive the model.
  static analysis::Result<std::unique_ptr<LiveModel>> Follow(const std::string& database, Subject subject,
                                                             EventHub& hub);

  /// The newest state.
  std::shared_ptr<const LiveState> Now() const;

  /// Looks whether the database has changed, and sends what has happened to the hub.
  void Look();

 private:
  LiveModel(std::string name, Subject subject, EventHub* hub)
      : m_name(std::move(name)), m_subject(std::move(subject)), m_hub(hub) {}

  analysis::Result<void> Take(const analysis::Model& model);
  analysis::Result<void> TakeLater(const analysis::Model& model);
  void TakeRead(DatabaseLook look);
  void Publish(std::shared_ptr<const LiveState> state);
  void ShowTrouble(const char* kind, const std::string& text);
  void EndTrouble();
  Changes ChangesSince(const LiveState& before) const;
  void SendCommit(const CommitLog& log, const Changes& changes);
  void Send(const char* name, const std::string& data);
  void Greet();

  std::string m_name;  // what errors call the model
  Subject m_subject;
  EventHub* m_hub;
  std::unique_ptr<FollowedDatabase> m_database;
  std::shared_ptr<std::mutex> m_turn;
  int m_version = 0;
  std::vector<TableKind> m_changed;  // since the newest state, where that couldn't be made of what was read
  EventText m_trouble;               // the banner for as long as the newest state isn't that of the database
  mutable std::mutex m_mutex;
  std::shared_ptr<const LiveState> m_now;
};

}  // namespace dtsdb::page
