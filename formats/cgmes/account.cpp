#include "formats/cgmes/account.h"

#include <map>

namespace dtsdb::tools::cgmes {
namespace {}  // namespace

std::string Account::ClassOf(int object) const {
  const int type = m_set.objects.Class(object);
  return type == kNone ? "not described" : m_set.objects.ClassName(type);
}

ImportReport Account::Report(const Connections& connections) const {
  ImportReport report;
  for (const Profile& profile : m_set.profiles) {
    report.files.push_back({profile.file, profile.KindNames(), profile.version, profile.scenarioTime, profile.objects});
  }
  std::map<std::string, ImportReport::Class> classes;
  Exceptions unknown;
  for (int i = 0; i < m_set.objects.Count(); ++i) {
    if (m_set.objects.Class(i) == kNone) continue;
    const ClassRow& row = connections.RowOf(i);
    if (row.role == Role::kUnknown) {
      unknown.Count(ClassOf(i), "no table has room for it", [&] { return m_set.objects.Name(i); });
      continue;
    }
    ImportReport::Class& mapped = classes[row.name];
    mapped.name = row.name;
    mapped.tables = row.tables;
    ++mapped.count;
  }
  report.classes.reserve(classes.size());
  for (const auto& [name, mapped] : classes) report.classes.push_back(mapped);
  Exceptions leftOut = m_leftOut;
  for (const Objects::Clash& clash : m_set.objects.Clashes()) {
    leftOut.Count(m_set.objects.ClassName(clash.type), "its mRID is that of an object of another class",
                  [&] { return m_set.Describe(clash); });
  }
  report.leftOut = leftOut.List();
  report.changed = m_changed.List();
  report.unknown = unknown.List();
  return report;
}

}  // namespace dtsdb::tools::cgmes
