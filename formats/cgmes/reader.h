/// \file
/// Reads one file of a CGMES set.
#pragma once

#include <QIODevice>
#include <string>

#include "formats/cgmes/objects.h"
#include "formats/cgmes/profile.h"

namespace dtsdb::tools::cgmes {

/// Reads the profile in `input`, which messages call `name`, into `objects`, in one pass; what it describes is marked
/// with the file number `file`. A profile that the import doesn't read is left behind its header.
///
/// Throws Failure, with file and line, for what is no CGMES profile of version 2.4.15 or 3.0, no well-formed XML, has a
/// document type declaration (which might define entities), is nested deeper or has longer tags than any profile, or is
/// a difference model.
Profile ReadProfile(QIODevice& input, const std::string& name, int file, Objects& objects);

/// The mRID that an rdf:ID, rdf:about or rdf:resource names: without "#", "urn:uuid:" and a leading "_".
QStringView MridOf(QStringView reference);

}  // namespace dtsdb::tools::cgmes
