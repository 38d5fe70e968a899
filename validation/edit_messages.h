/// \file
/// What the editing of a model says, as data: the reasons in NMD::GetLastError.
///
/// The texts are part of the interface, as they stand, each with its line feed where it has one.
#pragma once

#include "model/records.h"

namespace dtsdb {

/// The texts of one record class, by the test or step that gives them.
///
/// All have `exists` (an equal record is in the table), `full` (the table takes no more) and `notThere` (nothing to
/// remove). Those that hang on a parent have `parentMissing`, `relationFull` and `unrelated` (the record to be removed
/// has no parent). Null: no text, the last error stays as it was.
template <class Record>
struct Say;

/// \name Texts that several records share
///@{
inline constexpr const char* kSayNotGood = "网路数据库校验没有通过.\n";
inline constexpr const char* kSayNodesFull = "结点表ND或者R_KV_ND表空间已满.\n";
///@}

// The administrative tree

template <>
struct Say<CO> {
  static constexpr const char* exists = "已经存在该公司记录.\n";
  static constexpr const char* full = "公司记录表空间已满.\n";
  static constexpr const char* notThere = "删除的公司记录在公司表中不存在.\n";
};

template <>
struct Say<DV> {
  static constexpr const char* exists = "已经存在该分区记录.\n";
  static constexpr const char* parentMissing = "该分区的公司不存在.\n";
  static constexpr const char* full = "DV表空间已满.\n";
  static constexpr const char* relationFull = "R_CO_DV表空间已满.\n";
  static constexpr const char* notThere = "删除DV在DV表中不存在.\n";
  static constexpr const char* unrelated = "DV不属于某个公司.\n";
};

template <>
struct Say<ST> {
  static constexpr const char* exists = "添加的厂站已经存在.\n";
  static constexpr const char* parentMissing = "厂站的分区不存在.\n";
  static constexpr const char* badType = "填写的厂站类型不正确.\n";
  static constexpr const char* full = "厂站表空间已满.\n";
  static constexpr const char* relationFull = "R_DV_ST表空间已满.\n";
  static constexpr const char* notThere = "该厂站在厂站表中不存在.\n";
  static constexpr const char* unrelated = "厂站不属于某个分区.\n";
};

template <>
struct Say<KV> {
  static constexpr const char* exists = "添加的母线在母线表中存在.\n";
  static constexpr const char* parentMissing = "母线的厂站在厂站表中不存在.\n";
  static constexpr const char* badVbase = "输入的母线值小于或者等于零.\n";
  static constexpr const char* full = "母线表空间已满.\n";
  static constexpr const char* relationFull = "R_ST_KV表已满.\n";
  static constexpr const char* notThere = "该母线在母线表中不存在.\n";
  static constexpr const char* unrelated = "该电压等级没有所属的厂站.\n";
};

// Devices on one node. `levelLess`: the node that would go with the device has no level.

template <>
struct Say<UN> {
  static constexpr const char* noNode = "机组指定的结点不合法.\n";
  static constexpr const char* exists = "指定的机组已经存在.\n";
  static constexpr const char* parentMissing = "为机组指定的母线不存在.\n";
  static constexpr const char* inOtherLevel = "结点的母线与指定的矛盾.\n";
  static constexpr const char* full = "UN表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_UN表空间已满.\n";
  static constexpr const char* notThere = "欲删除的发电机在机组表中不存在.\n";
  static constexpr const char* levelLess = "删除机组的结点没有所属的母线.\n";
  static constexpr const char* unrelated = "删除机组没有所属的母线.\n";
};

template <>
struct Say<LD> {
  static constexpr const char* noNode = "负荷的结点为空.\n";
  static constexpr const char* exists = "欲添加的负荷在负荷表中存在.\n";
  static constexpr const char* parentMissing = "负荷指定的母线不存在.\n";
  static constexpr const char* inOtherLevel = "负荷结点所属的母线与负荷指定的母线矛盾.\n";
  static constexpr const char* full = "负荷LD表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_LD表空间已满.\n";
  static constexpr const char* notThere = "欲删除的负荷在负荷表中不存在.\n";
  static constexpr const char* levelLess = "删除负荷的结点没有所属的母线.\n";
  static constexpr const char* unrelated = "删除负荷没有所属的母线.\n";
};

template <>
struct Say<CP> {
  static constexpr const char* noNode = "电容电抗的结点为空.\n";
  static constexpr const char* exists = "欲添加的电容电抗在电容表中存在.\n";
  static constexpr const char* parentMissing = "电容电抗指定的母线不存在.\n";
  static constexpr const char* inOtherLevel = "电容结点所属的母线与电容指定的母线矛盾.\n";
  static constexpr const char* full = "电容电抗CP表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_CP表空间已满.\n";
  static constexpr const char* notThere = "欲删除的电容电抗在CP表中不存在.\n";
  static constexpr const char* levelLess = "删除CP的结点没有所属的母线.\n";
  static constexpr const char* unrelated = "删除CP没有所属的母线.\n";
};

template <>
struct Say<BUS> {
  static constexpr const char* noNode = "物理母线的结点为空.\n";
  static constexpr const char* exists = "欲添加的物理母线在母线表中存在.\n";
  static constexpr const char* parentMissing = "物理母线指定的母线不存在.\n";
  static constexpr const char* inOtherLevel = "物理母线结点所属的母线与母线指定的母线矛盾.\n";
  static constexpr const char* full = "母线BUS表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_BUS表空间已满.\n";
  static constexpr const char* notThere = "欲删除的母线设备在母线表中不存在.\n";
  static constexpr const char* levelLess = "删除母线的结点没有所属的母线.\n";
  static constexpr const char* unrelated = "删除母线没有所属的母线.\n";
};

// Branches. `fromLevelLess`, `toLevelLess`: the node that would go with the end has no level; `fromEndMissing`,
// `toEndMissing`: the branch has no end record there.

template <>
struct Say<CB> {
  static constexpr const char* exists = "指定开关在开关表中存在.\n";
  static constexpr const char* noFromNode = "开关首端结点不合法.\n";
  static constexpr const char* noToNode = "开关末端结点不合法.\n";
  static constexpr const char* sameNodes = "开关两端结点名称相等.\n";
  static constexpr const char* parentMissing = "开关指定的母线在母线表中不存在.\n";
  static constexpr const char* inOtherLevel = "结点的母线与指定的矛盾.\n";
  static constexpr const char* badType = "开关指定的类型没有或者大于一种.\n";
  static constexpr const char* full = "开关CB表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_CB表空间已满.\n";
  static constexpr const char* endsFull = "R_ND_CB2或者CB2表空间已满.\n";
  static constexpr const char* notThere = "欲删除的开关在开关表中不存在..\n";  // two points: the text is known so
  static constexpr const char* fromLevelLess = "删除开关的首端结点没有所属的母线.\n";
  static constexpr const char* toLevelLess = "删除开关的末端结点没有所属的母线.\n";
  static constexpr const char* fromEndMissing = "删除开关首端端子不存在.\n";
  static constexpr const char* toEndMissing = "删除开关末端端子不存在.\n";
  static constexpr const char* unrelated = "删除开关没有所属的母线.\n";
};

template <>
struct Say<XF> {
  static constexpr const char* exists = "指定变压器线圈在表中存在.\n";
  static constexpr const char* noFromNode = "线圈首端结点不合法.\n";
  static constexpr const char* noToNode = "线圈末端结点不合法.\n";
  static constexpr const char* sameNodes = "线圈两端结点名称相等.\n";
  static constexpr const char* parentMissing = "线圈没有指定得厂站.\n";
  static constexpr const char* fromLevelMissing = "线圈首端母线在表中不存在.\n";
  static constexpr const char* toLevelMissing = "线圈末端母线在表中不存在.\n";
  static constexpr const char* inOtherStation = "厂站与母线关系矛盾.\n";
  static constexpr const char* badType = "线圈得指定类型非法";  // no line feed: the text is known so
  static constexpr const char* fromInOtherLevel = "首端结点的母线与指定的矛盾.\n";
  static constexpr const char* toInOtherLevel = "末端结点的母线与指定的矛盾.\n";
  static constexpr const char* full = Say<CB>::full;  // deliberately that of the breakers: callers know it
  static constexpr const char* relationFull = "R_ST_XF表空间已满.\n";
  static constexpr const char* endsFull = "R_ND_XF2或者XF2表空间已满.\n";
  static constexpr const char* notThere = "欲删除的变压器线圈在表中不存在.\n";
  // Deliberately silent: a removal that stops midway says nothing.
  static constexpr const char* fromLevelLess = nullptr;
  static constexpr const char* toLevelLess = nullptr;
  static constexpr const char* fromEndMissing = nullptr;
  static constexpr const char* toEndMissing = nullptr;
  static constexpr const char* unrelated = nullptr;
};

template <>
struct Say<ZBR> {
  static constexpr const char* exists = "零阻抗支路已经存在.\n";
  static constexpr const char* breakerMissing = "零阻抗支路关联的开关在开关表中不存在.\n";
  static constexpr const char* breakerUnrelated = "零阻抗支路没有母线.\n";
  static constexpr const char* full = "零阻抗支路ZBR表空间已满.\n";
  static constexpr const char* relationFull = "R_KV_ZBR表空间已满.\n";
  static constexpr const char* endsFull = "ZBR2或者R_ND_ZBR2表空间已满.\n";
  static constexpr const char* sameNodes = " 两端具有相同的结点名称.\n";
  static constexpr const char* notThere = "欲删除的零阻抗支路在ZBR表中不存在.\n";
  static constexpr const char* fromEndMissing = "删除零阻抗支路首端端子不存在.\n";
  static constexpr const char* toEndMissing = "删除零阻抗支路末端端子不存在.\n";
  static constexpr const char* unrelated = "删除零阻抗支路没有所属的分区.\n";
};

template <>
struct Say<LN> {
  static constexpr const char* exists = "线路在线路表中已经存在.\n";
  static constexpr const char* noFromNode = "线路的首端结点在网络中不存在.\n";
  static constexpr const char* noToNode = "线路的末端结点在网络中不存在.\n";
  static constexpr const char* sameNodes = "线路的两个结点名相等.\n";
  static constexpr const char* parentMissing = "线路提供的分区在分区表中不存在.\n";
  static constexpr const char* fromStationMissing = "线路首端厂站在厂站表中不存在.\n";
  static constexpr const char* fromStationUnrelated = "线路首端厂站没有对应的分区.\n";
  static constexpr const char* toStationMissing = "线路末端厂站在厂站表中不存在.\n";
  static constexpr const char* sameStations = "欲添加的线路有两个相同的厂站名称.\n";
  static constexpr const char* toStationUnrelated = "线路末端厂站没有对应的分区.\n";
  static constexpr const char* inOtherDistrict = "指定的厂站与指定的分区所属关系矛盾.\n";
  static constexpr const char* fromLevelMissing = "线路指定的首端母线在母线表中不存在.\n";
  static constexpr const char* fromInOtherLevel = "首端结点的母线与指定母线的矛盾.\n";
  static constexpr const char* fromInOtherStation = "首端端结点所属的厂站与填写的厂站矛盾.\n";
  static constexpr const char* toLevelMissing = "线路指定的末端母线在母线表中不存在.\n";
  static constexpr const char* toInOtherLevel = "末端结点的母线与指定的矛盾.\n";
  static constexpr const char* toInOtherStation = "末端结点所属的厂站与填写的厂站矛盾.\n";
  static constexpr const char* full = "线路LN表空间已满.\n";
  static constexpr const char* relationFull = "R_DV_LN表空间已满.\n";
  static constexpr const char* endsFull = "R_ND_LN2或者LN2表空间已满.\n";
  static constexpr const char* notThere = "欲删除的线路在线路表LN中不存在.\n";
  static constexpr const char* fromLevelLess = "删除线路的首端结点没有所属的母线.\n";
  static constexpr const char* toLevelLess = "删除线路的末端结点没有所属的母线.\n";
  static constexpr const char* fromEndMissing = "删除线路首端端子不存在.\n";
  static constexpr const char* toEndMissing = "删除线路末端端子不存在.\n";
  static constexpr const char* unrelated = "删除线路没有所属的分区.\n";
};

template <>
struct Say<DLN> {
  static constexpr const char* exists = "直流线表中已经存在这条线路.\n";
  static constexpr const char* noFromNode = "该直流线的首端结点在结点表中不存在.\n";
  static constexpr const char* noToNode = "该条线的末端结点在结点线表中不存在.\n";
  static constexpr const char* sameNodes = "该条直流线有相同的结点名称.\n";
  static constexpr const char* parentMissing = "直流线路提供的分区在分区表中不存在.\n";
  static constexpr const char* fromStationMissing = "直流线路首端厂站在厂站表中不存在.\n";
  static constexpr const char* fromStationUnrelated = "直流线路首端厂站没有对应的分区.\n";
  static constexpr const char* toStationMissing = "直流线路末端厂站在厂站表中不存在.\n";
  static constexpr const char* sameStations = "欲添加的直流线路有两个相同的厂站名称.\n";
  static constexpr const char* toStationUnrelated = "直流线路末端厂站没有对应的分区.\n";
  static constexpr const char* inOtherDistrict = "直流线路指定的厂站与指定的分区所属关系矛盾.\n";
  static constexpr const char* fromLevelMissing = "直流线路指定的首端母线在母线表中不存在.\n";
  static constexpr const char* fromInOtherLevel = "直流线路首端结点的母线与指定母线的矛盾.\n";
  static constexpr const char* fromInOtherStation = "直流线路首端端结点所属的厂站与填写的厂站矛盾.\n";
  static constexpr const char* toLevelMissing = "直流线路指定的末端母线在母线表中不存在.\n";
  static constexpr const char* toInOtherLevel = "直流线路末端结点的母线与指定的矛盾.\n";
  static constexpr const char* toInOtherStation = "直流线路末端结点所属的厂站与填写的厂站矛盾.\n";
  static constexpr const char* full = "直流线路DLN表空间已满.\n";
  static constexpr const char* relationFull = "R_DV_DLN表空间已满.\n";
  static constexpr const char* endsFull = "R_ND_DLN2或者DLN2表空间已满.\n";
  static constexpr const char* notThere = "欲删除的直流线路DLN在直流表中不存在.\n";
  static constexpr const char* fromLevelLess = "删除直流线首端结点没有所属的母线.\n";
  static constexpr const char* toLevelLess = "删除直流线末端结点没有所属的母线.\n";
  static constexpr const char* fromEndMissing = "删除直流线路首端端子不存在.\n";
  static constexpr const char* toEndMissing = "删除直流线路末端端子不存在.\n";
  static constexpr const char* unrelated = "删除直流线路没有所属的分区.\n";
};

}  // namespace dtsdb
