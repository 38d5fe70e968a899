/// \file
/// How far a full run follows the chains of a damaged model.
#pragma once

#include "include/chain.h"
#include "model/dtsdb.h"

namespace dtsdb::internal {

/// Steps for each row of the relations that a run on a damaged model may take: more than the stages need to visit each
/// row once, few enough for the time to grow with the model and not with its square.
constexpr long long kStepsPerRow = 32;

/// The limit for a run that walks the relations `Row`: none, unless the chains of one of them have more rows than the
/// table. Only a damaged model has such chains.
template <class... Row>
long long StepsAlong(DTSDB& model) {
  const bool fit =
      (ChainsFit(TableOf<Row>(model), TableOf<typename Relation<Row>::Parent>(model), Relation<Row>::kHead) && ...);
  return fit ? ChainLimit::kNone : kStepsPerRow * (0LL + ... + TableOf<Row>(model).GetSize());
}

/// The limit for a full run of the topology.
inline long long StepsOfFullRun(DTSDB& model) {
  return StepsAlong<R_ST_KV, R_KV_ND, R_KV_UN, R_KV_LD, R_KV_CP, R_ND_CB2, R_ND_LN2, R_ND_XF2, R_ND_DLN2, R_ND_ZBR2>(
      model);
}

}  // namespace dtsdb::internal
