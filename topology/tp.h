/// \file
/// The topology processor: from breaker and device states to bus sections, islands and live or dead equipment.
#pragma once

#include <memory>
#include <vector>

#include "model/dtsdb.h"

namespace dtsdb {

namespace internal {
struct State;
struct WorkArrays;
}  // namespace internal

/// Works out the electrical topology of a validated model.
///
/// A TP stands on a DTSDB, which it does not own and which must outlive it. tpAllnew works out everything; after it
/// tpSetCompStatus or tpReadTptrace change single states and tpChange follows them up, in proportion to what they
/// reach. Both write their results into the tables BS, BSL, ISLAND and GLOBAL and into the section and status fields
/// of nodes, buses, devices, branches and breakers; docs/topology.md describes them. Between runs a TP keeps its two
/// work arrays.
///
/// Between its runs the results belong to the TP: read them, but write none through a reference. A table that was
/// filled anew (by Clear, Add, Remove, SetData, SetSize, Compact, Serialize) is noticed, and the next run goes over
/// everything.
///
/// Copying or assigning a TP shares the tables and the work arrays; an array goes with the last TP that uses it.
/// After a run that failed the results are as far as the run came: only another tpAllnew puts them right. No call
/// throws. One thread at a time may use a TP and the DTSDB under it.
class TP {
 public:
  /// Takes the 46 tables of `pDatabase`. On a null pointer one warning is written and the TP works on an empty
  /// model of its own.
  explicit TP(DTSDB* pDatabase);
  TP(const TP&) = default;
  TP& operator=(const TP&) = default;
  virtual ~TP();

  /// Works out everything from nothing. Returns 1, or 0 when a stage failed; each failing level has then written
  /// one line through qDebug. On a model that was not validated, or not with success, writes one line on the
  /// standard output, changes nothing and returns 1.
  int tpAllnew();

  /// Brings the topology up to date after the changes that wait in the TPTRACE table, and logs in TPL and CHND what it
  /// did. Runs tpAllnew instead when there was no full run yet or 50 rows or more are waiting; these then stay in the
  /// table. Returns 1, or 0 when a stage failed, with one line of each failing level through qDebug: then only tpAllnew
  /// puts the results right. On an invalid model writes one line through qDebug, changes nothing and returns 1.
  int tpChange();

  /// Switches component `id`, of the table that type code `type` names (docs/topology.md), on (closed, in service) or
  /// off. Returns 1 when tpChange has to follow the change up: a TPTRACE row waits for it. Returns 0 when nothing had
  /// to change, when the identity is unknown (one line on the standard output) or the type, and when a breaker was
  /// switched whose nodes are joined by others all the same: its state has then changed, without a row.
  int tpSetCompStatus(const char* id, int type, bool on);
  /// Gives the breakers the states of their status points. Leaves no row for tpChange: only tpAllnew follows. Always 1.
  int tpRefreshCB();
  /// Takes the status points and the states of all components from the realtime database, and the breakers' from the
  /// status points. Leaves no row for tpChange: only tpAllnew follows. The caller commits. Always 1.
  int tpReadStatus(dbDatabase* db);
  /// Takes the changes that other programs have left in the realtime table tptrace since the last run: applies them,
  /// and puts them into the TPTRACE table in place of what waits there. Without any the table stays as it is. The
  /// caller commits. Always 1.
  int tpReadTptrace(dbDatabase* db);

  /// Gives each live island a reference: a unit marked as one, else the section of a load marked as one, else the
  /// unit with the greatest margin. Goes by the stored BS and ISLAND tables. Returns the number of islands whose
  /// reference it had to choose itself; 0 with one line on the standard output when there is no live island.
  int tpSetRefUN();

  /// Loads what a run works on from the realtime database (docs/realtime-exchange.md), in one transaction. A breaker
  /// that another program has marked as read open is open in the model. Always 1.
  int tpReadFastdb(dbDatabase* db);
  /// Stores the results of tpAllnew and commits. Of loads, units, buses and sections that exist only the topology's
  /// own columns are written. Always 1.
  int tpWriteFastdb(dbDatabase* db);

  /// Stores what tpChange has done, as little of it as will do, and commits: the log under new numbers; sections, list,
  /// islands and units; and the records of the changed voltage levels. GLOBAL isn't written. Always 1.
  int tpWriteChangedData(dbDatabase* db);

