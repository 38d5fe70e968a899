#include "formats/xiidm/attributes.h"

#include <QHash>
#include <QString>

namespace dtsdb::tools::xiidm {
namespace {

struct Row {
  const char* name;
  Attribute attribute;
};

// An attribute that was called otherwise in earlier versions stands several times.
constexpr Row kAttributeRows[] = {
    {"id", kId},
    {"name", kName},
    {"country", kCountry},
    {"tso", kTso},
    {"geographicalTags", kTags},
    {"nominalV", kNominalV},
    {"lowVoltageLimit", kLowLimit},
    {"highVoltageLimit", kHighLimit},
    {"node", kNode},
    {"node1", kNode1},
    {"node2", kNode2},
    {"node3", kNode3},
    {"bus", kBus},
    {"bus1", kBus1},
    {"bus2", kBus2},
    {"bus3", kBus3},
    {"connectableBus", kConnectableBus},
    {"connectableBus1", kConnectableBus1},
    {"connectableBus2", kConnectableBus2},
    {"connectableBus3", kConnectableBus3},
    {"voltageLevelId1", kLevel1},
    {"voltageLevelId2", kLevel2},
    {"voltageLevelId3", kLevel3},
    {"p", kP},
    {"p1", kP1},
    {"p2", kP2},
    {"p3", kP3},
    {"q", kQ},
    {"q1", kQ1},
    {"q2", kQ2},
    {"q3", kQ3},
    {"kind", kKind},
    {"open", kOpen},
    {"retained", kRetained},
    {"v", kV},
    {"angle", kAngle},
    {"targetP", kTargetP},
    {"targetQ", kTargetQ},
    {"maxP", kMaxP},
    {"p0", kP0},
    {"q0", kQ0},
    {"generationTargetP", kGenerationP},
    {"generationTargetQ", kGenerationQ},
    {"sectionCount", kSections},
    {"currentSectionCount", kSections},
    {"solvedSectionCount", kSolvedSections},
    {"bPerSection", kBPerSection},
    {"boundaryLineId1", kBoundary1},
    {"boundaryLineId2", kBoundary2},
    {"danglingLineId1", kBoundary1},
    {"danglingLineId2", kBoundary2},
    {"converterStation1", kConverter1},
    {"converterStation2", kConverter2},
};

/// The attributes by name. The texts live as long as the program.
QHash<QStringView, Attribute> MakeAttributeIndex() {
  static const QStringList texts = [] {
    QStringList list;
    for (const Row& row : kAttributeRows) list.append(QString::fromLatin1(row.name));
    return list;
  }();
  QHash<QStringView, Attribute> index;
  for (qsizetype i = 0; i < texts.size(); ++i) index.insert(texts[i], kAttributeRows[i].attribute);
  return index;
}

}  // namespace

Attribute AttributeOf(QStringView name) {
  static const QHash<QStringView, Attribute> index = MakeAttributeIndex();
  return index.value(name, kAttributeCount);
}

}  // namespace dtsdb::tools::xiidm
