/// \file
/// Small models for the fuzz targets and the driver of all public calls: a good one, and any that bytes make.
#pragma once

#include "fuzz/byte_source.h"
#include "model/dtsdb.h"

namespace dtsdb::fuzz {

/// Lets the logs of the library and Qt's messages go nowhere. Always true.
bool Silence();

/// Fills the input tables of an empty model with two stations and a line between them, a unit at one end and a load at
/// the other. It passes the validation, and all of it is live:
///
///     U1 N1 --B1-- N2 ------- L1 ------- N3 --B2-- N4 D1          station S1 | station S2
void FillSmallModel(DTSDB& model);

/// Fills the input tables of an empty model with up to four stations, whose equipment stands where the bytes choose. It
/// need not pass the validation, but mostly does.
void FillAnyModel(ByteSource& bytes, DTSDB& model);

/// Replaces up to `most` fields in any records of any tables: texts by those of other records, by empty ones and by
/// bytes that are no text; numbers by those of rows, so that chains lead in circles, by others out of any range, and by
/// what is no number. Each table that is hit is filled anew, unless nothing in it differs, with equal identities kept.
void DamageModel(ByteSource& bytes, DTSDB& model, int most);

/// An identity as another record may have it, or one that no record has.
QString AnyIdentity(ByteSource& bytes);

}  // namespace dtsdb::fuzz
