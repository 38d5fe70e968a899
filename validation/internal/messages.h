// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The texts of the validation, as data: what its log reports, and the reasons that aren't those of one record class.
///
/// The texts are part of the interface, as they stand: some bring a leading blank or end in a line feed, some don't.
#pragma once

#include "validation/internal/message.h"

namespace dtsdb::internal {

/// A message that is reported of several tables is a template, with a code for each.
namespace message {

// The run
inline constexpr Message kRunBegins = Notice("RUN_BEGINS", "开始一次全网校验... ...");
inline constexpr Message kRunEnds = Notice("RUN_ENDS", "结束一次全网校验!");
inline constexpr Message kModelIsGood = Notice("MODEL_GOOD", "目前网络数据库没有错误，请查看校验日志.");
// %1: their number
inline constexpr Message kErrorsRemain = Notice("ERRORS_REMAIN", "网络数据库中还存在%1错误，请根据校验日志更改错误.");

// Identities and links
template <class Record>
inline constexpr Message kNoIdentity = NotReportedOf<Record>();
template <>
inline constexpr Message kNoIdentity<CO> = Error("CO_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<DV> = Error("DV_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<ST> = Error("ST_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<KV> = Error("KV_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<UN> = Error("UN_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<LD> = Error("LD_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<CP> = Error("CP_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<BUS> = Error("BUS_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<CB> = Error("CB_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<XF> = Error("XF_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<LN> = Error("LN_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
template <>
inline constexpr Message kNoIdentity<DLN> = Error("DLN_ID_EMPTY", "id", "表中出现标识为空的记录.", false);
inline constexpr Message kUnknownCompany = Error("DV_COMPANY_UNKNOWN", "co", "co字段在公司表中没有相应记录.");
template <class Record>
inline constexpr Message kUnknownDistrict = NotReportedOf<Record>();
template <>
inline constexpr Message kUnknownDistrict<ST> = Error("ST_DISTRICT_UNKNOWN", "dv", "dv字段在分区表中没有相应记录.");
template <>
inline constexpr Message kUnknownDistrict<LN> = Error("LN_DISTRICT_UNKNOWN", "dv", "dv字段在分区表中没有相应记录.");
template <>
inline constexpr Message kUnknownDistrict<DLN> = Error("DLN_DISTRICT_UNKNOWN", "dv", "dv字段在分区表中没有相应记录.");
template <class Record>
inline constexpr Message kUnknownStation = NotReportedOf<Record>();
template <>
inline constexpr Message kUnknownStation<KV> = Error("KV_STATION_UNKNOWN", "st", "st字段在厂站表中没有相应记录.");
template <>
inline constexpr Message kUnknownStation<XF> = Error("XF_STATION_UNKNOWN", "st", "st字段在厂站表中没有相应记录.");
template <class Record>
inline constexpr Message kUnknownLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kUnknownLevel<UN> = Error("UN_LEVEL_UNKNOWN", "kv", "kv字段在母线表中没有相应记录.");
template <>
inline constexpr Message kUnknownLevel<LD> = Error("LD_LEVEL_UNKNOWN", "kv", "kv字段在母线表中没有相应记录.");
template <>
inline constexpr Message kUnknownLevel<CP> = Error("CP_LEVEL_UNKNOWN", "kv", "kv字段在母线表中没有相应记录.");
template <>
inline constexpr Message kUnknownLevel<BUS> = Error("BUS_LEVEL_UNKNOWN", "kv", "kv字段在母线表中没有相应记录.");
template <>
inline constexpr Message kUnknownLevel<CB> = Error("CB_LEVEL_UNKNOWN", "kv", "kv字段在母线表中没有相应记录.");
inline constexpr Message kUnknownBreaker = Error("ZBR_BREAKER_UNKNOWN", "cb", "表中关联的开关在开关表中不存在.", false);

// Stations and voltage levels
inline constexpr Message kBadStationType = Error("ST_TYPE_INVALID", "type", "厂站类型填写错误.");
inline constexpr Message kBadVbase = Error("KV_VBASE_NEGATIVE", "vbase", "的电压基准值VBASE不合法.");
inline constexpr Message kBadVmax = Error("KV_VMAX_NEGATIVE", "vmax", "的电压高限值VMAX不合法.");
inline constexpr Message kBadVmin = Error("KV_VMIN_NEGATIVE", "vmin", "的电压低限值VMIN不合法.");
inline constexpr Message kVmaxBelowVmin =
    Error("KV_LIMITS_REVERSED", "vmax", "的电压高限值VMAX小于电压低限值VMIN不合法.");

// Names that a device leaves empty
template <class Record>
inline constexpr Message kNoNode = NotReportedOf<Record>();
template <>
inline constexpr Message kNoNode<UN> = Error("UN_NODE_EMPTY", "nd", " 关联的结点名称为空.");
template <>
inline constexpr Message kNoNode<LD> = Error("LD_NODE_EMPTY", "nd", " 关联的结点名称为空.");
template <>
inline constexpr Message kNoNode<CP> = Error("CP_NODE_EMPTY", "nd", " 关联的结点名称为空.");
template <>
inline constexpr Message kNoNode<BUS> = Error("BUS_NODE_EMPTY", "nd", " 关联的结点名称为空.");
template <class Record>
inline constexpr Message kNoLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kNoLevel<UN> = Error("UN_LEVEL_EMPTY", "kv", " 关联的母线名称为空.");
template <>
inline constexpr Message kNoLevel<LD> = Error("LD_LEVEL_EMPTY", "kv", " 关联的母线名称为空.");
template <>
inline constexpr Message kNoLevel<CP> = Error("CP_LEVEL_EMPTY", "kv", " 关联的母线名称为空.");
template <>
inline constexpr Message kNoLevel<BUS> = Error("BUS_LEVEL_EMPTY", "kv", " 关联的母线名称为空.");
template <>
inline constexpr Message kNoLevel<CB> = Error("CB_LEVEL_EMPTY", "kv", " 关联的母线名称为空.");
inline constexpr Message kNoFromNode = Error("CB_FROM_NODE_EMPTY", "nd", " 关联的首端结点名称为空.");
inline constexpr Message kNoToNode = Error("CB_TO_NODE_EMPTY", "znd", " 关联的末端结点名称为空.");
inline constexpr Message kNoHighNode = Error("XF_HIGH_NODE_EMPTY", "nd", " 关联的高压端结点名称为空.");
inline constexpr Message kNoLowNode = Error("XF_LOW_NODE_EMPTY", "znd", " 关联的低压端结点名称为空.");
inline constexpr Message kNoStation = Error("XF_STATION_EMPTY", "st", " 关联的厂站名称为空.");
inline constexpr Message kNoFromLevel = Error("XF_FROM_LEVEL_EMPTY", "kv", " 关联的首端母线名称为空.");
inline constexpr Message kNoToLevel = Error("XF_TO_LEVEL_EMPTY", "zkv", " 关联的末端母线名称为空.");
template <class Record>
inline constexpr Message kNoFromStation = NotReportedOf<Record>();
template <>
inline constexpr Message kNoFromStation<LN> = Error("LN_FROM_STATION_EMPTY", "st", " 关联的首端厂站名称为空.");
template <>
inline constexpr Message kNoFromStation<DLN> = Error("DLN_FROM_STATION_EMPTY", "st", " 关联的首端厂站名称为空.");
template <class Record>
inline constexpr Message kNoToStation = NotReportedOf<Record>();
template <>
inline constexpr Message kNoToStation<LN> = Error("LN_TO_STATION_EMPTY", "zst", " 关联的末端厂站名称为空.");
template <>
inline constexpr Message kNoToStation<DLN> = Error("DLN_TO_STATION_EMPTY", "zst", " 关联的末端厂站名称为空.");

// Types
inline constexpr Message kBadBreakerType = Error("CB_TYPE_INVALID", "flags", " 具有多个开关类型，错误.");
inline constexpr Message kBadWindingType = Error("XF_TYPE_INVALID", "type", " 的类型填写不正确.");

// Measurements that are not in their table. The reactive one of a to end is called 有功 (active): it stays so.
template <class Record>
inline constexpr Message kNoP = NotReportedOf<Record>();
template <>
inline constexpr Message kNoP<LD> = Warning("LD_P_UNKNOWN", "ana_p", " 的有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoP<UN> = Warning("UN_P_UNKNOWN", "ana_p", " 的有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoP<ZBR> = Warning("ZBR_P_UNKNOWN", "ana_p", " 的有功遥测P在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoQ = NotReportedOf<Record>();
template <>
inline constexpr Message kNoQ<LD> = Warning("LD_Q_UNKNOWN", "ana_q", " 的无功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoQ<UN> = Warning("UN_Q_UNKNOWN", "ana_q", " 的无功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoQ<CP> = Warning("CP_Q_UNKNOWN", "ana_q", " 的无功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoQ<ZBR> = Warning("ZBR_Q_UNKNOWN", "ana_q", " 的无功遥测Q在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoV = NotReportedOf<Record>();
template <>
inline constexpr Message kNoV<LD> = Warning("LD_V_UNKNOWN", "ana_v", " 的电压遥测V在遥测表中不存在.");
template <>
inline constexpr Message kNoV<BUS> = Warning("BUS_V_UNKNOWN", "ana_v", " 的电压遥测V在遥测表中不存在.");
inline constexpr Message kNoA = Warning("BUS_A_UNKNOWN", "ana_a", " 的相角遥测A在遥测表中不存在.");
inline constexpr Message kNoI = Warning("ZBR_I_UNKNOWN", "ana_i", " 的电流遥测I在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoFromP = NotReportedOf<Record>();
template <>
inline constexpr Message kNoFromP<XF> = Warning("XF_FROM_P_UNKNOWN", "ana_p", " 的首端有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoFromP<LN> = Warning("LN_FROM_P_UNKNOWN", "ana_p", " 的首端有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoFromP<DLN> = Warning("DLN_FROM_P_UNKNOWN", "ana_p", " 的首端有功遥测P在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoFromQ = NotReportedOf<Record>();
template <>
inline constexpr Message kNoFromQ<XF> = Warning("XF_FROM_Q_UNKNOWN", "ana_q", " 的首端无功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoFromQ<LN> = Warning("LN_FROM_Q_UNKNOWN", "ana_q", " 的首端无功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoFromQ<DLN> = Warning("DLN_FROM_Q_UNKNOWN", "ana_q", " 的首端无功遥测Q在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoFromI = NotReportedOf<Record>();
template <>
inline constexpr Message kNoFromI<XF> = Warning("XF_FROM_I_UNKNOWN", "ana_i", " 的首端电流遥测I在遥测表中不存在.");
template <>
inline constexpr Message kNoFromI<LN> = Warning("LN_FROM_I_UNKNOWN", "ana_i", " 的首端电流遥测I在遥测表中不存在.");
template <>
inline constexpr Message kNoFromI<DLN> = Warning("DLN_FROM_I_UNKNOWN", "ana_i", " 的首端电流遥测I在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoToP = NotReportedOf<Record>();
template <>
inline constexpr Message kNoToP<XF> = Warning("XF_TO_P_UNKNOWN", "zana_p", " 的末端有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoToP<LN> = Warning("LN_TO_P_UNKNOWN", "zana_p", " 的末端有功遥测P在遥测表中不存在.");
template <>
inline constexpr Message kNoToP<DLN> = Warning("DLN_TO_P_UNKNOWN", "zana_p", " 的末端有功遥测P在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoToQ = NotReportedOf<Record>();
template <>
inline constexpr Message kNoToQ<XF> = Warning("XF_TO_Q_UNKNOWN", "zana_q", " 的末端有功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoToQ<LN> = Warning("LN_TO_Q_UNKNOWN", "zana_q", " 的末端有功遥测Q在遥测表中不存在.");
template <>
inline constexpr Message kNoToQ<DLN> = Warning("DLN_TO_Q_UNKNOWN", "zana_q", " 的末端有功遥测Q在遥测表中不存在.");
template <class Record>
inline constexpr Message kNoToI = NotReportedOf<Record>();
template <>
inline constexpr Message kNoToI<XF> = Warning("XF_TO_I_UNKNOWN", "zana_i", " 的末端电流遥测I在遥测表中不存在.");
template <>
inline constexpr Message kNoToI<LN> = Warning("LN_TO_I_UNKNOWN", "zana_i", " 的末端电流遥测I在遥测表中不存在.");
template <>
inline constexpr Message kNoToI<DLN> = Warning("DLN_TO_I_UNKNOWN", "zana_i", " 的末端电流遥测I在遥测表中不存在.");
inline constexpr Message kNoStatusPoint = Warning("CB_STATUS_POINT_UNKNOWN", "status_id", " 没有关联遥信测点.");

// Nodes
template <class Record>
inline constexpr Message kNodeInOtherLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kNodeInOtherLevel<UN> = Error("UN_NODE_IN_OTHER_LEVEL", "nd",
                                                       " 给定的母线与结点给定的相矛盾.");
template <>
inline constexpr Message kNodeInOtherLevel<LD> = Error("LD_NODE_IN_OTHER_LEVEL", "nd",
                                                       " 给定的母线与结点给定的相矛盾.");
template <>
inline constexpr Message kNodeInOtherLevel<CP> = Error("CP_NODE_IN_OTHER_LEVEL", "nd",
                                                       " 给定的母线与结点给定的相矛盾.");
template <>
inline constexpr Message kNodeInOtherLevel<BUS> = Error("BUS_NODE_IN_OTHER_LEVEL", "nd",
                                                        " 给定的母线与结点给定的相矛盾.");
template <class Record>
inline constexpr Message kFromNodeInOtherLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kFromNodeInOtherLevel<CB> = Error("CB_FROM_NODE_IN_OTHER_LEVEL", "nd",
                                                           " 给定的母线与首端结点给定的相矛盾.");
template <>
inline constexpr Message kFromNodeInOtherLevel<XF> = Error("XF_FROM_NODE_IN_OTHER_LEVEL", "nd",
                                                           " 给定的母线与首端结点给定的相矛盾.");
template <class Record>
inline constexpr Message kToNodeInOtherLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kToNodeInOtherLevel<CB> = Error("CB_TO_NODE_IN_OTHER_LEVEL", "znd",
                                                         " 给定的母线与末端结点给定的相矛盾.");
template <>
inline constexpr Message kToNodeInOtherLevel<XF> = Error("XF_TO_NODE_IN_OTHER_LEVEL", "znd",
                                                         " 给定的母线与末端结点给定的相矛盾.");
template <class Record>
inline constexpr Message kLevelNotThere = NotReportedOf<Record>();
template <>
inline constexpr Message kLevelNotThere<UN> = Error("UN_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
template <>
inline constexpr Message kLevelNotThere<LD> = Error("LD_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
template <>
inline constexpr Message kLevelNotThere<CP> = Error("CP_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
template <>
inline constexpr Message kLevelNotThere<BUS> = Error("BUS_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
template <>
inline constexpr Message kLevelNotThere<CB> = Error("CB_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
template <>
inline constexpr Message kLevelNotThere<XF> = Error("XF_NODE_LEVEL_UNKNOWN", "kv", " 给定的母线在母线表中不存在.");
inline constexpr Message kToLevelNotThere = Error("XF_TO_NODE_LEVEL_UNKNOWN", "zkv", " 给定的母线在母线表中不存在.");
template <class Record>
inline constexpr Message kSameNodes = NotReportedOf<Record>();
template <>
inline constexpr Message kSameNodes<CB> = Error("CB_NODES_EQUAL", "znd", " 两端具有相同的结点名称.");
template <>
inline constexpr Message kSameNodes<XF> = Error("XF_NODES_EQUAL", "znd", " 两端具有相同的结点名称.");
template <>
inline constexpr Message kSameNodes<ZBR> = Error("ZBR_NODES_EQUAL", "cb", " 两端具有相同的结点名称.");
inline constexpr Message kFewDevices = Warning("ND_IDLE", nullptr, " 上连接的设备小于或者等于一.");

// Lines
template <class Record>
inline constexpr Message kLineFromNodeInOtherLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kLineFromNodeInOtherLevel<LN> = Error("LN_FROM_NODE_IN_OTHER_LEVEL", "nd",
                                                               " 给定的首端母线与首端结点给定的相矛盾.");
template <>
inline constexpr Message kLineFromNodeInOtherLevel<DLN> = Error("DLN_FROM_NODE_IN_OTHER_LEVEL", "nd",
                                                                " 给定的首端母线与首端结点给定的相矛盾.");
template <class Record>
inline constexpr Message kLineFromLevelNotThere = NotReportedOf<Record>();
template <>
inline constexpr Message kLineFromLevelNotThere<LN> = Error("LN_FROM_NODE_LEVEL_UNKNOWN", "kv",
                                                            " 给定的首端母线在母线表中不存在.");
template <>
inline constexpr Message kLineFromLevelNotThere<DLN> = Error("DLN_FROM_NODE_LEVEL_UNKNOWN", "kv",
                                                             " 给定的首端母线在母线表中不存在.");
template <class Record>
inline constexpr Message kLineToNodeInOtherLevel = NotReportedOf<Record>();
template <>
inline constexpr Message kLineToNodeInOtherLevel<LN> = Error("LN_TO_NODE_IN_OTHER_LEVEL", "znd",
                                                             " 给定的末端母线与末端结点给定的相矛盾.");
template <>
inline constexpr Message kLineToNodeInOtherLevel<DLN> = Error("DLN_TO_NODE_IN_OTHER_LEVEL", "znd",
                                                              " 给定的末端母线与末端结点给定的相矛盾.");
template <class Record>
inline constexpr Message kLineToLevelNotThere = NotReportedOf<Record>();
template <>
inline constexpr Message kLineToLevelNotThere<LN> = Error("LN_TO_NODE_LEVEL_UNKNOWN", "zkv",
                                                          " 给定的末端母线在母线表中不存在.");
template <>
inline constexpr Message kLineToLevelNotThere<DLN> = Error("DLN_TO_NODE_LEVEL_UNKNOWN", "zkv",
                                                           " 给定的末端母线在母线表中不存在.");
template <class Record>
inline constexpr Message kLineSameNodes = NotReportedOf<Record>();
template <>
inline constexpr Message kLineSameNodes<LN> = Error("LN_NODES_EQUAL", "znd", " 两端有相同的结点名称.");
template <>
inline constexpr Message kLineSameNodes<DLN> = Error("DLN_NODES_EQUAL", "znd", " 两端有相同的结点名称.");
template <class Record>
inline constexpr Message kLineFromNodeNotThere = NotReportedOf<Record>();
template <>
inline constexpr Message kLineFromNodeNotThere<LN> = Error("LN_FROM_NODE_UNKNOWN", "nd",
                                                           " 首端结点名称在结点表中不存在.");
template <>
inline constexpr Message kLineFromNodeNotThere<DLN> = Error("DLN_FROM_NODE_UNKNOWN", "nd",
                                                            " 首端结点名称在结点表中不存在.");
template <class Record>
inline constexpr Message kLineToNodeNotThere = NotReportedOf<Record>();
template <>
inline constexpr Message kLineToNodeNotThere<LN> = Error("LN_TO_NODE_UNKNOWN", "znd", " 末端结点名称在结点表中不存在.");
template <>
inline constexpr Message kLineToNodeNotThere<DLN> = Error("DLN_TO_NODE_UNKNOWN", "znd",
                                                          " 末端结点名称在结点表中不存在.");
inline constexpr Message kLineInOtherStation =
    Error("LN_NODE_IN_OTHER_STATION", "st", " 给定结点的厂站与线路给定的厂站不一致.");
inline constexpr Message kDcLineInOtherStation =
    Error("DLN_NODE_IN_OTHER_STATION", "st", " 给定结点的厂站与给定线路的厂站不一致.");
template <class Record>
inline constexpr Message kLineInOtherDistrict = NotReportedOf<Record>();
template <>
inline constexpr Message kLineInOtherDistrict<LN> = Error("LN_IN_OTHER_DISTRICT", "dv",
                                                          " 给定线路的区域与给定厂站所属的区域不一致.");
template <>
inline constexpr Message kLineInOtherDistrict<DLN> = Error("DLN_IN_OTHER_DISTRICT", "dv",
                                                           " 给定线路的区域与给定厂站所属的区域不一致.");
inline constexpr Message kLineOfTwoVoltages = Error("LN_VOLTAGES_DIFFER", "kv", " 给定线路两端的电压等级值不相等.");

}  // namespace message

/// The reasons to stop a run or an edit that aren't those of one record class.
namespace reason {

// A table takes no more nodes, or no more branch ends
inline constexpr Reason kShuntNodesFull = {"SHUNT_NODES_FULL", "结点表ND或者电压结点关系表R_KV_ND已满.\n"};
inline constexpr Reason kBranchNodesFull = {"BRANCH_NODES_FULL", "ND 或者 R_KV_ND表已满.\n"};
inline constexpr Reason kBreakerEndsFull = {"CB_ENDS_FULL", "CB2或者R_ND_CB2表空间已满.\n"};
inline constexpr Reason kZbrEndsFull = {"ZBR_ENDS_FULL", "ZBR2或者R_ND_ZBR2表空间已满.\n"};
inline constexpr Reason kWindingEndsFull = {"XF_ENDS_FULL", "XF2或者R_ND_XF2表空间已满.\n"};
inline constexpr Reason kLineEndsFull = {"LN_ENDS_FULL", "LN2表空间已满.\n"};
inline constexpr Reason kDcLineEndsFull = {"DLN_ENDS_FULL", "DLN2表空间已满.\n"};

// A relation takes no more rows. The texts aren't all built alike.
inline constexpr Reason kCoDvFull = {"R_CO_DV_FULL", "R_CO_DV关系表已满.\n"};
inline constexpr Reason kDvStFull = {"R_DV_ST_FULL", "R_DV_ST关系表已满.\n"};
inline constexpr Reason kDvLnFull = {"R_DV_LN_FULL", "R_DV_LN表空间.\n"};
inline constexpr Reason kDvDlnFull = {"R_DV_DLN_FULL", "R_DV_DLN表空间.\n"};
inline constexpr Reason kStKvFull = {"R_ST_KV_FULL", "R_ST_KV关系表已满.\n"};
inline constexpr Reason kStXfFull = {"R_ST_XF_FULL", "R_ST_XF表空间已满.\n"};
inline constexpr Reason kKvLdFull = {"R_KV_LD_FULL", "R_KV_LD关系表已满.\n"};
inline constexpr Reason kKvUnFull = {"R_KV_UN_FULL", "R_KV_UN关系表已满.\n"};
inline constexpr Reason kKvCpFull = {"R_KV_CP_FULL", "R_KV_CP关系表已满.\n"};
inline constexpr Reason kKvBusFull = {"R_KV_BUS_FULL", "R_KV_BUS关系表已满.\n"};
inline constexpr Reason kKvCbFull = {"R_KV_CB_FULL", "R_KV_CB关系表已满.\n"};
inline constexpr Reason kKvZbrFull = {"R_KV_ZBR_FULL", "R_KV_ZBR表空间已满.\n"};

// Editing
inline constexpr Reason kModelNotGood = {"ADD_MODEL_NOT_GOOD", "网路数据库校验没有通过.\n"};
inline constexpr Reason kNodesFull = {"ADD_NODES_FULL", "结点表ND或者R_KV_ND表空间已满.\n"};

}  // namespace reason

}  // namespace dtsdb::internal
