/// \file
/// Outage screening: what each outage of a component, or of two at a time, would cost.
#pragma once

#include <QList>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "analysis/effect.h"
#include "analysis/error.h"
#include "analysis/model.h"
#include "validation/finding.h"

namespace dtsdb::analysis {

/// A component that may fail.
struct OutageComponent {
  std::string table;     ///< LN, XF, DLN, ZBR, CB, BUS or UN
  std::string identity;  ///< in UTF-8

  /// Two are the same when all members are.
  bool operator==(const OutageComponent&) const = default;
};

/// What goes out at once: one component or several. A breaker is opened, a branch or unit taken out of service, and of
/// a bus every breaker on its node is opened.
using Outage = std::vector<OutageComponent>;

/// Such as "LN L1", "LN L1 + CB B1".
std::string OutageText(const Outage& outage);

/// The tables whose components can go out.
const std::vector<std::string>& OutageTables();

/// The outage of each component of `tables` that is in service: branches and units that aren't out, closed breakers,
/// and all buses; table by table, in their order. The model is validated where it isn't good. An Error when one of
/// `tables` isn't of OutageTables(), and when the model has errors.
Result<std::vector<Outage>> SingleOutages(const Model& model, const std::vector<std::string>& tables);

/// All pairs of two of `outages`, which are all different, in their order: the first with each behind it, and so on.
std::vector<Outage> AllPairs(const std::vector<Outage>& outages);

/// `count` of these pairs at random, all of them when there are no more, in the order of AllPairs. The same seed gives
/// the same pairs on every platform.
std::vector<Outage> SamplePairs(const std::vector<Outage>& outages, std::size_t count, std::uint64_t seed);

/// A live part of what was one live island.
struct IslandPart {
  std::string station;    ///< identity of the station of `node`
  std::string node;       ///< its first node on the voltage levels of what went out
  std::string reference;  ///< table and identity of what the topology chooses as its reference; empty for none
};

/// What an outage has done to a live island.
struct IslandLoss {
  int island = 0;                 ///< its number without any outage
  std::string reference;          ///< its reference, likewise; such as "UN G1", empty for none
  std::vector<IslandPart> parts;  ///< more than one: it has split; none: it has died
  bool lostReference = false;     ///< a part is live and has another reference, or none
};

/// What an outage costs.
struct OutageResult {
  Outage outage;                    ///< what was taken out
  std::vector<Supplied> lost;       ///< what goes dead or off: stations, buses, units and loads
  SupplyTotals totals;              ///< of `lost`
  std::vector<IslandLoss> islands;  ///< by number: those that split, died or lost their reference
  bool fullRun = false;             ///< the outage was worked out by a full run
  std::string run;                  ///< how the outage was followed up, as RunReport::Text
  std::string note;                 ///< what a reader should know: "no closed breaker on it", "out already"
  std::string failure;              ///< why there is no topology with the outage; empty when there is one

  /// True when something goes dead or off, or an island splits, dies or loses its reference.
  bool HasEffect() const { return !lost.empty() || !islands.empty(); }
};

/// What a screening has brought.
struct Screening {
  std::vector<OutageResult> outages;  ///< sorted by what is lost
  QList<Finding> findings;            ///< of the run before all outages, as in Topology
  std::vector<std::string> leftOut;   ///< likewise
};

/// How outages are tried.
struct ScreeningOptions {
  std::size_t jobs = 1;  ///< number of threads, each with a copy of the model; they end before the call returns
  /// Called now and then on the caller's thread with the number of outages done.
  std::function<void(std::size_t)> progress;
  /// Asked between outages on the caller's thread; true ends the screening, whose result is then an Error.
  std::function<bool()> isCancelled;
};

/// Tries each outage out on a copy of the model, from the state that it is in; the model stays as it is, but for being
/// validated where it wasn't good. The results are sorted by what is lost: those without a topology first, then by MW
/// of loads and by buses, most first, then by their text. They don't depend on `jobs`.
///
/// An outage costs one run, and another one back (CarefulRunner); beyond these time follows what changes. An Error when
/// the model has errors or no topology, and when an outage names an unknown component.
Result<Screening> Screen(const Model& model, const std::vector<Outage>& outages, const ScreeningOptions& options = {});

}  // namespace dtsdb::analysis
