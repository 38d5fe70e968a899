// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The kind codes of the tables.
#pragma once

namespace dtsdb {

/// Kind code of a table: its place in the alphabetical order of the record classes, counted from 1. It stands in
/// BSL `kind` and TPL `kind`, and reaches the disk and other programs.
enum TableKind : int {
  KIND_NONE = 0,
  KIND_ANALOG = 1,
  KIND_BS = 2,
  KIND_BSL = 3,
  KIND_BUS = 4,
  KIND_CB = 5,
  KIND_CB2 = 6,
  KIND_CHND = 7,
  KIND_CO = 8,
  KIND_CP = 9,
  KIND_DLN = 10,
  KIND_DLN2 = 11,
  KIND_DV = 12,
  KIND_GLOBAL = 13,
  KIND_ISLAND = 14,
  KIND_KV = 15,
  KIND_LD = 16,
  KIND_LN = 17,
  KIND_LN2 = 18,
  KIND_ND = 19,
  KIND_R_CO_DV = 20,
  KIND_R_DV_DLN = 21,
  KIND_R_DV_LN = 22,
  KIND_R_DV_ST = 23,
  KIND_R_KV_BUS = 24,
  KIND_R_KV_CB = 25,
  KIND_R_KV_CP = 26,
  KIND_R_KV_LD = 27,
  KIND_R_KV_ND = 28,
  KIND_R_KV_UN = 29,
  KIND_R_KV_ZBR = 30,
  KIND_R_ND_CB2 = 31,
  KIND_R_ND_DLN2 = 32,
  KIND_R_ND_LN2 = 33,
  KIND_R_ND_XF2 = 34,
  KIND_R_ND_ZBR2 = 35,
  KIND_R_ST_KV = 36,
  KIND_R_ST_XF = 37,
  KIND_ST = 38,
  KIND_STATUS = 39,
  KIND_TPL = 40,
  KIND_TPTRACE = 41,
  KIND_UN = 42,
  KIND_XF = 43,
  KIND_XF2 = 44,
  KIND_ZBR = 45,
  KIND_ZBR2 = 46,
};

/// Number of tables in a model.
inline constexpr int kTableCount = 46;

/// How the records of a table are compared.
enum class RecordKey {
  kIdentified,  ///< by the text `id`, in code-unit order; a null and an empty text are equal
  kNumbered,    ///< by the integer `id`
  kRelation,    ///< by the identity text of the parent, then of the child
};

}  // namespace dtsdb
