/// \file
/// The node graph of the model: nodes from the names that devices give, two ends for every branch, and the
/// change from physical to logical numbers at the end of a run.
#include "validation/indexing.h"

#include <initializer_list>

#include "model/record_bits.h"
#include "validation/link_pass.h"
#include "validation/nmd.h"

namespace dtsdb {

// Nodes. They are looked up while they are being added: nothing here may ask ND or R_KV_ND for a logical number,
// which would renumber the whole table each time.

int NMD::NodeInsert(const QString& nd, int* pNd, const QString& kv, int mask) {
  const u32 mark = mask > 0 ? static_cast<u32>(mask) : 0;
  *pNd = m_ndTable->Find(ND(nd));
  if (*pNd != -1) {
    ND& node = m_ndTable->GetPh(*pNd);
    if (m_kvTable->GetPh(m_rKvNdTable->GetPh(node.r_kv_nd).ikv).id != kv) return INSERT_OTHER_LEVEL;
    node.flags |= mark;
    return INSERT_DONE;
  }

  const int level = m_kvTable->Find(KV(kv));
  if (level == -1) return INSERT_NO_LEVEL;
  ND node(nd);
  node.flags = mark;
  for (const auto link : {&ND::r_nd_cb2, &ND::r_nd_dln2, &ND::r_kv_nd, &ND::r_nd_ln2, &ND::r_nd_xf2, &ND::r_nd_zbr2}) {
    node.*link = -1;
  }
  const int number = m_ndTable->Add(node);
  if (number == -1) return INSERT_TABLE_FULL;
  *pNd = number;
  return Relate<R_KV_ND>(level, kv, number, nd) ? INSERT_DONE : INSERT_TABLE_FULL;
}

// Branches

/// Makes one end of a branch, its number in *pTerm, and chains it on node `ndNumber`. False when a table takes no
/// more rows; what was made so far stays.
template <class Branch>
bool NMD::InsertEnd(const QString& nd, int ndNumber, int* pTerm, int branch, const QString& id, bool isTo) {
  using Kind = BranchKind<Branch>;
  typename Kind::End end(id + QLatin1Char(isTo ? 'z' : 'i'));
  end.*Kind::owner = branch;
  if constexpr (Kind::kMeasured) {  // copied, so that a walk from a node needn't visit the branch
    const Branch& source = Table<Branch>().GetPh(branch);
    end.iana_p = source.*(isTo ? Kind::toP : Kind::fromP);
    end.iana_q = source.*(isTo ? Kind::toQ : Kind::fromQ);
    end.flags = isTo ? END_IS_TO : 0;
  }
  const int number = Table<typename Kind::End>().Add(end);
  *pTerm = number;
  return number != -1 && Relate<typename Kind::Row>(ndNumber, nd, number, end.id);
}

template <class Branch>
int NMD::InsertEnds(const QString& nd, const QString& znd, int ndNumber, int zndNumber, int* pTerm, int* pZterm,
                    int branch, const QString& id) {
  const bool made = InsertEnd<Branch>(nd, ndNumber, pTerm, branch, id, false) &&
                    InsertEnd<Branch>(znd, zndNumber, pZterm, branch, id, true);
  return made ? INSERT_DONE : INSERT_TABLE_FULL;
}

int NMD::Branch2Insert(const QString& nd, const QString& znd, int* pNd, int* pZnd, int* pTerm, int* pZterm, int kind,
                       int branch, const QString& id) {
  *pTerm = -1;
  *pZterm = -1;
  if (*pNd == *pZnd) return INSERT_SAME_NODE;
  switch (kind) {
    case KIND_CB2:
      return InsertEnds<CB>(nd, znd, *pNd, *pZnd, pTerm, pZterm, branch, id);
    case KIND_DLN2:
      return InsertEnds<DLN>(nd, znd, *pNd, *pZnd, pTerm, pZterm, branch, id);
    case KIND_LN2:
      return InsertEnds<LN>(nd, znd, *pNd, *pZnd, pTerm, pZterm, branch, id);
    case KIND_XF2:
      return InsertEnds<XF>(nd, znd, *pNd, *pZnd, pTerm, pZterm, branch, id);
    case KIND_ZBR2:
      return InsertEnds<ZBR>(nd, znd, *pNd, *pZnd, pTerm, pZterm, branch, id);
    default:
      return INSERT_DONE;
  }
}

int NMD::BranchInsert(const QString& st, const QString& zst, const QString& nd, const QString& znd, int* pNd, int* pZnd,
                      int* pTerm, int* pZterm, int kind, int branch, const QString& id) {
  for (int* const number : {pNd, pZnd, pTerm, pZterm}) *number = -1;

  struct End {
    const QString& station;
    const QString& node;
    int* number;
    int missing;
  };
  for (const End& end : {End{st, nd, pNd, INSERT_NO_FROM_NODE}, End{zst, znd, pZnd, INSERT_NO_TO_NODE}}) {
    const int node = m_ndTable->Find(ND(end.node));
    if (node == -1) return end.missing;
    *end.number = node;
    const int station = StationOfLevel(LevelOfNode(node));
    if (station == -1 || station != m_stTable->Find(ST(end.station))) return INSERT_OTHER_STATION;
  }
  return Branch2Insert(nd, znd, pNd, pZnd, pTerm, pZterm, kind, branch, id);
}

// Up the hierarchy

int NMD::LevelOfNode(int nd) { return m_rKvNdTable->GetPh(m_ndTable->GetPh(nd).r_kv_nd).ikv; }

/// The station of a voltage level, -1 when the level has none.
int NMD::StationOfLevel(int kv) {
  const int row = m_kvTable->GetPh(kv).r_st_kv;
  return row == -1 ? -1 : m_rStKvTable->GetPh(row).ist;
}

/// Notes in the station what stands in it; a level without a station has none to note it in.
void NMD::MarkStation(int st, u8 bit) {
  if (st != -1) m_stTable->GetPh(st).flag |= bit;
}

// Physical to logical numbers. During a run numbers are physical, since these survive the insertions that go on.

namespace {

/// Replaces physical numbers of `targets`, held in `fields` of every record, by logical ones.
template <class Record, class Target>
void ToLogical(tTable<Record>& records, std::initializer_list<i32 Record::*> fields, tTable<Target>& targets) {
  for (int i = 0; i < records.GetCount(); ++i) {
    Record& record = records[i];
    for (const auto field : fields) {
      if (record.*field != -1) record.*field = targets.PhToLg(record.*field);
    }
  }
}

/// The links between the rows of a relation.
template <class Row>
void ChainsToLogical(tTable<Row>& rows) {
  ToLogical(rows, {&Row::next, &Row::prev}, rows);
}

}  // namespace

/// The heads of a relation's chains, its links and its two numbers. A number into a table that was compacted at the
/// start of the run is the same in both numberings and stays what it is.
template <class Row>
void NMD::LinksToLogical() {
  using R = Relation<Row>;
  auto& rows = Table<Row>();
  auto& parents = Table<typename R::Parent>();
  auto& children = Table<typename R::Child>();
  ToLogical(parents, {R::head}, rows);
  ToLogical(rows, {R::parentNumber}, parents);
  ToLogical(rows, {R::childNumber}, children);
  ChainsToLogical(rows);
}

/// The number of its own row, in every child.
template <class Row>
void NMD::OwnToLogical() {
  using R = Relation<Row>;
  ToLogical(Table<typename R::Child>(), {R::own}, Table<Row>());
}

/// Lines get the row at their own place in the table instead of the row they had; those without a row stay so.
template <class Row>
void NMD::OwnFromPlace() {
  auto& lines = Table<typename Relation<Row>::Child>();
  for (int i = 0; i < lines.GetCount(); ++i) {
    i32& own = lines[i].*Relation<Row>::own;
    if (own != -1) own = Table<Row>().PhToLg(i);
  }
}

void NMD::Convert2Lg() {
#define DTSDB_LINKS_TO_LOGICAL(Row, ...) LinksToLogical<Row>();
  DTSDB_RELATIONS(DTSDB_LINKS_TO_LOGICAL)
#undef DTSDB_LINKS_TO_LOGICAL
  ChainsToLogical(*m_rKvZbrTable);  // deliberately once more: its links are known to other programs in this form

  OwnToLogical<R_CO_DV>();
  OwnToLogical<R_DV_ST>();
  OwnFromPlace<R_DV_LN>();  // deliberately not the row they had: known to other programs in this form
  OwnFromPlace<R_DV_DLN>();
  OwnToLogical<R_ST_KV>();
  OwnToLogical<R_ST_XF>();
  OwnToLogical<R_KV_BUS>();
  OwnToLogical<R_KV_CB>();
  OwnToLogical<R_KV_CP>();
  OwnToLogical<R_KV_LD>();
  OwnToLogical<R_KV_ND>();
  OwnToLogical<R_KV_UN>();
  OwnToLogical<R_KV_ZBR>();
  OwnToLogical<R_ND_CB2>();
  OwnToLogical<R_ND_LN2>();
  OwnToLogical<R_ND_DLN2>();
  OwnToLogical<R_ND_ZBR2>();  // R_ND_XF2 is deliberately left out: ends of windings keep their physical row

  ToLogical(*m_busTable, {&BUS::ind}, *m_ndTable);
  ToLogical(*m_ldTable, {&LD::ind}, *m_ndTable);
  ToLogical(*m_cpTable, {&CP::ind}, *m_ndTable);
  ToLogical(*m_unTable, {&UN::ind}, *m_ndTable);
  ToLogical(*m_cbTable, {&CB::ind, &CB::iznd}, *m_ndTable);
  ToLogical(*m_zbrTable, {&ZBR::ind, &ZBR::iznd}, *m_ndTable);
  ToLogical(*m_zbrTable, {&ZBR::icb}, *m_cbTable);
  ToLogical(*m_xfTable, {&XF::ind, &XF::iznd}, *m_ndTable);
  ToLogical(*m_lnTable, {&LN::ind, &LN::iznd}, *m_ndTable);
  ToLogical(*m_dlnTable, {&DLN::ind, &DLN::iznd}, *m_ndTable);

  ToLogical(*m_cbTable, {&CB::cb2, &CB::zcb2}, *m_cb2Table);
  ToLogical(*m_xfTable, {&XF::xf2, &XF::zxf2}, *m_xf2Table);
  ToLogical(*m_lnTable, {&LN::ln2, &LN::zln2}, *m_ln2Table);
  ToLogical(*m_dlnTable, {&DLN::dln2, &DLN::zdln2}, *m_dln2Table);  // ZBR.zbr2 and zzbr2 stay physical
}

}  // namespace dtsdb
