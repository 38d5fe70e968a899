/// \file
/// The properties of CGMES objects that the import reads. Every other property is passed over while a file is read.
#pragma once

#include <QStringView>
#include <cstdint>

// X(enumerator, name in a profile)
#define DTSDB_CGMES_PROPERTIES(X)                                                  \
  X(kName, "IdentifiedObject.name")                                                \
  X(kContainer, "Equipment.EquipmentContainer")                                    \
  X(kInService, "Equipment.inService")                                             \
  X(kNodeContainer, "ConnectivityNode.ConnectivityNodeContainer")                  \
  X(kNodeTopological, "ConnectivityNode.TopologicalNode")                          \
  X(kTerminalEquipment, "Terminal.ConductingEquipment")                            \
  X(kTerminalNode, "Terminal.ConnectivityNode")                                    \
  X(kTerminalTopological, "Terminal.TopologicalNode")                              \
  X(kTerminalNumber, "ACDCTerminal.sequenceNumber")                                \
  X(kTerminalNumberOld, "Terminal.sequenceNumber")                                 \
  X(kTerminalConnected, "ACDCTerminal.connected")                                  \
  X(kRegionOfRegion, "SubGeographicalRegion.Region")                               \
  X(kStationRegion, "Substation.Region")                                           \
  X(kLineRegion, "Line.Region")                                                    \
  X(kLevelStation, "VoltageLevel.Substation")                                      \
  X(kLevelVoltage, "VoltageLevel.BaseVoltage")                                     \
  X(kLevelHigh, "VoltageLevel.highVoltageLimit")                                   \
  X(kLevelLow, "VoltageLevel.lowVoltageLimit")                                     \
  X(kBayLevel, "Bay.VoltageLevel")                                                 \
  X(kNominalVoltage, "BaseVoltage.nominalVoltage")                                 \
  X(kEquipmentVoltage, "ConductingEquipment.BaseVoltage")                          \
  X(kSwitchOpen, "Switch.open")                                                    \
  X(kSwitchNormalOpen, "Switch.normalOpen")                                        \
  X(kSwitchRetained, "Switch.retained")                                            \
  X(kEndTerminal, "TransformerEnd.Terminal")                                       \
  X(kEndNumber, "TransformerEnd.endNumber")                                        \
  X(kEndRatedU, "PowerTransformerEnd.ratedU")                                      \
  X(kMachineUnit, "RotatingMachine.GeneratingUnit")                                \
  X(kMachineP, "RotatingMachine.p")                                                \
  X(kMachineQ, "RotatingMachine.q")                                                \
  X(kMachinePriority, "SynchronousMachine.referencePriority")                      \
  X(kUnitMaxP, "GeneratingUnit.maxOperatingP")                                     \
  X(kExternalMaxP, "ExternalNetworkInjection.maxP")                                \
  X(kExternalP, "ExternalNetworkInjection.p")                                      \
  X(kExternalQ, "ExternalNetworkInjection.q")                                      \
  X(kExternalPriority, "ExternalNetworkInjection.referencePriority")               \
  X(kElectronicsP, "PowerElectronicsConnection.p")                                 \
  X(kElectronicsQ, "PowerElectronicsConnection.q")                                 \
  X(kElectronicsUnitConnection, "PowerElectronicsUnit.PowerElectronicsConnection") \
  X(kElectronicsUnitMaxP, "PowerElectronicsUnit.maxP")                             \
  X(kSourceP, "EnergySource.activePower")                                          \
  X(kSourceQ, "EnergySource.reactivePower")                                        \
  X(kSourceMaxP, "EnergySource.pMax")                                              \
  X(kTieP, "EquivalentInjection.p")                                                \
  X(kTieQ, "EquivalentInjection.q")                                                \
  X(kTieMaxP, "EquivalentInjection.maxP")                                          \
  X(kLoadP, "EnergyConsumer.p")                                                    \
  X(kLoadQ, "EnergyConsumer.q")                                                    \
  X(kLoadFixedP, "EnergyConsumer.pfixed")                                          \
  X(kLoadFixedQ, "EnergyConsumer.qfixed")                                          \
  X(kShuntSections, "ShuntCompensator.sections")                                   \
  X(kShuntNominalU, "ShuntCompensator.nomU")                                       \
  X(kShuntB, "LinearShuntCompensator.bPerSection")                                 \
  X(kStaticVarQ, "StaticVarCompensator.q")                                         \
  X(kConverterP, "ACDCConverter.p")                                                \
  X(kConverterQ, "ACDCConverter.q")                                                \
  X(kDcTerminalEquipment, "DCTerminal.DCConductingEquipment")                      \
  X(kDcTerminalConverter, "ACDCConverterDCTerminal.DCConductingEquipment")         \
  X(kDcTerminalNode, "DCBaseTerminal.DCNode")                                      \
  X(kMeasurementTerminal, "Measurement.Terminal")                                  \
  X(kMeasurementResource, "Measurement.PowerSystemResource")                       \
  X(kMeasurementType, "Measurement.measurementType")                               \
  X(kAnalogOfValue, "AnalogValue.Analog")                                          \
  X(kAnalogValue, "AnalogValue.value")                                             \
  X(kDiscreteOfValue, "DiscreteValue.Discrete")                                    \
  X(kDiscreteValue, "DiscreteValue.value")                                         \
  X(kFlowTerminal, "SvPowerFlow.Terminal")                                         \
  X(kFlowP, "SvPowerFlow.p")                                                       \
  X(kFlowQ, "SvPowerFlow.q")                                                       \
  X(kVoltageNode, "SvVoltage.TopologicalNode")                                     \
  X(kVoltageV, "SvVoltage.v")                                                      \
  X(kVoltageAngle, "SvVoltage.angle")                                              \
  X(kStatusEquipment, "SvStatus.ConductingEquipment")                              \
  X(kStatusInService, "SvStatus.inService")                                        \
  X(kSectionsShunt, "SvShuntCompensatorSections.ShuntCompensator")                 \
  X(kSectionsCount, "SvShuntCompensatorSections.sections")                         \
  X(kLocation, "PowerSystemResource.Location")                                     \
  X(kLocationOf, "Location.PowerSystemResources")                                  \
  X(kPointLocation, "PositionPoint.Location")                                      \
  X(kPointNumber, "PositionPoint.sequenceNumber")                                  \
  X(kPointX, "PositionPoint.xPosition")                                            \
  X(kPointY, "PositionPoint.yPosition")                                            \
  X(kIslandNodes, "TopologicalIsland.TopologicalNodes")

namespace dtsdb::tools::cgmes {

enum Property : std::uint8_t {
#define DTSDB_CGMES_ENUMERATOR(enumerator, name) enumerator,
  DTSDB_CGMES_PROPERTIES(DTSDB_CGMES_ENUMERATOR)
#undef DTSDB_CGMES_ENUMERATOR
      kPropertyCount
};

/// The property of this name, without its prefix; kPropertyCount for one that the import doesn't read.
Property PropertyOf(QStringView name);

/// The name of a property as the profiles have it.
const char* PropertyName(Property property);

/// True for a property that an object may have several times.
inline bool IsList(Property property) { return property == kIslandNodes; }

}  // namespace dtsdb::tools::cgmes
