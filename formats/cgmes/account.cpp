#include "formats/cgmes/account.h"

namespace dtsdb::tools::cgmes {
namespace {

constexpr int kNone = Objects::kNone;

std::vector<ImportReport::Exception> InOrder(
    const std::map<std::pair<std::string, std::string>, ImportReport::Exception>& exceptions) {
  std::vector<ImportReport::Exception> list;
  list.reserve(exceptions.size());
  for (const auto& [key, exception] : exceptions) list.push_back(exception);
  return list;
}

}  // namespace

std::string Account::ClassOf(int object) const {
  const int type = m_set.objects.Class(object);
  return type == kNone ? "not described" : m_set.objects.ClassName(type);
}

/// Names the first objects, `withPlace` with where they are defined.
void Account::Count(Exceptions& exceptions, const std::string& type, int object, const std::string& why,
                    bool withPlace) const {
  ImportReport::Exception& exception = exceptions[{type, why}];
  exception.type = type;
  exception.why = why;
  if (exception.names.size() < kFirst) {
    exception.names.push_back(withPlace ? m_set.Describe(object) : m_set.objects.Name(object));
  }
  ++exception.count;
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
      Count(unknown, i, "no table has room for it", false);
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
  for (const auto& [object, type] : m_set.objects.Clashes()) {
    Count(leftOut, m_set.objects.ClassName(type), object, "its mRID is that of an object of another class", true);
  }
  report.leftOut = InOrder(leftOut);
  report.changed = InOrder(m_changed);
  report.unknown = InOrder(unknown);
  return report;
}

}  // namespace dtsdb::tools::cgmes
