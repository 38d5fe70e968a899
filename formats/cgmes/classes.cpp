#include "formats/cgmes/classes.h"

#include <algorithm>

namespace dtsdb::tools::cgmes {
namespace {

constexpr ClassRow kUnknown = {"", Role::kUnknown, ""};

// clang-format off
constexpr ClassRow kClasses[] = {
    // Who owns what, and where it stands.
    {"GeographicalRegion", Role::kCompany, "CO"},
    {"SubGeographicalRegion", Role::kDistrict, "DV"},
    {"Substation", Role::kStation, "ST"},
    {"VoltageLevel", Role::kLevel, "KV"},
    {"Bay", Role::kPart, ""},
    {"Line", Role::kPart, "ST, KV"},  // where connectivity nodes lie in it
    {"BaseVoltage", Role::kPart, ""},
    {"ConnectivityNode", Role::kPart, "ND"},
    {"Terminal", Role::kPart, ""},

    // Switches.
    {"Breaker", Role::kBreaker, "CB"},
    {"LoadBreakSwitch", Role::kBreaker, "CB"},
    {"DisconnectingCircuitBreaker", Role::kBreaker, "CB"},
    {"ProtectedSwitch", Role::kBreaker, "CB"},
    {"Recloser", Role::kBreaker, "CB"},
    {"Switch", Role::kDisconnector, "CB"},
    {"Disconnector", Role::kDisconnector, "CB"},
    {"GroundDisconnector", Role::kDisconnector, "CB"},
    {"Fuse", Role::kDisconnector, "CB"},
    {"Jumper", Role::kDisconnector, "CB"},
    {"Cut", Role::kDisconnector, "CB"},
    {"Sectionaliser", Role::kDisconnector, "CB"},

    // Branches and buses.
    {"BusbarSection", Role::kBus, "BUS"},
    {"ACLineSegment", Role::kLine, "LN"},
    {"SeriesCompensator", Role::kLine, "LN"},
    {"EquivalentBranch", Role::kLine, "LN"},
    {"PowerTransformer", Role::kTransformer, "XF"},
    {"PowerTransformerEnd", Role::kPart, ""},
    {"CsConverter", Role::kConverter, "DLN", kConverterP, kConverterQ},
    {"VsConverter", Role::kConverter, "DLN", kConverterP, kConverterQ},
    {"DCLineSegment", Role::kPart, "DLN"},
    {"DCTerminal", Role::kPart, ""},
    {"ACDCConverterDCTerminal", Role::kPart, ""},
    {"DCNode", Role::kPart, ""},

    // What produces power, and what takes it.
    {"SynchronousMachine", Role::kUnit, "UN", kMachineP, kMachineQ, kPropertyCount, kMachinePriority},
    {"ExternalNetworkInjection", Role::kUnit, "UN", kExternalP, kExternalQ, kExternalMaxP, kExternalPriority},
    {"PowerElectronicsConnection", Role::kUnit, "UN", kElectronicsP, kElectronicsQ},
    {"EnergySource", Role::kUnit, "UN", kSourceP, kSourceQ, kSourceMaxP},
    {"EquivalentInjection", Role::kTie, "LD", kTieP, kTieQ, kTieMaxP},
    {"EnergyConsumer", Role::kLoad, "LD", kLoadP, kLoadQ},
    {"ConformLoad", Role::kLoad, "LD", kLoadP, kLoadQ},
    {"NonConformLoad", Role::kLoad, "LD", kLoadP, kLoadQ},
    {"StationSupply", Role::kLoad, "LD", kLoadP, kLoadQ},
    {"AsynchronousMachine", Role::kLoad, "LD", kMachineP, kMachineQ},
    {"LinearShuntCompensator", Role::kShunt, "CP"},
    {"NonlinearShuntCompensator", Role::kShunt, "CP"},
    {"EquivalentShunt", Role::kShunt, "CP"},
    {"StaticVarCompensator", Role::kShunt, "CP", kPropertyCount, kStaticVarQ},
    {"GeneratingUnit", Role::kPart, ""},
    {"HydroGeneratingUnit", Role::kPart, ""},
    {"NuclearGeneratingUnit", Role::kPart, ""},
    {"SolarGeneratingUnit", Role::kPart, ""},
    {"ThermalGeneratingUnit", Role::kPart, ""},
    {"WindGeneratingUnit", Role::kPart, ""},
    {"BatteryUnit", Role::kPart, ""},
    {"PhotoVoltaicUnit", Role::kPart, ""},
    {"PowerElectronicsWindUnit", Role::kPart, ""},

    // Measurements and the published state.
    {"Analog", Role::kAnalog, "ANALOG"},
    {"AnalogValue", Role::kPart, ""},
    {"Discrete", Role::kDiscrete, "STATUS"},
    {"DiscreteValue", Role::kPart, ""},
    {"SvPowerFlow", Role::kPart, ""},
    {"SvVoltage", Role::kPart, ""},
    {"SvStatus", Role::kPart, ""},
    {"SvShuntCompensatorSections", Role::kPart, ""},
    {"TopologicalNode", Role::kPart, ""},
    {"TopologicalIsland", Role::kPart, ""},

    // Where things stand on the map.
    {"CoordinateSystem", Role::kPart, ""},
    {"Location", Role::kPart, ""},
    {"PositionPoint", Role::kPoint, ""},
};
// clang-format on

}  // namespace

std::span<const ClassRow> Classes() { return kClasses; }

const ClassRow& RowOfClass(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kClasses), std::end(kClasses), [name](const ClassRow& row) { return row.name == name; });
  return found == std::end(kClasses) ? kUnknown : *found;
}

}  // namespace dtsdb::tools::cgmes
