#include "python/core/columns.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

#include "formats/catalog.h"
#include "formats/field_text.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"
#include "model/text.h"
#include "python/core/texts.h"

namespace py = pybind11;

namespace dtsdb::python {
namespace {

py::dtype DtypeOf(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return py::dtype("O");
    case FieldType::kI8:
      return py::dtype::of<i8>();
    case FieldType::kU8:
      return py::dtype::of<u8>();
    case FieldType::kI32:
      return py::dtype::of<i32>();
    case FieldType::kU32:
      return py::dtype::of<u32>();
    case FieldType::kF32:
      return py::dtype::of<f32>();
    case FieldType::kF64:
      break;
  }
  return py::dtype::of<f64>();
}

py::array ReadOnly(py::array array) {
  array.attr("setflags")(py::arg("write") = false);
  return array;
}

py::object ValueOf(const FieldInfo& field, const void* record) {
  return VisitValue(field, record, []<class V>(const V& value) -> py::object {
    if constexpr (std::is_same_v<V, QString>) {
      return IdText(value);
    } else if constexpr (std::is_integral_v<V>) {
      return py::int_(+value);
    } else {
      return py::float_(value);
    }
  });
}

const char* KeyName(RecordKey key) {
  if (key == RecordKey::kIdentified) return "identity";
  return key == RecordKey::kNumbered ? "number" : "relation";
}

py::tuple DescribeField(const FieldInfo& field) {
  return py::make_tuple(field.name, TypeName(field.type), TableName(field.refers), field.unit, field.writers,
                        field.meaning);
}

}  // namespace

py::str IdText(const QString& id) {
  const QString text = TextFromId(id);
  return Text(text.toStdString());
}

py::list DescribeTables() {
  py::list tables;
  for (const TableInfo& table : Tables()) {
    py::list fields;
    for (const FieldInfo& field : table.fields()) fields.append(DescribeField(field));
    tables.append(py::make_tuple(table.name, KeyName(table.key), table.meaning, fields));
  }
  return tables;
}

TableAtMoment::TableAtMoment(Snapshot snapshot, const std::string& table)
    : m_snapshot(std::move(snapshot)), m_table(TableOfKind(*m_snapshot.tables, tools::NamedTable(table))) {}

const FieldInfo& TableAtMoment::FieldNamed(const std::string& name) const {
  const auto fields = m_table.Info().fields();
  const auto found =
      std::find_if(fields.begin(), fields.end(), [&](const FieldInfo& field) { return name == field.name; });
  if (found != fields.end()) return *found;
  RefuseCall("table " + std::string(m_table.Info().name) + " has no field " + tools::Quoted(name) +
                 tools::DidYouMean(name, tools::NamesOf(fields)),
             m_table.Info().name);
}

/// True when the records lie one behind the other in the order of the table, as a validation leaves them.
bool TableAtMoment::StandsInOrder() const {
  const auto* const first = static_cast<const std::byte*>(m_table[0]);
  for (int i = 1; i < m_table.GetCount(); ++i) {
    if (m_table[i] != first + static_cast<std::size_t>(i) * m_table.RecordSize()) return false;
  }
  return true;
}

py::array TableAtMoment::Numbers(const FieldInfo& field) const {
  const py::dtype dtype = DtypeOf(field.type);
  const py::ssize_t count = m_table.GetCount();
  if (count > 0 && StandsInOrder()) {
    auto held = std::make_unique<Snapshot>(m_snapshot);
    const py::capsule keeper(held.get(), [](void* snapshot) { delete static_cast<Snapshot*>(snapshot); });
    static_cast<void>(held.release());  // it is the capsule's
    const auto* const first = static_cast<const std::byte*>(m_table[0]) + field.offset;
    const auto stride = static_cast<py::ssize_t>(m_table.RecordSize());
    return ReadOnly(py::array(dtype, {count}, {stride}, first, keeper));
  }
  py::array copy(dtype, {count}, {});
  auto* to = static_cast<std::byte*>(copy.mutable_data());
  for (int i = 0; i < count; ++i, to += dtype.itemsize()) {
    std::memcpy(to, static_cast<const std::byte*>(m_table[i]) + field.offset,
                static_cast<std::size_t>(dtype.itemsize()));
  }
  return ReadOnly(std::move(copy));
}

py::array TableAtMoment::Texts(const FieldInfo& field) const {
  py::list texts(static_cast<std::size_t>(m_table.GetCount()));
  for (int i = 0; i < m_table.GetCount(); ++i) {
    texts[static_cast<std::size_t>(i)] = IdText(field.In<QString>(m_table[i]));
  }
  return ReadOnly(py::module_::import("numpy").attr("array")(texts, py::arg("dtype") = "O"));
}

py::array TableAtMoment::Column(const std::string& name) const {
  const FieldInfo& field = FieldNamed(name);
  return field.type == FieldType::kText ? Texts(field) : Numbers(field);
}

py::dict TableAtMoment::Record(int number) const {
  if (number < 0 || number >= m_table.GetCount()) {
    throw py::index_error("table " + std::string(m_table.Info().name) + " has no record number " +
                          std::to_string(number) + ", only 0 to " + std::to_string(m_table.GetCount() - 1));
  }
  py::dict values;
  for (const FieldInfo& field : m_table.Info().fields()) values[field.name] = ValueOf(field, m_table[number]);
  return values;
}

py::object TableAtMoment::Find(const std::string& identity) const {
  const FieldInfo& key = m_table.Info().fields().front();
  if (m_table.Info().key != RecordKey::kIdentified) {
    RefuseCall("records of table " + std::string(m_table.Info().name) + " have no identity; take them by number",
               m_table.Info().name);
  }
  const auto id = tools::IdFromUtf8(identity);
  if (!id) return py::none();
  const auto sought = m_table.MakeRecords();
  void* const record = sought->Add();
  key.In<QString>(record) = *id;
  return NumberOrNone(m_table.Find(record));
}

}  // namespace dtsdb::python
