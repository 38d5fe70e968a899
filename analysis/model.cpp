#include "analysis/model.h"

#include <fmt/format.h>

#include <QBuffer>
#include <algorithm>
#include <utility>

#include "analysis/internal/guard.h"
#include "formats/import_report.h"
#include "formats/model_io.h"
#include "formats/text_layout.h"
#include "include/log_sink.h"
#include "model/qarchive.h"
#include "validation/nmd.h"

namespace dtsdb::analysis {
namespace {

int CountOf(const QList<Finding>& findings, Severity severity) {
  return static_cast<int>(std::count_if(findings.begin(), findings.end(),
                                        [=](const Finding& finding) { return finding.severity == severity; }));
}

/// The program's sink; one that does nothing where it has set none, so that no log is left in the current folder.
LogSink SinkOrNothing() {
  if (CurrentLogSink()) return CurrentLogSink();
  return [](LogKind, std::string_view) {};
}

}  // namespace

Result<Model> Model::Open(const std::string& name, const ImportOptions& import, const ReadingProgress& progress) {
  return internal::Guarded(name, [&]() -> Result<Model> {
    tools::ModelName model(name);
    model.Import() = import;
    tools::ImportReport report;
    auto tables = std::make_shared<DTSDB>(tools::LoadModel(model, &report, progress));
    return Model(std::move(tables), name, tools::PositionsOf(report));
  });
}

Model Model::Of(const DTSDB& tables, const std::string& name, StationPositions positions) {
  return Model(std::make_shared<DTSDB>(tables), name, std::move(positions));
}

Result<void> Model::Save(const std::string& name) {
  return internal::Guarded(name, [&]() -> Result<void> {
    tools::SaveModel(*m_tables, tools::ModelName(name));
    return {};
  });
}

Result<Validation> Model::Validate(Language language) {
  return internal::Guarded(m_name, [&]() -> Result<Validation> {
    NMD nmd(m_tables.get(), SinkOrNothing());
    if (!nmd.DetectAll()) {
      const MessageInfo& reason = *FindMessage(nmd.LastErrorCode());
      const std::string text = QString::fromUtf8(reason.Text(language)).trimmed().toStdString();
      return tl::unexpected(Error{
          ErrorCode::kFaultyModel,
          fmt::format("{}: the validation can't be finished: {}; {}", m_name, text, reason.Remedy(language)), m_name});
    }
    const QList<Finding>& findings = nmd.Findings();
    return Validation{IsGood(), CountOf(findings, Severity::kError), CountOf(findings, Severity::kWarning), findings};
  });
}

bool Model::IsGood() const {
  return m_tables->m_globalTable->GetCount() > 0 && (*m_tables->m_globalTable)[0].valid != 0;
}

Result<void> Model::RequireGood(Language language) {
  if (IsGood()) return {};
  const Result<Validation> found = Validate(language);
  if (!found) return tl::unexpected(found.error());
  if (found->good) return {};
  return tl::unexpected(Error{ErrorCode::kFaultyModel,
                              fmt::format("{}: the model has {}; 'dtsdb validate {}' shows them", m_name,
                                          tools::Counted(found->errors, "error"), m_name),
                              m_name});
}

Result<Model> Model::Copy() const {
  return internal::Guarded(m_name, [&]() -> Result<Model> {
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    QArchive out(&buffer, false);
    m_tables->Serialize(out);
    buffer.seek(0);
    QArchive in(&buffer, true);
    auto copy = std::make_shared<DTSDB>();
    copy->Serialize(in);
    if (out.status() != QDataStream::Ok || in.IsRefused() || in.BytesLeft() != 0) {
      return tl::unexpected(Error{ErrorCode::kInternal, m_name + ": the model can't be copied", m_name});
    }
    return Model(std::move(copy), m_name, m_positions);
  });
}

}  // namespace dtsdb::analysis