  /// Number of voltage levels with at least one node.
  int getAllKVCount() const { return m_allKvCount; }
  /// Number of voltage levels that the last run processed.
  int getChangedKVCount() const { return m_changedKvCount; }
  /// Copies the physical numbers of the voltage levels with nodes to `out`, in list order. False, and `out`
  /// untouched, when `size` is below getAllKVCount().
  bool getAllKVs(int* out, int size) const;
  /// The same for the voltage levels of the last run.
  bool getChangedKVs(int* out, int size) const;
  /// 1 if the last tpChange logged anything in the TPL table, else 0.
  int tpBsChanged() const;
  /// The number under which the last tpWriteChangedData stored the first row of the log, -1 for none.
  int tpGetStartNo() const { return m_startNo; }
  /// The same for the last row.
  int tpGetEndNo() const { return m_endNo; }

 private:
  friend class TpProbe;

  // The stages under the names of the interface, and what they stand on; the work lies in topology/internal/. An int
  // returned is 1 for success and 0 for failure.

  // State
  void tpClear();
  void tpInit();
  int tpListInsert(int kind, int* cursor);
  int tpListDelete(int kind, int* cursor);

  // Node pass
  int tpNodeInit();
  int tpNodeSort(bool allnew);
  int tpLegalBs(int nd, int kv, int end, bool allnew);
  int tpIllegalBs(int nd, int kv, int end, bool allnew);
  int tpNodeConnect(int kv, int nd, int* bs);

  // Bus-section list
  int tpBslBuild(bool allnew);
  int tpBsBranch(int kv, int nd, unsigned* endFlags, int endBit, int ind, int iznd, unsigned* status, int outBit,
                 int open1Bit, int open2Bit, unsigned* tpStatus, int iso1Bit, int iso2Bit, int bothBit, int* ibs,
                 int* izbs);
  void tpAssignBsToDouble();
  int tpBslShunt(int kv, int ref, int nd, int* bs, int kind, unsigned* status, int offBit, int isoBit,
                 unsigned* tpStatus, int deadBit);
  int tpBslBranch(int kv, int nd, int ref, int kind, int ind, int iznd, int* ibs, int* izbs);

  // Fragments, neighbours, run log
  int tpBsFragment(int kv, int nd, int* bs, bool open);
  int tpBsFragment(int kv, int nd);
  int tpAddBrokenBs(int kv, int nd, int& bs);
  int tpBsNeighbor(int bs, int* un, int* devices, int* count, int* neighbours);
  int tpTpl(int ref, int kind, int status, int oldValue, int newValue, const char* text);

  // Islands and status
  int tpBsSort(bool* changed);
  int tpUpdateStatus();
  bool tpFindPassPath(int cb);

  // Incremental run
  int tpChangedKv();
  int tpBsRestore();
  int tpComponentChanged(bool* islandChanged);
  int tpBranchChanged(int kv, int nd, int end, int kind, int endBit, unsigned* endFlags1, unsigned* endFlags2, int nd1,
                      int nd2, int* bs1, int* bs2, unsigned* status, int offBit, int open1Bit, int open2Bit,
                      unsigned* tpStatus, int tp1Bit, int tp2Bit, int tpBothBit, bool* islandChanged, bool* kvChanged);
  int tpShuntChanged(int device, int nd, int* bs, int kind, unsigned* status, int offBit, int isolatedBit,
                     unsigned* tpStatus, int tpDeadBit, bool* kvChanged, bool* islandChanged);

  // Realtime database; always true
  bool WriteBSToFastdb(dbDatabase* db);
  bool WriteLDToFastdb(dbDatabase* db);
  bool WriteUNToFastdb(dbDatabase* db);
  bool WriteBUSToFastdb(dbDatabase* db);

  /// What the stages work on: everything below, by reference.
  internal::State Lend();

  DTSDB* m_pDatabase = nullptr;
  int* m_changedKvs = nullptr;
  int m_changedKvCount = 0;
  int* m_allKvs = nullptr;
  int m_allKvCount = 0;
  int m_startNo = -1;
  int m_endNo = -1;
  bool m_allnew = true;
  BS* m_bs = nullptr;
  BSL* m_bsl = nullptr;
  /// The tables that the model had when the TP was made.
  std::shared_ptr<DTSDB> m_tables;
  /// What m_bs, m_bsl and m_allKvs point into, and what is kept beside them.
  std::shared_ptr<internal::WorkArrays> m_arrays;
  /// What m_changedKvs points into.
  std::shared_ptr<std::vector<int>> m_changedKvsOwner;
};

}  // namespace dtsdb
