// The extension module dtsdb._core: what the package dtsdb stands on. Its functions take and return plain values and
// the classes of dtsdb.results; dtsdb/_core.pyi describes them.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <QBuffer>
#include <atomic>
#include <map>
#include <memory>
#include <optional>

#include "analysis/flows.h"
#include "analysis/screening.h"
#include "formats/catalog.h"
#include "formats/field_text.h"
#include "formats/import_ids.h"
#include "formats/model_io.h"
#include "formats/nearest.h"
#include "formats/text_layout.h"
#include "include/log_sink.h"
#include "model/qarchive.h"
#include "model/text.h"
#include "pictures/grid.h"
#include "pictures/grid_map.h"
#include "pictures/station_diagram.h"
#include "pictures/svg.h"
#include "python/core/columns.h"
#include "python/core/edit_session.h"
#include "python/core/errors.h"
#include "python/core/network.h"
#include "python/core/realtime.h"
#include "python/core/report.h"
#include "python/core/results.h"
#include "python/core/texts.h"
#include "script/script_lines.h"

namespace py = pybind11;

namespace dtsdb::python {
namespace {

using analysis::Model;
using NetworkPtr = std::shared_ptr<Network>;

/// True once a model was made: from then on the encoding of identities stays.
std::atomic<bool> isEncodingFixed = false;

Language LanguageOf(const std::string& name) {
  if (name == "en") return Language::kEnglish;
  if (name == "zh") return Language::kChinese;
  RefuseCall("there is no language " + tools::Quoted(name) + "; choose 'en' or 'zh'");
}

NetworkPtr Open(const std::string& name, bool idsAreMrids, bool tiesAreUnits, bool mergesRetained,
                const py::object& progress) {
  isEncodingFixed = true;
  Report report(progress);
  const analysis::ImportOptions options{mergesRetained, idsAreMrids, tiesAreUnits};
  return WithoutLock(report, [&] {
    const auto show = [&](std::uint64_t done, std::uint64_t total) { report.Show(done, total); };
    return std::make_shared<Network>(Take(Model::Open(name, options, show)));
  });
}

/// A model from what Image has made of one.
NetworkPtr OfImage(const std::string& image, const std::string& name) {
  isEncodingFixed = true;
  return WithoutLock([&] {
    QByteArray bytes = QByteArray::fromStdString(image);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QArchive in(&buffer, true);
    DTSDB tables;
    tables.Serialize(in);
    if (in.IsRefused() || in.BytesLeft() != 0) RefuseCall("these bytes are no model", name);
    return std::make_shared<Network>(Model::Of(tables, name));
  });
}

/// All records and all numbering of a model, as an object file has them.
py::bytes Image(const Network& network) {
  const QByteArray image = WithoutLock([&] {
    return network.Look([&](Model& model) {
      QByteArray bytes;
      QBuffer buffer(&bytes);
      buffer.open(QIODevice::WriteOnly);
      QArchive out(&buffer, false);
      model.Tables().Serialize(out);
      if (out.status() != QDataStream::Ok) RefuseCall(model.Name() + ": the model can't be copied", model.Name());
      return bytes;
    });
  });
  return py::bytes(image.constData(), static_cast<std::size_t>(image.size()));
}

/// A model of its own.
NetworkPtr Copy(const Network& network) {
  return WithoutLock([&] { return std::make_shared<Network>(network.CopyToEdit().first); });
}

void Save(const Network& network, const std::string& name, const std::optional<std::string>& form) {
  static const std::map<std::string, tools::ModelForm> kForms = {{"object", tools::ModelForm::kObjectFile},
                                                                 {"text", tools::ModelForm::kTextTables},
                                                                 {"xiidm", tools::ModelForm::kXiidm}};
  std::optional<tools::ModelForm> chosen;
  if (form) {
    const auto found = kForms.find(*form);
    if (found == kForms.end()) {
      RefuseCall("there is no form " + tools::Quoted(*form) + "; choose 'object', 'text' or 'xiidm'", name);
    }
    chosen = found->second;
  }
  WithoutLock(
      [&] { network.Look([&](Model& model) { tools::SaveModel(model.Tables(), tools::ModelName(name), chosen); }); });
}

py::object Validate(Network& network, const std::string& language) {
  const Language spoken = LanguageOf(language);
  const auto found =
      WithoutLock([&] { return network.Change([&](Model& model) { return Take(model.Validate(spoken)); }); });
  return ToPython(found, spoken);
}

std::vector<SwitchEvent> EventsOf(const std::vector<std::string>& events) {
  std::vector<SwitchEvent> parsed;
  parsed.reserve(events.size());
  for (const std::string& words : events) parsed.push_back(Take(analysis::ParseEvent(words)));
  return parsed;
}

py::object Switch(Network& network, const std::vector<std::string>& events) {
  const auto outcome = WithoutLock([&] { return network.Switch(EventsOf(events)); });
  return ToPython(outcome, Language::kEnglish);
}

py::object WorkOutFlows(Network& network, float tolerance, bool completesVoltages) {
  const auto flows = WithoutLock([&] {
    return network.WithTopology([&](Model& model) {
      return Take(analysis::WorkOutFlows(model, {tolerance, completesVoltages}));
    });
  });
  return ToPython(flows);
}

py::object SingleOutages(Network& network, const std::vector<std::string>& tables) {
  const auto outages = WithoutLock(
      [&] { return network.WithGood([&](Model& model) { return Take(analysis::SingleOutages(model, tables)); }); });
  return ToPython(outages);
}

py::object Screen(Network& network, const py::iterable& outages, std::size_t jobs, const py::object& progress) {
  constexpr std::size_t kMostJobs = 256;
  if (jobs < 1 || jobs > kMostJobs) RefuseCall("the number of jobs is 1 to 256, not " + std::to_string(jobs));
  const std::vector<analysis::Outage> tried = OutagesFrom(outages);
  Report report(progress);
  analysis::ScreeningOptions options;
  options.jobs = jobs;
  options.progress = [&](std::size_t done) { report.Show(done, tried.size()); };
  options.isCancelled = [&] { return report.HasRaised(); };
  const auto screening = WithoutLock(report, [&] {
    auto found = network.WithGood([&](Model& model) { return Take(analysis::Screen(model, tried, options)); });
    report.Show(tried.size(), tried.size());  // where another thread has done the last one
    return found;
  });
  return ToPython(screening, Language::kEnglish);
}

/// A station or, where `isLevel`, a voltage level as SVG.
py::str Draw(Network& network, const std::string& identity, bool isLevel, bool flows) {
  const std::string svg = WithoutLock([&] {
    return network.WithTopology([&](Model& model) {
      std::optional<Flows> computed;
      if (flows) computed = Take(analysis::WorkOutFlows(model));
      const pictures::StationReader reader(model.Tables(), computed ? &*computed : nullptr);
      const QString id = tools::IdFromUtf8(identity).value_or(QString());
      const pictures::Station station = Take(isLevel ? reader.ReadLevel(id) : reader.Read(id));
      return pictures::ToSvg(pictures::DrawStation(station, {flows}));
    });
  });
  return Text(svg);
}

/// The map of the grid or, where `around` isn't empty, of the part around that station, as SVG.
py::str DrawGrid(Network& network, const std::string& around, int hops, bool flows) {
  if (hops < 0) RefuseCall("the number of hops can't be negative", around);
  const std::string svg = WithoutLock([&] {
    return network.WithTopology([&](Model& model) {
      const bool hasPositions = !model.Positions().empty();
      const pictures::GridReader reader(
          model.Tables(), hasPositions ? model.Positions() : tools::PositionsBeside(tools::ModelName(model.Name())));
      if (around.empty()) return pictures::ToSvg(pictures::DrawGrid(reader.Read(), {flows}));
      const QString id = tools::IdFromUtf8(around).value_or(QString());
      return pictures::ToSvg(pictures::DrawGrid(Take(reader.ReadAround(id, hops)), {flows}));
    });
  });
  return Text(svg);
}

TableAtMoment TableOf(const Network& network, const std::string& table) {
  return {WithoutLock([&] { return network.Now(); }), table};
}

py::object ValueToPython(const StoredValue& value) {
  return std::visit(
      []<class V>(const V& held) -> py::object {
        if constexpr (std::is_same_v<V, QString>) {
          return IdText(held);
        } else if constexpr (std::is_same_v<V, QByteArray>) {
          return py::bytes(held.constData(), static_cast<std::size_t>(held.size()));
        } else {
          return py::cast(held);
        }
      },
      value);
}

py::list RowsToPython(const std::vector<StoredRow>& rows) {
  py::list list;
  for (const StoredRow& row : rows) {
    py::tuple values(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) values[i] = ValueToPython(row[i]);
    list.append(values);
  }
  return list;
}

/// The rows, or None when they are known; and what is known then.
py::tuple RowsUnlessKnown(Realtime& database, const std::string& table, std::uint64_t opening, std::uint64_t change) {
  RowsState state{opening, change};
  const auto rows = WithoutLock([&] { return database.RowsUnlessKnown(table, state); });
  return py::make_tuple(rows ? py::object(RowsToPython(*rows)) : py::object(py::none()), state.opening, state.change);
}

void SetEncoding(const std::string& name) {
  const auto encoding = FindIdEncoding(name);
  if (!encoding) RefuseCall("there is no encoding " + tools::Quoted(name) + "; choose 'gbk' or 'utf-8'");
  if (isEncodingFixed && *encoding != CurrentIdEncoding()) {
    RefuseCall("the encoding can only be set before the first model is opened");
  }
  SetIdEncoding(*encoding);
}

/// What type(...) does for classes whose objects only this module makes: pybind11 would make one without a C++ object.
PyObject* RefuseToMake(PyTypeObject* type, PyObject*, PyObject*) {
  PyErr_Format(PyExc_TypeError, "objects of %s are made by the package alone", type->tp_name);
  return nullptr;
}

/// A class of the module that Python programs can't make objects of.
template <class... Options>
py::class_<Options...> ClassOf(py::module_& module, const char* name) {
  py::class_<Options...> made(module, name, py::is_final());
  auto* const type = reinterpret_cast<PyTypeObject*>(made.ptr());
  // The base is that of this module's classes alone: its pybind11 is kept apart (CMakeLists.txt).
  for (PyTypeObject* const each : {type, type->tp_base}) {
    each->tp_new = RefuseToMake;
    PyType_Modified(each);
  }
  return made;
}

void DefineNetwork(py::module_& module) {
  ClassOf<Mark>(module, "Mark");
  ClassOf<Network, NetworkPtr>(module, "Network")
      .def("name", [](const Network& network) { return Text(network.Name()); })
      .def("close", [](Network& network) { WithoutLock([&] { network.Close(); }); })
      .def("is_closed", [](const Network& network) { return WithoutLock([&] { return network.IsClosed(); }); })
      .def("is_good",
           [](const Network& network) {
             return WithoutLock([&] { return network.Look([](Model& model) { return model.IsGood(); }); });
           })
      .def("save", Save)
      .def("image", Image)
      .def("copy", Copy)
      .def("validate", Validate)
      .def("topology",
           [](Network& network, const std::string& language) {
             const Language spoken = LanguageOf(language);
             return ToPython(WithoutLock([&] { return network.WorkOutTopology(); }), spoken);
           })
      .def("mark",
           [](Network& network) { return WithoutLock([&] { return std::make_unique<Mark>(network.MakeMark()); }); })
      .def("switch", Switch)
      .def("go_back",
           [](Network& network, const Mark& mark) {
             return ToPython(WithoutLock([&] { return network.GoBack(mark); }), Language::kEnglish);
           })
      .def("effect_since",
           [](Network& network, const Mark& mark) {
             return ToPython(WithoutLock([&] { return network.EffectSince(mark); }));
           })
      .def("flows", WorkOutFlows)
      .def("single_outages", SingleOutages)
      .def("screen", Screen)
      .def("draw", Draw)
      .def("draw_grid", DrawGrid)
      .def("count", [](const Network& network, const std::string& table) { return TableOf(network, table).GetCount(); })
      .def("column", [](const Network& network, const std::string& table,
                        const std::string& field) { return TableOf(network, table).Column(field); })
      .def("columns",
           [](const Network& network, const std::string& table) {
             const TableAtMoment taken = TableOf(network, table);
             py::dict columns;
             for (const FieldInfo& field : taken.Info().fields()) columns[field.name] = taken.Column(field.name);
             return columns;
           })
      .def("find", [](const Network& network, const std::string& table,
                      const std::string& identity) { return TableOf(network, table).Find(identity); })
      .def("record", [](const Network& network, const std::string& table, int number) {
        return TableOf(network, table).Record(number);
      });
}

void DefineEditing(py::module_& module) {
  module.def(
      "begin_edits",
      [](const NetworkPtr& network) { return WithoutLock([&] { return std::make_unique<EditSession>(network); }); },
      py::arg("network").none(false));
  ClassOf<EditSession>(module, "EditSession")
      .def("apply", [](EditSession& session,
                       const std::vector<std::string>& words) { WithoutLock([&] { session.Apply(words); }); })
      .def("commit", [](EditSession& session) {
        return ToPython(WithoutLock([&] { return session.Commit(); }), Language::kEnglish);
      });
}

void DefineRealtime(py::module_& module) {
  module.def("open_realtime", [](const std::string& name, bool writes) {
    return WithoutLock([&] { return std::make_unique<Realtime>(name, writes); });
  });
  ClassOf<Realtime>(module, "Realtime")
      .def("close", [](Realtime& database) { WithoutLock([&] { database.Close(); }); })
      .def("is_closed", [](const Realtime& database) { return WithoutLock([&] { return database.IsClosed(); }); })
      .def("counts", [](Realtime& database) { return WithoutLock([&] { return database.Counts(); }); })
      .def("rows",
           [](Realtime& database, const std::string& table) {
             return RowsToPython(WithoutLock([&] { return database.Rows(table); }));
           })
      .def("rows_unless_known", RowsUnlessKnown)
      .def("put", [](Realtime& database, const std::string& table, const std::vector<std::string>& assignments) {
        return WithoutLock([&] { return database.Put(table, assignments); });
      });
  module.def("stored_columns", StoredColumns);
}

}  // namespace
}  // namespace dtsdb::python

