# Written by scripts/generate from the description in schema/: change it there.
from typing import Any, Iterator, Literal, Mapping, overload

import numpy as np
from numpy.typing import NDArray

from dtsdb import _core
from dtsdb.table import Table

class ANALOGTable(Table):
    """Analog measurement point (遥测).

    id: measurement point identity; key of the table
    name: second text of the point; carried
    value: carried value
    quality: carried byte
    idx: carried integer, default -1
    f1: carried value
    f2: carried value
    f3: carried value
    flag: carried byte
    """

    @overload
    def __getitem__(self, field: Literal["id", "name"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["value", "f1", "f2", "f3"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["quality"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: Literal["idx"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flag"]) -> NDArray[np.int8]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class BSTable(Table):
    """Bus-section.

    id: bus-section number = its array index
    name: section name
    ikv: physical KV number owning the section, -1 none
    f0: carried value
    island: -2 unassigned/reclaimed, -1 dead, >=0 island number
    status: bits: 1 BS_DEAD, 2 BS_ISOLATED, 32 BS_BROKEN
    flags: bits: 1 BS_BASE, 2 BS_UNCLAIMED
    next: next in chain
    prev: previous in chain, -1 on free list
    ibsl: index of the section's BSL entry, -1 none
    v: voltage magnitude, input of the breaker flow
    a: voltage angle in degrees, input of the breaker flow, in deg
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    n1: carried integer
    """

    @overload
    def __getitem__(self, field: Literal["id", "ikv", "island", "next", "prev", "ibsl", "n1"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["name"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["f0", "v", "a", "f1", "f2", "f3", "f4"]) -> NDArray[np.float64]: ...
    @overload
    def __getitem__(self, field: Literal["status", "flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class BSLTable(Table):
    """Entry of the bus-section list.

    id: own index
    next: next entry, free-list link
    prev: previous entry, -1 on free list
    kind: 1-based table number of the referenced record
    ref: physical number of the referenced record; BS index for kind 2
    """

    @overload
    def __getitem__(self, field: Literal["id", "next", "prev", "ref"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["kind"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class BUSTable(Table):
    """Physical bus on a voltage level.

    id: identity of the physical bus (物理母线 in the messages)
    kv: identity of the owning KV
    nd: node identity of the bus
    ind: node number, into ND
    ibs: bus-section number
    ana_v: voltage measurement identity
    ana_a: angle measurement identity
    iana_v: index of ana_v in ANALOG, -1 absent
    iana_a: index of ana_a in ANALOG, -1 absent
    v: voltage value
    a: angle value
    f1: carried value
    f2: copy of KV.vmax, made by the validation, in kV
    f3: copy of KV.vmin, made by the validation, in kV
    tp_status: bit 1: the bus lies in a dead section
    r_kv_bus: number of the R_KV_BUS row of this bus
    """

    @overload
    def __getitem__(self, field: Literal["id", "kv", "nd", "ana_v", "ana_a"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "ibs", "iana_v", "iana_a", "r_kv_bus"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["v", "a"]) -> NDArray[np.float64]: ...
    @overload
    def __getitem__(self, field: Literal["f1", "f2", "f3"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class CBTable(Table):
    """Breaker or switch between two nodes of a voltage level.

    id: breaker identity
    kv: KV identity
    flags: bits 1 and 4: breaker type, exactly one set in a valid model; 0x100: the breaker is open; 0x800: read as open by the realtime exchange; 0x2000: a ZBR stands on the breaker, set by the validation and by AddZBR
    status_id: identity of the STATUS point of the breaker
    istatus: index of status_id in STATUS, -1 absent
    cb2: number of the CB2 row of the from end
    zcb2: number of the CB2 row of the to end
    nd: from-end node identity
    ind: from-end node number
    znd: to-end node identity
    iznd: to-end node number
    ibs: from-end bus-section
    izbs: to-end bus-section
    tp_status: bit 1 from side isolated, 2 to side isolated, 4 both sides dead; bits 8, 16, 32: the breaker's class in the breaker flow
    r_kv_cb: number of the R_KV_CB row
    """

    @overload
    def __getitem__(self, field: Literal["id", "kv", "status_id", "nd", "znd"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["flags", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: Literal[
        "istatus", "cb2", "zcb2", "ind", "iznd", "ibs", "izbs", "r_kv_cb"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class CB2Table(Table):
    """End of a breaker.

    id: breaker identity plus end suffix
    icb: number of the owning CB
    r_nd_cb2: number of the R_ND_CB2 row
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["icb", "r_nd_cb2"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class CHNDTable(Table):
    """Node that changed section in an incremental run.

    id: change sequence number
    ind: node number
    ibs_new: new bus-section
    ibs_old: old bus-section
    ikv: KV number
    """

    @overload
    def __getitem__(self, field: Literal["id", "ind", "ibs_new", "ibs_old", "ikv"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class COTable(Table):
    """Company.

    id: company identity
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    f7: carried value
    f8: carried value
    r_co_dv: head of the R_CO_DV chain of this company, -1 none
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["r_co_dv"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class CPTable(Table):
    """Capacitor or reactor.

    id: capacitor/reactor identity
    kv: KV identity
    nd: node identity
    ind: node number
    ibs: bus-section
    ana_q: reactive measurement identity
    iana_q: index of ana_q in ANALOG
    status: component status bits 1 and 4
    tp_status: bit 1: the device lies in a dead section
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    p: active power, input of the breaker flow, in MW
    q: reactive power, input of the breaker flow, in Mvar
    f5: carried value
    r_kv_cp: number of the R_KV_CP row
    """

    @overload
    def __getitem__(self, field: Literal["id", "kv", "nd", "ana_q"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "ibs", "iana_q", "r_kv_cp"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: Literal["f1", "f2", "f3", "f4", "p", "q", "f5"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class DLNTable(Table):
    """DC line between two stations.

    id: DC line identity
    dv: district identity
    nd: from node identity
    ind: from node number
    znd: to node identity
    iznd: to node number
    ibs: from bus-section
    izbs: to bus-section
    dln2: DLN2 row of from end
    zdln2: DLN2 row of to end
    st: from station identity
    zst: to station identity
    kv: from KV identity
    zkv: to KV identity
    ana_p: from P measurement
    ana_q: from Q measurement
    ana_i: from I measurement
    zana_p: to P measurement
    zana_q: to Q measurement
    zana_i: to I measurement
    iana_p: index in ANALOG
    iana_q: index in ANALOG
    iana_i: index in ANALOG
    izana_p: index in ANALOG
    izana_q: index in ANALOG
    izana_i: index in ANALOG
    status: bit 4 out of service, 1 from end open, 2 to end open; bit 32: the line's district is that of its to end only
    tp_status: bit 1 from end isolated, 2 to end isolated, 4 both dead
    r_dv_dln: R_DV_DLN row
    """

    @overload
    def __getitem__(self, field: Literal[
        "id", "dv", "nd", "znd", "st", "zst", "kv", "zkv", "ana_p", "ana_q", "ana_i", "zana_p", "zana_q", "zana_i"
    ]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ind", "iznd", "ibs", "izbs", "dln2", "zdln2", "iana_p", "iana_q", "iana_i", "izana_p", "izana_q", "izana_i",
        "r_dv_dln"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class DLN2Table(Table):
    """End of a DC line.

    id: branch identity plus end suffix
    p: flow at this end, in MW
    q: flow at this end, in Mvar
    i: current at this end, in A
    iana_p: ANALOG index of the end P
    iana_q: ANALOG index of the end Q
    idln: number of the owning branch record
    flags: bit 1: 0 from end, 1 to end; bit 2: this end is isolated
    r_nd: number of the R_ND row of this end
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["p", "q", "i"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["iana_p", "iana_q", "idln", "r_nd"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class DVTable(Table):
    """District (分区), part of a company.

    id: district identity
    co: company identity
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    f7: carried value
    f8: carried value
    r_co_dv: number of the R_CO_DV row
    r_dv_st: head of the R_DV_ST chain
    r_dv_ln: head of the R_DV_LN chain
    r_dv_dln: head of the R_DV_DLN chain
    """

    @overload
    def __getitem__(self, field: Literal["id", "co"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["r_co_dv", "r_dv_st", "r_dv_ln", "r_dv_dln"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class GLOBALTable(Table):
    """The single row of global state.

    id: row number
    f1: carried value; a new validation keeps it, or starts it at 100.0 when the GLOBAL table is empty
    bs_free: head of BS free list
    bs_dead: BS index of dead head, 0
    bs_live: BS index of live head, 1
    bsl_free: head of BSL free list
    bsl_head: BSL list head
    n1: carried value
    u1: time of the last tpChange, in seconds from QDateTime::toTime_t, in s
    time: time of the last tpAllnew, in the same seconds, in s
    valid: 1 after a validation run that ended with no error
    check_time: time of the end of the last validation run without errors, in s
    invalid: 1 from the start of a validation run until a run ends with no error; the editing operations refuse to run on a value other than 0
    errors: error count of the last validation
    """

    @overload
    def __getitem__(self, field: Literal[
        "id", "bs_free", "bs_dead", "bs_live", "bsl_free", "bsl_head", "n1", "errors"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["f1"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["u1", "time", "check_time"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: Literal["valid", "invalid"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class ISLANDTable(Table):
    """Live island.

    id: island number
    ref_ibs: bus-section of the reference; -1 while the island has none
    ref_un: physical number of the reference UN
    ref_a: angle of the reference
    f1: carried value
    f2: carried value
    f3: carried value
    ref_id: identity of the reference UN
    name: carried text
    """

    @overload
    def __getitem__(self, field: Literal["id", "ref_ibs", "ref_un"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["ref_a", "f1", "f2", "f3"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["ref_id", "name"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class KVTable(Table):
    """Voltage level of a station.

    id: identity of the voltage level of a station (母线 in the messages)
    name: second text of the KV; carried
    st: station identity
    ibs: number of the first bus-section of this KV
    ibsl: number of the BSL entry of this KV
    vbase: base voltage, in kV
    vmax: upper voltage limit, in kV
    vmin: lower voltage limit, in kV
    f1: carried value
    f2: carried value
    n2: carried integer
    r_st_kv: number of the R_ST_KV row
    r_kv_un: head of R_KV_UN chain
    r_kv_cb: head of R_KV_CB chain
    r_kv_ld: head of R_KV_LD chain
    r_kv_cp: head of R_KV_CP chain
    r_kv_bus: head of R_KV_BUS chain
    r_kv_zbr: head of R_KV_ZBR chain
    r_kv_nd: head of R_KV_ND chain
    """

    @overload
    def __getitem__(self, field: Literal["id", "name", "st"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ibs", "ibsl", "n2", "r_st_kv", "r_kv_un", "r_kv_cb", "r_kv_ld", "r_kv_cp", "r_kv_bus", "r_kv_zbr", "r_kv_nd"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["vbase", "vmax", "vmin", "f1", "f2"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class LDTable(Table):
    """Load.

    id: load identity
    kv: KV identity
    nd: node identity
    ind: node number
    ibs: bus-section
    ana_p: P measurement
    ana_q: Q measurement
    ana_i: third measurement identity
    ana_v: V measurement
    iana_p: index in ANALOG
    iana_q: index in ANALOG
    iana_i: index of ana_i in ANALOG, -1 when absent
    iana_v: index in ANALOG
    status: component status bits 1 and 4
    tp_status: bit 1: the load lies in a dead section
    f1: carried value
    f2: carried value
    p: active power, input of the breaker flow, in MW
    q: reactive power, input of the breaker flow, in Mvar
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    f7: carried value
    a: value copied into ISLAND.ref_a when the load becomes the reference
    f9: carried value
    ref: reference mark of the load; default -1; the value 0 makes it a candidate
    r_kv_ld: R_KV_LD row
    """

    @overload
    def __getitem__(self, field: Literal[
        "id", "kv", "nd", "ana_p", "ana_q", "ana_i", "ana_v"
    ]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ind", "ibs", "iana_p", "iana_q", "iana_i", "iana_v", "ref", "r_kv_ld"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: Literal[
        "f1", "f2", "p", "q", "f3", "f4", "f5", "f6", "f7", "a", "f9"
    ]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class LNTable(Table):
    """AC line between two stations.

    id: line identity
    type: carried byte
    dv: district identity
    nd: from node
    ind: from node number
    znd: to node
    iznd: to node number
    ibs: from bus-section
    izbs: to bus-section
    ln2: LN2 row of from end
    zln2: LN2 row of to end
    st: from station
    zst: to station
    kv: from KV
    zkv: to KV
    ana_p: from P
    ana_q: from Q
    ana_i: from I
    zana_p: to P
    zana_q: to Q
    zana_i: to I
    iana_p: index
    iana_q: index
    iana_i: index
    izana_p: index
    izana_q: index
    izana_i: index
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    f7: carried value
    f8: carried value
    p: from P, input of the breaker flow, in MW
    q: from Q, input of the breaker flow, in Mvar
    i: from I, in A
    zp: to P, input of the breaker flow, in MW
    zq: to Q, input of the breaker flow, in Mvar
    zi: to I, in A
    f9: carried value
    f10: carried value
    status: bit 4 out of service, 1 from end open, 2 to end open; bit 64: the line's district is that of its to end only
    tp_status: bit 1 from end isolated, 2 to end isolated, 4 both dead
    r_dv_ln: R_DV_LN row
    """

    @overload
    def __getitem__(self, field: Literal[
        "id", "dv", "nd", "znd", "st", "zst", "kv", "zkv", "ana_p", "ana_q", "ana_i", "zana_p", "zana_q", "zana_i"
    ]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["type"]) -> NDArray[np.int8]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ind", "iznd", "ibs", "izbs", "ln2", "zln2", "iana_p", "iana_q", "iana_i", "izana_p", "izana_q", "izana_i",
        "r_dv_ln"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal[
        "f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8", "p", "q", "i", "zp", "zq", "zi", "f9", "f10"
    ]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class LN2Table(Table):
    """End of an AC line.

    id: branch identity plus end suffix
    p: flow at this end, in MW
    q: flow at this end, in Mvar
    i: current at this end, in A
    iana_p: ANALOG index of the end P
    iana_q: ANALOG index of the end Q
    iln: number of the owning branch record
    flags: bit 1: 0 from end, 1 to end; bit 2: this end is isolated
    r_nd: number of the R_ND row of this end
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["p", "q", "i"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["iana_p", "iana_q", "iln", "r_nd"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class NDTable(Table):
    """Electrical node (结点).

    id: node identity
    ibs: bus-section the node is in now
    ibs0: number of the structural bus-section of the node, set together with ibs by the first node pass
    flags: bit 1 node is dead, 2 carries a UN, 4 a LD, 8 a CP, 16 a BUS, 64 work mark of the node pass
    next: next node in the ring of nodes of the same group
    n1: work field of tpNodeConnect
    r_kv_nd: R_KV_ND row of the node
    r_nd_cb2: head of R_ND_CB2 chain
    r_nd_ln2: head of R_ND_LN2 chain
    r_nd_xf2: head of R_ND_XF2 chain
    r_nd_zbr2: head of R_ND_ZBR2 chain
    r_nd_dln2: head of R_ND_DLN2 chain
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ibs", "ibs0", "next", "n1", "r_kv_nd", "r_nd_cb2", "r_nd_ln2", "r_nd_xf2", "r_nd_zbr2", "r_nd_dln2"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_CO_DVTable(Table):
    """Company to its districts.

    co_id: identity of the parent
    dv_id: identity of the child
    ico: number of the parent record
    idv: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["co_id", "dv_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ico", "idv", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_DV_DLNTable(Table):
    """District to its DC lines.

    dv_id: identity of the parent
    dln_id: identity of the child
    idv: number of the parent record
    idln: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["dv_id", "dln_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["idv", "idln", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_DV_LNTable(Table):
    """District to its AC lines.

    dv_id: identity of the parent
    ln_id: identity of the child
    idv: number of the parent record
    iln: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["dv_id", "ln_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["idv", "iln", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_DV_STTable(Table):
    """District to its stations.

    dv_id: identity of the parent
    st_id: identity of the child
    idv: number of the parent record
    ist: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["dv_id", "st_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["idv", "ist", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_BUSTable(Table):
    """Voltage level to its buses.

    kv_id: identity of the parent
    bus_id: identity of the child
    ikv: number of the parent record
    ibus: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "bus_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "ibus", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_CBTable(Table):
    """Voltage level to its breakers.

    kv_id: identity of the parent
    cb_id: identity of the child
    ikv: number of the parent record
    icb: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "cb_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "icb", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_CPTable(Table):
    """Voltage level to its capacitors and reactors.

    kv_id: identity of the parent
    cp_id: identity of the child
    ikv: number of the parent record
    icp: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "cp_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "icp", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_LDTable(Table):
    """Voltage level to its loads.

    kv_id: identity of the parent
    ld_id: identity of the child
    ikv: number of the parent record
    ild: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "ld_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "ild", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_NDTable(Table):
    """Voltage level to its nodes.

    kv_id: identity of the parent
    nd_id: identity of the child
    ikv: number of the parent record
    ind: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "nd_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "ind", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_UNTable(Table):
    """Voltage level to its units.

    kv_id: identity of the parent
    un_id: identity of the child
    ikv: number of the parent record
    iun: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "un_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "iun", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_KV_ZBRTable(Table):
    """Voltage level to its zero-impedance branches.

    kv_id: identity of the parent
    zbr_id: identity of the child
    ikv: number of the parent record
    izbr: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["kv_id", "zbr_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ikv", "izbr", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ND_CB2Table(Table):
    """Node to the breaker ends on it.

    nd_id: identity of the parent
    cb2_id: identity of the child
    ind: number of the parent record
    icb2: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["nd_id", "cb2_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "icb2", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ND_DLN2Table(Table):
    """Node to the DC line ends on it.

    nd_id: identity of the parent
    dln2_id: identity of the child
    ind: number of the parent record
    idln2: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["nd_id", "dln2_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "idln2", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ND_LN2Table(Table):
    """Node to the line ends on it.

    nd_id: identity of the parent
    ln2_id: identity of the child
    ind: number of the parent record
    iln2: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["nd_id", "ln2_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "iln2", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ND_XF2Table(Table):
    """Node to the winding ends on it.

    nd_id: identity of the parent
    xf2_id: identity of the child
    ind: number of the parent record
    ixf2: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["nd_id", "xf2_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "ixf2", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ND_ZBR2Table(Table):
    """Node to the zero-impedance branch ends on it.

    nd_id: identity of the parent
    zbr2_id: identity of the child
    ind: number of the parent record
    izbr2: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["nd_id", "zbr2_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ind", "izbr2", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ST_KVTable(Table):
    """Station to its voltage levels.

    st_id: identity of the parent
    kv_id: identity of the child
    ist: number of the parent record
    ikv: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["st_id", "kv_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ist", "ikv", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class R_ST_XFTable(Table):
    """Station to its transformer windings.

    st_id: identity of the parent
    xf_id: identity of the child
    ist: number of the parent record
    ixf: number of the child record
    next: next row of the parent's chain, -1 at the end
    prev: previous row of the parent's chain, -1 at the first row
    """

    @overload
    def __getitem__(self, field: Literal["st_id", "xf_id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["ist", "ixf", "next", "prev"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class STTable(Table):
    """Station (厂站), part of a district.

    id: station identity
    dv: district identity
    type: station type, 0 to 8 in a valid model
    flag: device mask of the station, reset by StartDetect: bit 1 a UN, 2 a CP, 4 a XF, 8 a LD, 16 a CB stands in it
    f1: carried value
    f2: carried value
    f3: carried value
    f4: carried value
    r_dv_st: R_DV_ST row
    r_st_kv: head of R_ST_KV chain
    r_st_xf: head of R_ST_XF chain
    """

    @overload
    def __getitem__(self, field: Literal["id", "dv"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["type", "flag"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: Literal["f1", "f2", "f3", "f4"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["r_dv_st", "r_st_kv", "r_st_xf"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class STATUSTable(Table):
    """Status point (遥信).

    id: status point identity
    name: second text of the point; carried
    value: position of the point: 1 closed, 2 open; read from the realtime table by tpReadStatus
    quality: carried byte
    """

    @overload
    def __getitem__(self, field: Literal["id", "name"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["value"]) -> NDArray[np.int8]: ...
    @overload
    def __getitem__(self, field: Literal["quality"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class TPLTable(Table):
    """Topology log row.

    id: log row number
    kind: table number of the logged thing
    n1: status word given by the writer
    name: identity of the logged thing
    n2: new section, -1 for none
    n3: old section
    time: event time, QDateTime::toTime_t, in s
    event: event word
    """

    @overload
    def __getitem__(self, field: Literal["id", "kind", "n1", "n2", "n3"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["name", "event"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["time"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class TPTRACETable(Table):
    """Component change that waits for the next topology run.

    id: row number
    name: component identity
    type: component type code of tpSetCompStatus
    n1: physical number of the component in its table; -1 when the row is to be passed over
    status: what was asked for: nonzero closed or in service, 0 open or out of service
    time: seconds from QDateTime::toTime_t, in s
    """

    @overload
    def __getitem__(self, field: Literal["id", "n1"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["name"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["type", "status"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: Literal["time"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class UNTable(Table):
    """Generating unit.

    id: generating unit identity
    kv: KV identity
    nd: node identity
    ind: node number
    ibs: bus-section
    pmax: upper output; the reference choice takes pmax - pcur as the margin of a unit, in MW
    f1: carried value
    pcur: lower term of that margin, in MW
    f2: carried value
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    ana_p: P measurement
    iana_p: index in ANALOG
    ana_q: Q measurement
    iana_q: index in ANALOG
    ana_v: third measurement identity
    iana_v: index of ana_v in ANALOG, -1 when absent
    p: active power, input of the breaker flow, in MW
    q: reactive power, input of the breaker flow, in Mvar
    f7: carried value
    a: value copied into ISLAND.ref_a when the unit becomes the reference
    f8: carried value
    ref: reference mark of the unit; default -1; the value 0 makes it a candidate
    f9: carried value
    f10: carried value
    status: component status bits 1 and 4; bit 16: reference chosen by the system
    tp_status: bit 1: the unit lies in a dead section
    r_kv_un: R_KV_UN row
    """

    @overload
    def __getitem__(self, field: Literal["id", "kv", "nd", "ana_p", "ana_q", "ana_v"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ind", "ibs", "iana_p", "iana_q", "iana_v", "ref", "r_kv_un"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal[
        "pmax", "f1", "pcur", "f2", "f3", "f4", "f5", "f6", "p", "q", "f7", "a", "f8", "f9", "f10"
    ]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class XFTable(Table):
    """Transformer winding between two voltage levels of a station.

    id: transformer winding identity
    type: winding type, 1, 2 or 3 in a valid model
    f0: carried value
    st: station identity
    kv: from KV
    zkv: to KV
    nd: from-end (high voltage) node identity
    znd: to-end (low voltage) node identity
    ind: from node number
    iznd: to node number
    ibs: from bus-section
    izbs: to bus-section
    xf2: XF2 row of from end
    zxf2: XF2 row of to end
    ana_p: from P
    ana_q: from Q
    ana_i: from I
    ana_t: fourth measurement identity of the from end; carried, not validated
    zana_p: to P
    zana_q: to Q
    zana_i: to I
    zana_t: fourth measurement identity of the to end; carried, not validated
    iana_p: index
    iana_q: index
    iana_i: index
    iana_t: carried integer
    izana_p: index
    izana_q: index
    izana_i: index
    izana_t: carried integer
    p: from P, input of the breaker flow, in MW
    q: from Q, input of the breaker flow, in Mvar
    i: from I, in A
    zp: to P, input of the breaker flow, in MW
    zq: to Q, input of the breaker flow, in Mvar
    zi: to I, in A
    f1: carried value
    f2: carried value
    status: bit 1 out of service, 4 from end open, 8 to end open
    tp_status: bit 1 from end isolated, 2 to end isolated, 4 both dead
    r_st_xf: R_ST_XF row
    f3: carried value
    f4: carried value
    f5: carried value
    f6: carried value
    f7: carried value
    f8: carried value
    f9: carried value
    f10: carried value
    n1: carried value
    n2: carried value
    f11: carried value
    f12: carried value
    n3: carried value
    n4: carried value
    n5: carried value
    n6: carried value
    f13: carried value
    f14: carried value
    n7: carried value
    n8: carried value
    flag: carried value
    """

    @overload
    def __getitem__(self, field: Literal[
        "id", "st", "kv", "zkv", "nd", "znd", "ana_p", "ana_q", "ana_i", "ana_t", "zana_p", "zana_q", "zana_i", "zana_t"
    ]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["type"]) -> NDArray[np.uint8]: ...
    @overload
    def __getitem__(self, field: Literal[
        "f0", "p", "q", "i", "zp", "zq", "zi", "f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8", "f9", "f10", "f11",
        "f12", "f13", "f14"
    ]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal[
        "ind", "iznd", "ibs", "izbs", "xf2", "zxf2", "iana_p", "iana_q", "iana_i", "iana_t", "izana_p", "izana_q",
        "izana_i", "izana_t", "r_st_xf", "n1", "n2", "n3", "n4", "n5", "n6", "n7", "n8"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: Literal["flag"]) -> NDArray[np.int8]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class XF2Table(Table):
    """End of a transformer winding.

    id: branch identity plus end suffix
    p: flow at this end, in MW
    q: flow at this end, in Mvar
    i: current at this end, in A
    iana_p: ANALOG index of the end P
    iana_q: ANALOG index of the end Q
    ixf: number of the owning branch record
    flags: bit 1: 0 from end, 1 to end; bit 2: this end is isolated
    r_nd: number of the R_ND row of this end
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["p", "q", "i"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["iana_p", "iana_q", "ixf", "r_nd"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class ZBRTable(Table):
    """Zero-impedance branch, tied to a breaker.

    id: zero-impedance branch identity
    cb: identity of the associated CB
    icb: number of the associated CB, -1 when it is not found
    ind: from node number, copied from CB
    iznd: to node number, copied from CB
    ibs: from bus-section
    izbs: to bus-section
    zbr2: ZBR2 row of from end
    zzbr2: ZBR2 row of to end
    ana_p: P measurement
    ana_q: Q measurement
    ana_i: I measurement
    iana_p: index
    iana_q: index
    iana_i: index
    p: P value, in MW
    q: Q value, in Mvar
    i: I value, in A
    status: bit 1 out of service, 4 from end open, 16 to end open
    tp_status: bit 1 from end isolated, 2 to end isolated, 4 both dead; bit 256: out of service together with its breaker, by the careful switching
    r_kv_zbr: R_KV_ZBR row
    """

    @overload
    def __getitem__(self, field: Literal["id", "cb", "ana_p", "ana_q", "ana_i"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal[
        "icb", "ind", "iznd", "ibs", "izbs", "zbr2", "zzbr2", "iana_p", "iana_q", "iana_i", "r_kv_zbr"
    ]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["p", "q", "i"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["status", "tp_status"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

class ZBR2Table(Table):
    """End of a zero-impedance branch.

    id: branch identity plus end suffix
    p: flow at this end, in MW
    q: flow at this end, in Mvar
    i: current at this end, in A
    iana_p: ANALOG index of the end P
    iana_q: ANALOG index of the end Q
    izbr: number of the owning branch record
    flags: bit 1: 0 from end, 1 to end; bit 2: this end is isolated
    r_nd: number of the R_ND row of this end
    """

    @overload
    def __getitem__(self, field: Literal["id"]) -> NDArray[np.object_]: ...
    @overload
    def __getitem__(self, field: Literal["p", "q", "i"]) -> NDArray[np.float32]: ...
    @overload
    def __getitem__(self, field: Literal["iana_p", "iana_q", "izbr", "r_nd"]) -> NDArray[np.int32]: ...
    @overload
    def __getitem__(self, field: Literal["flags"]) -> NDArray[np.uint32]: ...
    @overload
    def __getitem__(self, field: str) -> NDArray[Any]: ...

CLASSES: dict[str, type[Table]]

class TablesByName(Mapping[str, Table]):
    """The tables of a model by their names."""

    _core: _core.Network
    @overload
    def __getitem__(self, name: Literal["ANALOG"]) -> ANALOGTable: ...
    @overload
    def __getitem__(self, name: Literal["BS"]) -> BSTable: ...
    @overload
    def __getitem__(self, name: Literal["BSL"]) -> BSLTable: ...
    @overload
    def __getitem__(self, name: Literal["BUS"]) -> BUSTable: ...
    @overload
    def __getitem__(self, name: Literal["CB"]) -> CBTable: ...
    @overload
    def __getitem__(self, name: Literal["CB2"]) -> CB2Table: ...
    @overload
    def __getitem__(self, name: Literal["CHND"]) -> CHNDTable: ...
    @overload
    def __getitem__(self, name: Literal["CO"]) -> COTable: ...
    @overload
    def __getitem__(self, name: Literal["CP"]) -> CPTable: ...
    @overload
    def __getitem__(self, name: Literal["DLN"]) -> DLNTable: ...
    @overload
    def __getitem__(self, name: Literal["DLN2"]) -> DLN2Table: ...
    @overload
    def __getitem__(self, name: Literal["DV"]) -> DVTable: ...
    @overload
    def __getitem__(self, name: Literal["GLOBAL"]) -> GLOBALTable: ...
    @overload
    def __getitem__(self, name: Literal["ISLAND"]) -> ISLANDTable: ...
    @overload
    def __getitem__(self, name: Literal["KV"]) -> KVTable: ...
    @overload
    def __getitem__(self, name: Literal["LD"]) -> LDTable: ...
    @overload
    def __getitem__(self, name: Literal["LN"]) -> LNTable: ...
    @overload
    def __getitem__(self, name: Literal["LN2"]) -> LN2Table: ...
    @overload
    def __getitem__(self, name: Literal["ND"]) -> NDTable: ...
    @overload
    def __getitem__(self, name: Literal["R_CO_DV"]) -> R_CO_DVTable: ...
    @overload
    def __getitem__(self, name: Literal["R_DV_DLN"]) -> R_DV_DLNTable: ...
    @overload
    def __getitem__(self, name: Literal["R_DV_LN"]) -> R_DV_LNTable: ...
    @overload
    def __getitem__(self, name: Literal["R_DV_ST"]) -> R_DV_STTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_BUS"]) -> R_KV_BUSTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_CB"]) -> R_KV_CBTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_CP"]) -> R_KV_CPTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_LD"]) -> R_KV_LDTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_ND"]) -> R_KV_NDTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_UN"]) -> R_KV_UNTable: ...
    @overload
    def __getitem__(self, name: Literal["R_KV_ZBR"]) -> R_KV_ZBRTable: ...
    @overload
    def __getitem__(self, name: Literal["R_ND_CB2"]) -> R_ND_CB2Table: ...
    @overload
    def __getitem__(self, name: Literal["R_ND_DLN2"]) -> R_ND_DLN2Table: ...
    @overload
    def __getitem__(self, name: Literal["R_ND_LN2"]) -> R_ND_LN2Table: ...
    @overload
    def __getitem__(self, name: Literal["R_ND_XF2"]) -> R_ND_XF2Table: ...
    @overload
    def __getitem__(self, name: Literal["R_ND_ZBR2"]) -> R_ND_ZBR2Table: ...
    @overload
    def __getitem__(self, name: Literal["R_ST_KV"]) -> R_ST_KVTable: ...
    @overload
    def __getitem__(self, name: Literal["R_ST_XF"]) -> R_ST_XFTable: ...
    @overload
    def __getitem__(self, name: Literal["ST"]) -> STTable: ...
    @overload
    def __getitem__(self, name: Literal["STATUS"]) -> STATUSTable: ...
    @overload
    def __getitem__(self, name: Literal["TPL"]) -> TPLTable: ...
    @overload
    def __getitem__(self, name: Literal["TPTRACE"]) -> TPTRACETable: ...
    @overload
    def __getitem__(self, name: Literal["UN"]) -> UNTable: ...
    @overload
    def __getitem__(self, name: Literal["XF"]) -> XFTable: ...
    @overload
    def __getitem__(self, name: Literal["XF2"]) -> XF2Table: ...
    @overload
    def __getitem__(self, name: Literal["ZBR"]) -> ZBRTable: ...
    @overload
    def __getitem__(self, name: Literal["ZBR2"]) -> ZBR2Table: ...
    @overload
    def __getitem__(self, name: str) -> Table: ...
    def __iter__(self) -> Iterator[str]: ...
    def __len__(self) -> int: ...
