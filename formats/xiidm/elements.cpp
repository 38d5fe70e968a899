#include "formats/xiidm/elements.h"

#include <QHash>
#include <QString>

namespace dtsdb::tools::xiidm {
namespace {

constexpr ElementRow kElementRows[] = {
    {"network", Role::kNetwork, "", 0, false},
    {"nodeBreakerTopology", Role::kTopology, "", 0, true},
    {"busBreakerTopology", Role::kTopology, "", 0, true},
    {"internalConnection", Role::kConnection, "", 0, true},
    {"shuntLinearModel", Role::kModel, "", 0, false},
    {"shuntNonLinearModel", Role::kModel, "", 0, false},
    {"section", Role::kSection, "", 0, false},
    {"property", Role::kProperty, "", 0, false},
    {"extension", Role::kExtension, "", 0, false},
    {"substation", Role::kStation, "CO, DV, ST", 0, false},
    {"voltageLevel", Role::kLevel, "KV", 0, false},
    {"bus", Role::kBus, "ND, BUS", 0, true},
    {"busbarSection", Role::kBusbarSection, "BUS", 1, true},
    {"switch", Role::kSwitch, "CB, ZBR", 2, true},
    {"generator", Role::kGenerator, "UN", 1, true},
    {"battery", Role::kBattery, "UN", 1, true},
    {"load", Role::kLoad, "LD", 1, true},
    {"shunt", Role::kShunt, "CP", 1, true},
    {"shuntCompensator", Role::kShunt, "CP", 1, true},
    {"staticVarCompensator", Role::kStaticVar, "CP", 1, true},
    {"danglingLine", Role::kBoundaryLine, "LN, LD", 1, true},
    {"boundaryLine", Role::kBoundaryLine, "LN, LD", 1, true},
    {"vscConverterStation", Role::kConverterStation, "DLN", 1, true},
    {"lccConverterStation", Role::kConverterStation, "DLN", 1, true},
    {"voltageSourceConverter", Role::kConverter, "UN, LD", 2, true},
    {"lineCommutatedConverter", Role::kConverter, "UN, LD", 2, true},
    {"line", Role::kLine, "LN", 2, false},
    {"tieLine", Role::kTieLine, "LN", 2, false},
    {"hvdcLine", Role::kDcLine, "DLN", 0, false},
    {"twoWindingsTransformer", Role::kTwoWindings, "XF", 2, false},
    {"threeWindingsTransformer", Role::kThreeWindings, "KV, XF", 3, false},
    {"ground", Role::kWithout, "", 0, true},
    {"area", Role::kWithout, "", 0, false},
    {"overloadManagementSystem", Role::kWithout, "", 0, false},
    {"dcNode", Role::kWithout, "", 0, false},
    {"dcSwitch", Role::kWithout, "", 0, false},
    {"dcGround", Role::kWithout, "", 0, false},
    {"dcLine", Role::kWithout, "", 0, false},
};
constexpr ElementRow kUnknown = {"", Role::kUnknown, "", 0, false};

/// The rows by name. The texts live as long as the program.
QHash<QStringView, const ElementRow*> MakeElementIndex() {
  static const QStringList texts = [] {
    QStringList list;
    for (const ElementRow& row : kElementRows) list.append(QString::fromLatin1(row.name));
    return list;
  }();
  QHash<QStringView, const ElementRow*> index;
  for (qsizetype i = 0; i < texts.size(); ++i) index.insert(texts[i], &kElementRows[i]);
  return index;
}

}  // namespace

const ElementRow& RowOf(QStringView name) {
  static const QHash<QStringView, const ElementRow*> index = MakeElementIndex();
  return *index.value(name, &kUnknown);
}

}  // namespace dtsdb::tools::xiidm
