/// \file
/// Reading and writing of object files, with the reason of a failure as text.
#pragma once

#include <QString>

namespace dtsdb {

class DTSDB;

/// Reads the object file `fileName` into `database`. Returns null, or one line (real text, with its line feed) that
/// names what is wrong and where; every table is then as it was.
QString ReadObjectFile(DTSDB& database, const QString& fileName);

/// Writes `database` to the object file `fileName`: the new file takes the place of an old one
/// when it is whole and on the disk (model/whole_file.h). Returns null, or one line that names what is wrong.
QString WriteObjectFile(DTSDB& database, const QString& fileName);

}  // namespace dtsdb
