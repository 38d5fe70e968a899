/// \file
/// What the page shows of a model, as JSON documents. docs/page.md describes them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "analysis/error.h"
#include "analysis/model.h"
#include "validation/message_catalog.h"

namespace dtsdb::page {

/// What the page calls the model. Texts are UTF-8.
struct Subject {
  std::string name;                        ///< as a title
  std::string source;                      ///< where it was read from
  bool live = false;                       ///< its states go on changing
  Language language = Language::kEnglish;  ///< of the findings
  analysis::StationPositions positions{};  ///< where stations stand on the map, unless the model itself has positions
};

/// A record by its table, its identity in UTF-8, and the identity of its station, which is empty for what is in none.
struct Thing {
  std::string table;
  std::string id;
  std::string station;
};

/// What lies between two states of one grid.
struct Changes {
  std::vector<Thing> becameDead;  ///< stations, buses, units and loads, each class in the order of its table
  std::vector<Thing> becameLive;  ///< likewise
  int islandsBefore = 0;          ///< number of live islands
  int islandsAfter = 0;
  double lostLoad = 0;                ///< MW of the loads that became dead
  std::vector<std::string> stations;  ///< those whose document differs, in the order of their table
};

/// The changes as the JSON object of that name in the documents.
std::string ToJson(const Changes& changes);

/// The documents on a model in one state. They are written from its tables when they are asked for: these must stay as
/// they are while the documents are in use, so a model that goes on being switched is handed over as a copy. One thread
/// at a time, also for the documents that come of one another. Nothing here throws but what is out of memory.
class Documents {
 public:
  /// Of a model as its validation left it; with a topology (analysis::WorkOutTopology) where that found it good. A
  /// model without a topology has tables and findings, and no pictures and states.
  Documents(const analysis::Model& model, const analysis::Validation& validation, Subject subject, int version = 1);
  Documents(Documents&&) noexcept;
  Documents& operator=(Documents&&) noexcept;
  ~Documents();

  /// Of the same grid in a newer state. `model` has the same records in the same order, and a topology.
  Documents Later(const analysis::Model& model, int version) const;
  /// Of the same grid as somebody tries it out. What differs from the state here is marked as changed. The documents
  /// here needn't outlive the others; the version stays.
  Documents Tried(const analysis::Model& model) const;

  int Version() const;
  /// False where the model has errors or no topology.
  bool HasPictures() const;
  /// The identities of all stations in UTF-8, in the order of their table.
  std::vector<std::string> Stations() const;

  /// Name, summary and the tables with their fields.
  std::string Model() const;
  /// The columns of a table; the times of the last runs are left out. An Error of usage, with the nearest names, when
  /// there is none of this name.
  analysis::Result<std::string> Table(const std::string& name) const;
  /// The verdict, the islands, what is dead, and the sets of breakers without whole flows.
  std::string State() const;
  /// What the validation and the topology have found.
  std::string Findings() const;
  /// The map of the grid, laid out each time: keep it where it is asked for often. Without pictures its SVG is empty.
  std::string Grid() const;
  /// A station's diagram, and the state of each element in it. An Error when there is no such station or no topology.
  analysis::Result<std::string> Station(const std::string& id) const;
  /// Its diagram alone, a JSON string; an empty one where there is none.
  std::string StationSvg(const std::string& id) const;
  /// At most 50 records whose identity is like `text`: first those that are called so, those that begin with it, then
  /// those that contain it; where there are none, those near to it.
  std::string Search(const std::string& text) const;
  /// What a search goes through: an array of table, identity and station for each record.
  std::string Records() const;

  /// What has changed from `before`, documents of the same grid, to these.
  Changes ChangesSince(const Documents& before) const;

 private:
  struct Content;
  explicit Documents(std::unique_ptr<Content> content);

  std::unique_ptr<Content> m_content;
};

}  // namespace dtsdb::page
