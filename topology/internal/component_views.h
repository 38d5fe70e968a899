/// \file
/// Branches and shunt devices as the stages see them, whatever their class.
#pragma once

#include "topology/internal/network.h"

namespace dtsdb::internal {

/// One end of a branch.
struct BranchEnd {
  int nd;
  i32* bs;          ///< the branch's section at this end
  bool open;        ///< the end itself is open
  u32 isolatedBit;  ///< of this end in the branch's `tp_status`
};

/// A branch: its from end and its to end, what it is asked to be and what the topology has found.
struct BranchView {
  BranchEnd ends[2];
  bool out;  ///< out of service
  u32* tpStatus;
  u32 bothBit;  ///< of both ends in `tp_status`

  /// The end that stands on node `nd`: 0, or 1 when the from end stands on another node.
  int EndAt(int nd) const { return nd != ends[0].nd ? 1 : 0; }
  /// End `end` as it is seen from node `nd`, which in a damaged model may be neither of the branch's.
  BranchEnd EndFrom(int end, int nd) const { return {nd, ends[end].bs, ends[end].open, ends[end].isolatedBit}; }
  bool IsIsolated(int end) const { return (*tpStatus & ends[end].isolatedBit) != 0; }
  /// Writes into `tp_status` whether end `end` is isolated.
  void SetIsolated(int end, bool isolated) const { SetBit(*tpStatus, ends[end].isolatedBit, isolated); }
  /// Writes into `tp_status` whether both ends are.
  void SetBothIsolated() const { SetBit(*tpStatus, bothBit, IsIsolated(0) && IsIsolated(1)); }
};

/// The view of a branch record.
template <class Branch>
BranchView ViewOf(Branch& branch) {
  using Kind = BranchKind<Branch>;
  return {{{branch.ind, &branch.ibs, (branch.status & Kind::kOpen1) != 0, TP_END1_ISOLATED},
           {branch.iznd, &branch.izbs, (branch.status & Kind::kOpen2) != 0, TP_END2_ISOLATED}},
          (branch.status & Kind::kOut) != 0,
          &branch.tp_status,
          TP_BOTH_DEAD};
}

/// The memory of a branch end: bit `bit` of `flags` in its end record is set when the end was isolated the last time
/// that it was worked out.
struct EndMemory {
  u32* flags;
  u32 bit;

  bool IsIsolated() const { return (*flags & bit) != 0; }
  void SetIsolated(bool isolated) const { SetBit(*flags, bit, isolated); }
};

/// A unit, load or shunt device.
struct ShuntView {
  int number;
  int kind;  ///< kind code of its table
  int nd;
  i32* bs;
  bool off;  ///< switched off
  u32* status;
  u32 isolatedBit;  ///< in `status`
  u32* tpStatus;
  u32 deadBit;  ///< in `tp_status`

  bool IsIsolated() const { return (*status & isolatedBit) != 0; }
  /// Writes into both words whether the device is isolated.
  void SetIsolated(bool isolated) const {
    SetBit(*status, isolatedBit, isolated);
    SetBit(*tpStatus, deadBit, isolated);
  }
};

/// The view of the record of a device.
template <class Device>
ShuntView ViewOf(Device& device, int number) {
  return {number,         kKindOf<Device>, device.ind,        &device.ibs, (device.status & SHUNT_OFF) != 0,
          &device.status, SHUNT_ISOLATED,  &device.tp_status, SHUNT_DEAD};
}

}  // namespace dtsdb::internal