PYBIND11_MODULE(_core, module) {
  using namespace dtsdb;
  using namespace dtsdb::python;
  SetLogSink([](LogKind, std::string_view) {});  // the results contain what the logs would
  RegisterErrors();
  DefineNetwork(module);
  DefineEditing(module);
  DefineRealtime(module);
  module.attr("version") = DTSDB_VERSION;
  module.def("open", Open);
  module.def("of_image", OfImage);
  module.def("tables", DescribeTables);
  module.def("table_name", [](const std::string& name) { return TableName(tools::NamedTable(name)); });
  module.def("outage_tables", [] { return analysis::OutageTables(); });
  module.def("all_pairs",
             [](const py::iterable& outages) { return ToPython(analysis::AllPairs(OutagesFrom(outages))); });
  module.def("sample_pairs", [](const py::iterable& outages, std::size_t count, std::uint64_t seed) {
    return ToPython(analysis::SamplePairs(OutagesFrom(outages), count, seed));
  });
  module.def("script_word", [](const std::string& text) { return Text(tools::ScriptWord(text)); });
  module.def("did_you_mean", [](const std::string& name, const std::vector<std::string>& known) {
    return Text(tools::DidYouMean(name, known));
  });
  module.def("encoding", [] { return NameOf(CurrentIdEncoding()); });
  module.def("set_encoding", SetEncoding);
}
