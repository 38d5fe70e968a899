/// \file
/// The texts of the validation, as data: one row a text, each with a name.
///
/// The texts are part of the interface, as they stand: some bring a leading blank or end in a line feed, some don't.
/// A message in the log reads "--NMD ", the word of its severity, ":", the name of the table, a blank, the identity
/// and the text given here.
#pragma once

#include "validation/finding.h"

namespace dtsdb::internal {

/// What is reported about a record, whichever it is, or about the run.
struct Message {
  Severity severity;
  const char* field;  ///< field concerned; null for the record as a whole
  const char* text;   ///< what follows the identity, UTF-8
  bool names = true;  ///< false: without blank and identity, the text follows the name of the table
};

/// A reason of a failure, as it stands in NMD::GetLastError.
struct Reason {
  const char* text;  ///< UTF-8; null: no text, the last error stays as it was
};

namespace message {

constexpr Message Error(const char* field, const char* text) { return {Severity::kError, field, text}; }
constexpr Message Warning(const char* field, const char* text) { return {Severity::kWarning, field, text}; }
constexpr Message Notice(const char* text) { return {Severity::kNotice, nullptr, text}; }

// The run
inline constexpr Message kRunBegins = Notice("开始一次全网校验... ...");
inline constexpr Message kRunEnds = Notice("结束一次全网校验!");
inline constexpr Message kModelIsGood = Notice("目前网络数据库没有错误，请查看校验日志.");
inline constexpr Message kErrorsRemain =
    Notice("网络数据库中还存在%1错误，请根据校验日志更改错误.");  // %1: their number

// Identities and links
inline constexpr Message kNoIdentity = {Severity::kError, "id", "表中出现标识为空的记录.", false};
inline constexpr Message kUnknownCompany = Error("co", "co字段在公司表中没有相应记录.");
inline constexpr Message kUnknownDistrict = Error("dv", "dv字段在分区表中没有相应记录.");
inline constexpr Message kUnknownStation = Error("st", "st字段在厂站表中没有相应记录.");
inline constexpr Message kUnknownLevel = Error("kv", "kv字段在母线表中没有相应记录.");
inline constexpr Message kUnknownBreaker = {Severity::kError, "cb", "表中关联的开关在开关表中不存在.", false};

// Stations and voltage levels
inline constexpr Message kBadStationType = Error("type", "厂站类型填写错误.");
inline constexpr Message kBadVbase = Error("vbase", "的电压基准值VBASE不合法.");
inline constexpr Message kBadVmax = Error("vmax", "的电压高限值VMAX不合法.");
inline constexpr Message kBadVmin = Error("vmin", "的电压低限值VMIN不合法.");
inline constexpr Message kVmaxBelowVmin = Error("vmax", "的电压高限值VMAX小于电压低限值VMIN不合法.");

// Names that a device leaves empty
inline constexpr Message kNoNode = Error("nd", " 关联的结点名称为空.");
inline constexpr Message kNoLevel = Error("kv", " 关联的母线名称为空.");
inline constexpr Message kNoFromNode = Error("nd", " 关联的首端结点名称为空.");
inline constexpr Message kNoToNode = Error("znd", " 关联的末端结点名称为空.");
inline constexpr Message kNoHighNode = Error("nd", " 关联的高压端结点名称为空.");
inline constexpr Message kNoLowNode = Error("znd", " 关联的低压端结点名称为空.");
inline constexpr Message kNoStation = Error("st", " 关联的厂站名称为空.");
inline constexpr Message kNoFromLevel = Error("kv", " 关联的首端母线名称为空.");
inline constexpr Message kNoToLevel = Error("zkv", " 关联的末端母线名称为空.");
inline constexpr Message kNoFromStation = Error("st", " 关联的首端厂站名称为空.");
inline constexpr Message kNoToStation = Error("zst", " 关联的末端厂站名称为空.");

// Types
inline constexpr Message kBadBreakerType = Error("flags", " 具有多个开关类型，错误.");
inline constexpr Message kBadWindingType = Error("type", " 的类型填写不正确.");

// Measurements that are not in their table. The reactive one of a to end is called 有功 (active): it stays so.
inline constexpr Message kNoP = Warning("ana_p", " 的有功遥测P在遥测表中不存在.");
inline constexpr Message kNoQ = Warning("ana_q", " 的无功遥测Q在遥测表中不存在.");
inline constexpr Message kNoV = Warning("ana_v", " 的电压遥测V在遥测表中不存在.");
inline constexpr Message kNoA = Warning("ana_a", " 的相角遥测A在遥测表中不存在.");
inline constexpr Message kNoI = Warning("ana_i", " 的电流遥测I在遥测表中不存在.");
inline constexpr Message kNoFromP = Warning("ana_p", " 的首端有功遥测P在遥测表中不存在.");
inline constexpr Message kNoFromQ = Warning("ana_q", " 的首端无功遥测Q在遥测表中不存在.");
inline constexpr Message kNoFromI = Warning("ana_i", " 的首端电流遥测I在遥测表中不存在.");
inline constexpr Message kNoToP = Warning("zana_p", " 的末端有功遥测P在遥测表中不存在.");
inline constexpr Message kNoToQ = Warning("zana_q", " 的末端有功遥测Q在遥测表中不存在.");
inline constexpr Message kNoToI = Warning("zana_i", " 的末端电流遥测I在遥测表中不存在.");
inline constexpr Message kNoStatusPoint = Warning("status_id", " 没有关联遥信测点.");

// Nodes
inline constexpr Message kNodeInOtherLevel = Error("nd", " 给定的母线与结点给定的相矛盾.");
inline constexpr Message kFromNodeInOtherLevel = Error("nd", " 给定的母线与首端结点给定的相矛盾.");
inline constexpr Message kToNodeInOtherLevel = Error("znd", " 给定的母线与末端结点给定的相矛盾.");
inline constexpr Message kLevelNotThere = Error("kv", " 给定的母线在母线表中不存在.");
inline constexpr Message kToLevelNotThere = Error("zkv", " 给定的母线在母线表中不存在.");
inline constexpr Message kSameNodes = Error("znd", " 两端具有相同的结点名称.");
inline constexpr Message kFewDevices = Warning(nullptr, " 上连接的设备小于或者等于一.");

// Lines
inline constexpr Message kLineFromNodeInOtherLevel = Error("nd", " 给定的首端母线与首端结点给定的相矛盾.");
inline constexpr Message kLineFromLevelNotThere = Error("kv", " 给定的首端母线在母线表中不存在.");
inline constexpr Message kLineToNodeInOtherLevel = Error("znd", " 给定的末端母线与末端结点给定的相矛盾.");
inline constexpr Message kLineToLevelNotThere = Error("zkv", " 给定的末端母线在母线表中不存在.");
inline constexpr Message kLineSameNodes = Error("znd", " 两端有相同的结点名称.");
inline constexpr Message kLineFromNodeNotThere = Error("nd", " 首端结点名称在结点表中不存在.");
inline constexpr Message kLineToNodeNotThere = Error("znd", " 末端结点名称在结点表中不存在.");
inline constexpr Message kLineInOtherStation = Error("st", " 给定结点的厂站与线路给定的厂站不一致.");
inline constexpr Message kDcLineInOtherStation = Error("st", " 给定结点的厂站与给定线路的厂站不一致.");
inline constexpr Message kLineInOtherDistrict = Error("dv", " 给定线路的区域与给定厂站所属的区域不一致.");
inline constexpr Message kLineOfTwoVoltages = Error("kv", " 给定线路两端的电压等级值不相等.");

}  // namespace message

/// The reasons to stop a run or an edit that aren't those of one record class.
namespace reason {

// A table takes no more nodes, or no more branch ends
inline constexpr Reason kShuntNodesFull = {"结点表ND或者电压结点关系表R_KV_ND已满.\n"};
inline constexpr Reason kBranchNodesFull = {"ND 或者 R_KV_ND表已满.\n"};
inline constexpr Reason kBreakerEndsFull = {"CB2或者R_ND_CB2表空间已满.\n"};
inline constexpr Reason kZbrEndsFull = {"ZBR2或者R_ND_ZBR2表空间已满.\n"};
inline constexpr Reason kWindingEndsFull = {"XF2或者R_ND_XF2表空间已满.\n"};
inline constexpr Reason kLineEndsFull = {"LN2表空间已满.\n"};
inline constexpr Reason kDcLineEndsFull = {"DLN2表空间已满.\n"};

// A relation takes no more rows. The texts aren't all built alike.
inline constexpr Reason kCoDvFull = {"R_CO_DV关系表已满.\n"};
inline constexpr Reason kDvStFull = {"R_DV_ST关系表已满.\n"};
inline constexpr Reason kDvLnFull = {"R_DV_LN表空间.\n"};
inline constexpr Reason kDvDlnFull = {"R_DV_DLN表空间.\n"};
inline constexpr Reason kStKvFull = {"R_ST_KV关系表已满.\n"};
inline constexpr Reason kStXfFull = {"R_ST_XF表空间已满.\n"};
inline constexpr Reason kKvLdFull = {"R_KV_LD关系表已满.\n"};
inline constexpr Reason kKvUnFull = {"R_KV_UN关系表已满.\n"};
inline constexpr Reason kKvCpFull = {"R_KV_CP关系表已满.\n"};
inline constexpr Reason kKvBusFull = {"R_KV_BUS关系表已满.\n"};
inline constexpr Reason kKvCbFull = {"R_KV_CB关系表已满.\n"};
inline constexpr Reason kKvZbrFull = {"R_KV_ZBR表空间已满.\n"};

// Editing
inline constexpr Reason kModelNotGood = {"网路数据库校验没有通过.\n"};
inline constexpr Reason kNodesFull = {"结点表ND或者R_KV_ND表空间已满.\n"};

}  // namespace reason

/// The reasons of the editing of one record class, by the test or step that gives them.
///
/// All have `exists` (an equal record is in the table), `full` (the table takes no more) and `notThere` (nothing to
/// remove). Those that hang on a parent have `parentMissing`, `relationFull` and `unrelated` (the record to be removed
/// has no parent).
template <class Record>
struct EditReasons;

// The administrative tree

template <>
struct EditReasons<CO> {
  static constexpr Reason exists = {"已经存在该公司记录.\n"};
  static constexpr Reason full = {"公司记录表空间已满.\n"};
  static constexpr Reason notThere = {"删除的公司记录在公司表中不存在.\n"};
};

template <>
struct EditReasons<DV> {
  static constexpr Reason exists = {"已经存在该分区记录.\n"};
  static constexpr Reason parentMissing = {"该分区的公司不存在.\n"};
  static constexpr Reason full = {"DV表空间已满.\n"};
  static constexpr Reason relationFull = {"R_CO_DV表空间已满.\n"};
  static constexpr Reason notThere = {"删除DV在DV表中不存在.\n"};
  static constexpr Reason unrelated = {"DV不属于某个公司.\n"};
};

template <>
struct EditReasons<ST> {
  static constexpr Reason exists = {"添加的厂站已经存在.\n"};
  static constexpr Reason parentMissing = {"厂站的分区不存在.\n"};
  static constexpr Reason badType = {"填写的厂站类型不正确.\n"};
  static constexpr Reason full = {"厂站表空间已满.\n"};
  static constexpr Reason relationFull = {"R_DV_ST表空间已满.\n"};
  static constexpr Reason notThere = {"该厂站在厂站表中不存在.\n"};
  static constexpr Reason unrelated = {"厂站不属于某个分区.\n"};
};

template <>
struct EditReasons<KV> {
  static constexpr Reason exists = {"添加的母线在母线表中存在.\n"};
  static constexpr Reason parentMissing = {"母线的厂站在厂站表中不存在.\n"};
  static constexpr Reason badVbase = {"输入的母线值小于或者等于零.\n"};
  static constexpr Reason full = {"母线表空间已满.\n"};
  static constexpr Reason relationFull = {"R_ST_KV表已满.\n"};
  static constexpr Reason notThere = {"该母线在母线表中不存在.\n"};
  static constexpr Reason unrelated = {"该电压等级没有所属的厂站.\n"};
};

// Devices on one node. `levelLess`: the node that would go with the device has no level.

template <>
struct EditReasons<UN> {
  static constexpr Reason noNode = {"机组指定的结点不合法.\n"};
  static constexpr Reason exists = {"指定的机组已经存在.\n"};
  static constexpr Reason parentMissing = {"为机组指定的母线不存在.\n"};
  static constexpr Reason inOtherLevel = {"结点的母线与指定的矛盾.\n"};
  static constexpr Reason full = {"UN表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_UN表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的发电机在机组表中不存在.\n"};
  static constexpr Reason levelLess = {"删除机组的结点没有所属的母线.\n"};
  static constexpr Reason unrelated = {"删除机组没有所属的母线.\n"};
};

template <>
struct EditReasons<LD> {
  static constexpr Reason noNode = {"负荷的结点为空.\n"};
  static constexpr Reason exists = {"欲添加的负荷在负荷表中存在.\n"};
  static constexpr Reason parentMissing = {"负荷指定的母线不存在.\n"};
  static constexpr Reason inOtherLevel = {"负荷结点所属的母线与负荷指定的母线矛盾.\n"};
  static constexpr Reason full = {"负荷LD表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_LD表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的负荷在负荷表中不存在.\n"};
  static constexpr Reason levelLess = {"删除负荷的结点没有所属的母线.\n"};
  static constexpr Reason unrelated = {"删除负荷没有所属的母线.\n"};
};

template <>
struct EditReasons<CP> {
  static constexpr Reason noNode = {"电容电抗的结点为空.\n"};
  static constexpr Reason exists = {"欲添加的电容电抗在电容表中存在.\n"};
  static constexpr Reason parentMissing = {"电容电抗指定的母线不存在.\n"};
  static constexpr Reason inOtherLevel = {"电容结点所属的母线与电容指定的母线矛盾.\n"};
  static constexpr Reason full = {"电容电抗CP表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_CP表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的电容电抗在CP表中不存在.\n"};
  static constexpr Reason levelLess = {"删除CP的结点没有所属的母线.\n"};
  static constexpr Reason unrelated = {"删除CP没有所属的母线.\n"};
};

template <>
struct EditReasons<BUS> {
  static constexpr Reason noNode = {"物理母线的结点为空.\n"};
  static constexpr Reason exists = {"欲添加的物理母线在母线表中存在.\n"};
  static constexpr Reason parentMissing = {"物理母线指定的母线不存在.\n"};
  static constexpr Reason inOtherLevel = {"物理母线结点所属的母线与母线指定的母线矛盾.\n"};
  static constexpr Reason full = {"母线BUS表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_BUS表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的母线设备在母线表中不存在.\n"};
  static constexpr Reason levelLess = {"删除母线的结点没有所属的母线.\n"};
  static constexpr Reason unrelated = {"删除母线没有所属的母线.\n"};
};

// Branches. `fromLevelLess`, `toLevelLess`: the node that would go with the end has no level; `fromEndMissing`,
// `toEndMissing`: the branch has no end record there.

template <>
struct EditReasons<CB> {
  static constexpr Reason exists = {"指定开关在开关表中存在.\n"};
  static constexpr Reason noFromNode = {"开关首端结点不合法.\n"};
  static constexpr Reason noToNode = {"开关末端结点不合法.\n"};
  static constexpr Reason sameNodes = {"开关两端结点名称相等.\n"};
  static constexpr Reason parentMissing = {"开关指定的母线在母线表中不存在.\n"};
  static constexpr Reason inOtherLevel = {"结点的母线与指定的矛盾.\n"};
  static constexpr Reason badType = {"开关指定的类型没有或者大于一种.\n"};
  static constexpr Reason full = {"开关CB表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_CB表空间已满.\n"};
  static constexpr Reason endsFull = {"R_ND_CB2或者CB2表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的开关在开关表中不存在..\n"};  // two points. Kept: K26.
  static constexpr Reason fromLevelLess = {"删除开关的首端结点没有所属的母线.\n"};
  static constexpr Reason toLevelLess = {"删除开关的末端结点没有所属的母线.\n"};
  static constexpr Reason fromEndMissing = {"删除开关首端端子不存在.\n"};
  static constexpr Reason toEndMissing = {"删除开关末端端子不存在.\n"};
  static constexpr Reason unrelated = {"删除开关没有所属的母线.\n"};
};

template <>
struct EditReasons<XF> {
  static constexpr Reason exists = {"指定变压器线圈在表中存在.\n"};
  static constexpr Reason noFromNode = {"线圈首端结点不合法.\n"};
  static constexpr Reason noToNode = {"线圈末端结点不合法.\n"};
  static constexpr Reason sameNodes = {"线圈两端结点名称相等.\n"};
  static constexpr Reason parentMissing = {"线圈没有指定得厂站.\n"};
  static constexpr Reason fromLevelMissing = {"线圈首端母线在表中不存在.\n"};
  static constexpr Reason toLevelMissing = {"线圈末端母线在表中不存在.\n"};
  static constexpr Reason inOtherStation = {"厂站与母线关系矛盾.\n"};
  static constexpr Reason badType = {"线圈得指定类型非法"};  // no line feed. Kept: K26.
  static constexpr Reason fromInOtherLevel = {"首端结点的母线与指定的矛盾.\n"};
  static constexpr Reason toInOtherLevel = {"末端结点的母线与指定的矛盾.\n"};
  static constexpr Reason full = EditReasons<CB>::full;  // that of the breakers. Kept: K26.
  static constexpr Reason relationFull = {"R_ST_XF表空间已满.\n"};
  static constexpr Reason endsFull = {"R_ND_XF2或者XF2表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的变压器线圈在表中不存在.\n"};
  // A removal that stops midway gives no reason. Kept: K31.
  static constexpr Reason fromLevelLess = {nullptr};
  static constexpr Reason toLevelLess = {nullptr};
  static constexpr Reason fromEndMissing = {nullptr};
  static constexpr Reason toEndMissing = {nullptr};
  static constexpr Reason unrelated = {nullptr};
};

template <>
struct EditReasons<ZBR> {
  static constexpr Reason exists = {"零阻抗支路已经存在.\n"};
  static constexpr Reason breakerMissing = {"零阻抗支路关联的开关在开关表中不存在.\n"};
  static constexpr Reason breakerUnrelated = {"零阻抗支路没有母线.\n"};
  static constexpr Reason full = {"零阻抗支路ZBR表空间已满.\n"};
  static constexpr Reason relationFull = {"R_KV_ZBR表空间已满.\n"};
  static constexpr Reason endsFull = {"ZBR2或者R_ND_ZBR2表空间已满.\n"};
  static constexpr Reason sameNodes = {" 两端具有相同的结点名称.\n"};
  static constexpr Reason notThere = {"欲删除的零阻抗支路在ZBR表中不存在.\n"};
  static constexpr Reason fromEndMissing = {"删除零阻抗支路首端端子不存在.\n"};
  static constexpr Reason toEndMissing = {"删除零阻抗支路末端端子不存在.\n"};
  static constexpr Reason unrelated = {"删除零阻抗支路没有所属的分区.\n"};
};

template <>
struct EditReasons<LN> {
  static constexpr Reason exists = {"线路在线路表中已经存在.\n"};
  static constexpr Reason noFromNode = {"线路的首端结点在网络中不存在.\n"};
  static constexpr Reason noToNode = {"线路的末端结点在网络中不存在.\n"};
  static constexpr Reason sameNodes = {"线路的两个结点名相等.\n"};
  static constexpr Reason parentMissing = {"线路提供的分区在分区表中不存在.\n"};
  static constexpr Reason fromStationMissing = {"线路首端厂站在厂站表中不存在.\n"};
  static constexpr Reason fromStationUnrelated = {"线路首端厂站没有对应的分区.\n"};
  static constexpr Reason toStationMissing = {"线路末端厂站在厂站表中不存在.\n"};
  static constexpr Reason sameStations = {"欲添加的线路有两个相同的厂站名称.\n"};
  static constexpr Reason toStationUnrelated = {"线路末端厂站没有对应的分区.\n"};
  static constexpr Reason inOtherDistrict = {"指定的厂站与指定的分区所属关系矛盾.\n"};
  static constexpr Reason fromLevelMissing = {"线路指定的首端母线在母线表中不存在.\n"};
  static constexpr Reason fromInOtherLevel = {"首端结点的母线与指定母线的矛盾.\n"};
  static constexpr Reason fromInOtherStation = {"首端端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason toLevelMissing = {"线路指定的末端母线在母线表中不存在.\n"};
  static constexpr Reason toInOtherLevel = {"末端结点的母线与指定的矛盾.\n"};
  static constexpr Reason toInOtherStation = {"末端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason full = {"线路LN表空间已满.\n"};
  static constexpr Reason relationFull = {"R_DV_LN表空间已满.\n"};
  static constexpr Reason endsFull = {"R_ND_LN2或者LN2表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的线路在线路表LN中不存在.\n"};
  static constexpr Reason fromLevelLess = {"删除线路的首端结点没有所属的母线.\n"};
  static constexpr Reason toLevelLess = {"删除线路的末端结点没有所属的母线.\n"};
  static constexpr Reason fromEndMissing = {"删除线路首端端子不存在.\n"};
  static constexpr Reason toEndMissing = {"删除线路末端端子不存在.\n"};
  static constexpr Reason unrelated = {"删除线路没有所属的分区.\n"};
};

template <>
struct EditReasons<DLN> {
  static constexpr Reason exists = {"直流线表中已经存在这条线路.\n"};
  static constexpr Reason noFromNode = {"该直流线的首端结点在结点表中不存在.\n"};
  static constexpr Reason noToNode = {"该条线的末端结点在结点线表中不存在.\n"};
  static constexpr Reason sameNodes = {"该条直流线有相同的结点名称.\n"};
  static constexpr Reason parentMissing = {"直流线路提供的分区在分区表中不存在.\n"};
  static constexpr Reason fromStationMissing = {"直流线路首端厂站在厂站表中不存在.\n"};
  static constexpr Reason fromStationUnrelated = {"直流线路首端厂站没有对应的分区.\n"};
  static constexpr Reason toStationMissing = {"直流线路末端厂站在厂站表中不存在.\n"};
  static constexpr Reason sameStations = {"欲添加的直流线路有两个相同的厂站名称.\n"};
  static constexpr Reason toStationUnrelated = {"直流线路末端厂站没有对应的分区.\n"};
  static constexpr Reason inOtherDistrict = {"直流线路指定的厂站与指定的分区所属关系矛盾.\n"};
  static constexpr Reason fromLevelMissing = {"直流线路指定的首端母线在母线表中不存在.\n"};
  static constexpr Reason fromInOtherLevel = {"直流线路首端结点的母线与指定母线的矛盾.\n"};
  static constexpr Reason fromInOtherStation = {"直流线路首端端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason toLevelMissing = {"直流线路指定的末端母线在母线表中不存在.\n"};
  static constexpr Reason toInOtherLevel = {"直流线路末端结点的母线与指定的矛盾.\n"};
  static constexpr Reason toInOtherStation = {"直流线路末端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason full = {"直流线路DLN表空间已满.\n"};
  static constexpr Reason relationFull = {"R_DV_DLN表空间已满.\n"};
  static constexpr Reason endsFull = {"R_ND_DLN2或者DLN2表空间已满.\n"};
  static constexpr Reason notThere = {"欲删除的直流线路DLN在直流表中不存在.\n"};
  static constexpr Reason fromLevelLess = {"删除直流线首端结点没有所属的母线.\n"};
  static constexpr Reason toLevelLess = {"删除直流线末端结点没有所属的母线.\n"};
  static constexpr Reason fromEndMissing = {"删除直流线路首端端子不存在.\n"};
  static constexpr Reason toEndMissing = {"删除直流线路末端端子不存在.\n"};
  static constexpr Reason unrelated = {"删除直流线路没有所属的分区.\n"};
};

}  // namespace dtsdb::internal
