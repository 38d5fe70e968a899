// Written by scripts/generate from the description in schema/: change it there.
/// \file
/// The reasons of the editing, as data.
#pragma once

#include "model/records.h"
#include "validation/internal/message.h"

namespace dtsdb::internal {

/// The reasons of the editing of one record class, by the test or step that gives them.
///
/// All have `kExists` (an equal record is in the table), `kFull` (the table takes no more) and `kNotThere` (nothing to
/// remove). Those that hang on a parent have `kParentMissing`, `kRelationFull` and `kUnrelated` (the record to be
/// removed has no parent). `kLevelLess`, `kFromLevelLess`, `kToLevelLess`: the node that would go with the record has
/// no level; `kFromEndMissing`, `kToEndMissing`: the branch has no end record there.
template <class Record>
struct EditReasons;

// The administrative tree

template <>
struct EditReasons<CO> {
  static constexpr Reason kExists = {"ADD_CO_EXISTS", "已经存在该公司记录.\n"};
  static constexpr Reason kFull = {"ADD_CO_FULL", "公司记录表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_CO_NOT_THERE", "删除的公司记录在公司表中不存在.\n"};
};

template <>
struct EditReasons<DV> {
  static constexpr Reason kExists = {"ADD_DV_EXISTS", "已经存在该分区记录.\n"};
  static constexpr Reason kParentMissing = {"ADD_DV_COMPANY_UNKNOWN", "该分区的公司不存在.\n"};
  static constexpr Reason kFull = {"ADD_DV_FULL", "DV表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_DV_RELATION_FULL", "R_CO_DV表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_DV_NOT_THERE", "删除DV在DV表中不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_DV_WITHOUT_COMPANY", "DV不属于某个公司.\n"};
  static constexpr Reason kStopped = {"REMOVE_DV_STOPPED", nullptr};
};

template <>
struct EditReasons<ST> {
  static constexpr Reason kExists = {"ADD_ST_EXISTS", "添加的厂站已经存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_ST_DISTRICT_UNKNOWN", "厂站的分区不存在.\n"};
  static constexpr Reason kBadType = {"ADD_ST_TYPE_INVALID", "填写的厂站类型不正确.\n"};
  static constexpr Reason kFull = {"ADD_ST_FULL", "厂站表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_ST_RELATION_FULL", "R_DV_ST表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_ST_NOT_THERE", "该厂站在厂站表中不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_ST_WITHOUT_DISTRICT", "厂站不属于某个分区.\n"};
};

template <>
struct EditReasons<KV> {
  static constexpr Reason kExists = {"ADD_KV_EXISTS", "添加的母线在母线表中存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_KV_STATION_UNKNOWN", "母线的厂站在厂站表中不存在.\n"};
  static constexpr Reason kBadVbase = {"ADD_KV_VBASE_INVALID", "输入的母线值小于或者等于零.\n"};
  static constexpr Reason kFull = {"ADD_KV_FULL", "母线表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_KV_RELATION_FULL", "R_ST_KV表已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_KV_NOT_THERE", "该母线在母线表中不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_KV_WITHOUT_STATION", "该电压等级没有所属的厂站.\n"};
};

// Devices on one node

template <>
struct EditReasons<UN> {
  static constexpr Reason kNoNode = {"ADD_UN_NODE_EMPTY", "机组指定的结点不合法.\n"};
  static constexpr Reason kExists = {"ADD_UN_EXISTS", "指定的机组已经存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_UN_LEVEL_UNKNOWN", "为机组指定的母线不存在.\n"};
  static constexpr Reason kInOtherLevel = {"ADD_UN_NODE_IN_OTHER_LEVEL", "结点的母线与指定的矛盾.\n"};
  static constexpr Reason kFull = {"ADD_UN_FULL", "UN表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_UN_RELATION_FULL", "R_KV_UN表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_UN_NOT_THERE", "欲删除的发电机在机组表中不存在.\n"};
  static constexpr Reason kLevelLess = {"REMOVE_UN_NODE_WITHOUT_LEVEL", "删除机组的结点没有所属的母线.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_UN_WITHOUT_LEVEL", "删除机组没有所属的母线.\n"};
};

template <>
struct EditReasons<LD> {
  static constexpr Reason kNoNode = {"ADD_LD_NODE_EMPTY", "负荷的结点为空.\n"};
  static constexpr Reason kExists = {"ADD_LD_EXISTS", "欲添加的负荷在负荷表中存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_LD_LEVEL_UNKNOWN", "负荷指定的母线不存在.\n"};
  static constexpr Reason kInOtherLevel = {"ADD_LD_NODE_IN_OTHER_LEVEL", "负荷结点所属的母线与负荷指定的母线矛盾.\n"};
  static constexpr Reason kFull = {"ADD_LD_FULL", "负荷LD表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_LD_RELATION_FULL", "R_KV_LD表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_LD_NOT_THERE", "欲删除的负荷在负荷表中不存在.\n"};
  static constexpr Reason kLevelLess = {"REMOVE_LD_NODE_WITHOUT_LEVEL", "删除负荷的结点没有所属的母线.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_LD_WITHOUT_LEVEL", "删除负荷没有所属的母线.\n"};
};

template <>
struct EditReasons<CP> {
  static constexpr Reason kNoNode = {"ADD_CP_NODE_EMPTY", "电容电抗的结点为空.\n"};
  static constexpr Reason kExists = {"ADD_CP_EXISTS", "欲添加的电容电抗在电容表中存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_CP_LEVEL_UNKNOWN", "电容电抗指定的母线不存在.\n"};
  static constexpr Reason kInOtherLevel = {"ADD_CP_NODE_IN_OTHER_LEVEL", "电容结点所属的母线与电容指定的母线矛盾.\n"};
  static constexpr Reason kFull = {"ADD_CP_FULL", "电容电抗CP表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_CP_RELATION_FULL", "R_KV_CP表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_CP_NOT_THERE", "欲删除的电容电抗在CP表中不存在.\n"};
  static constexpr Reason kLevelLess = {"REMOVE_CP_NODE_WITHOUT_LEVEL", "删除CP的结点没有所属的母线.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_CP_WITHOUT_LEVEL", "删除CP没有所属的母线.\n"};
};

template <>
struct EditReasons<BUS> {
  static constexpr Reason kNoNode = {"ADD_BUS_NODE_EMPTY", "物理母线的结点为空.\n"};
  static constexpr Reason kExists = {"ADD_BUS_EXISTS", "欲添加的物理母线在母线表中存在.\n"};
  static constexpr Reason kParentMissing = {"ADD_BUS_LEVEL_UNKNOWN", "物理母线指定的母线不存在.\n"};
  static constexpr Reason kInOtherLevel = {"ADD_BUS_NODE_IN_OTHER_LEVEL",
                                           "物理母线结点所属的母线与母线指定的母线矛盾.\n"};
  static constexpr Reason kFull = {"ADD_BUS_FULL", "母线BUS表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_BUS_RELATION_FULL", "R_KV_BUS表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_BUS_NOT_THERE", "欲删除的母线设备在母线表中不存在.\n"};
  static constexpr Reason kLevelLess = {"REMOVE_BUS_NODE_WITHOUT_LEVEL", "删除母线的结点没有所属的母线.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_BUS_WITHOUT_LEVEL", "删除母线没有所属的母线.\n"};
};

// Branches

template <>
struct EditReasons<CB> {
  static constexpr Reason kExists = {"ADD_CB_EXISTS", "指定开关在开关表中存在.\n"};
  static constexpr Reason kNoFromNode = {"ADD_CB_FROM_NODE_EMPTY", "开关首端结点不合法.\n"};
  static constexpr Reason kNoToNode = {"ADD_CB_TO_NODE_EMPTY", "开关末端结点不合法.\n"};
  static constexpr Reason kSameNodes = {"ADD_CB_NODES_EQUAL", "开关两端结点名称相等.\n"};
  static constexpr Reason kParentMissing = {"ADD_CB_LEVEL_UNKNOWN", "开关指定的母线在母线表中不存在.\n"};
  static constexpr Reason kInOtherLevel = {"ADD_CB_NODE_IN_OTHER_LEVEL", "结点的母线与指定的矛盾.\n"};
  static constexpr Reason kBadType = {"ADD_CB_TYPE_INVALID", "开关指定的类型没有或者大于一种.\n"};
  static constexpr Reason kFull = {"ADD_CB_FULL", "开关CB表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_CB_RELATION_FULL", "R_KV_CB表空间已满.\n"};
  static constexpr Reason kEndsFull = {"ADD_CB_ENDS_FULL", "R_ND_CB2或者CB2表空间已满.\n"};
  // two points. Kept: K26.
  static constexpr Reason kNotThere = {"REMOVE_CB_NOT_THERE", "欲删除的开关在开关表中不存在..\n"};
  static constexpr Reason kFromLevelLess = {"REMOVE_CB_FROM_NODE_WITHOUT_LEVEL", "删除开关的首端结点没有所属的母线.\n"};
  static constexpr Reason kToLevelLess = {"REMOVE_CB_TO_NODE_WITHOUT_LEVEL", "删除开关的末端结点没有所属的母线.\n"};
  static constexpr Reason kFromEndMissing = {"REMOVE_CB_FROM_END_MISSING", "删除开关首端端子不存在.\n"};
  static constexpr Reason kToEndMissing = {"REMOVE_CB_TO_END_MISSING", "删除开关末端端子不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_CB_WITHOUT_LEVEL", "删除开关没有所属的母线.\n"};
};

template <>
struct EditReasons<XF> {
  static constexpr Reason kExists = {"ADD_XF_EXISTS", "指定变压器线圈在表中存在.\n"};
  static constexpr Reason kNoFromNode = {"ADD_XF_FROM_NODE_EMPTY", "线圈首端结点不合法.\n"};
  static constexpr Reason kNoToNode = {"ADD_XF_TO_NODE_EMPTY", "线圈末端结点不合法.\n"};
  static constexpr Reason kSameNodes = {"ADD_XF_NODES_EQUAL", "线圈两端结点名称相等.\n"};
  static constexpr Reason kParentMissing = {"ADD_XF_STATION_UNKNOWN", "线圈没有指定得厂站.\n"};
  static constexpr Reason kFromLevelMissing = {"ADD_XF_FROM_LEVEL_UNKNOWN", "线圈首端母线在表中不存在.\n"};
  static constexpr Reason kToLevelMissing = {"ADD_XF_TO_LEVEL_UNKNOWN", "线圈末端母线在表中不存在.\n"};
  static constexpr Reason kInOtherStation = {"ADD_XF_LEVEL_IN_OTHER_STATION", "厂站与母线关系矛盾.\n"};
  // no line feed. Kept: K26.
  static constexpr Reason kBadType = {"ADD_XF_TYPE_INVALID", "线圈得指定类型非法"};
  static constexpr Reason kFromInOtherLevel = {"ADD_XF_FROM_NODE_IN_OTHER_LEVEL", "首端结点的母线与指定的矛盾.\n"};
  static constexpr Reason kToInOtherLevel = {"ADD_XF_TO_NODE_IN_OTHER_LEVEL", "末端结点的母线与指定的矛盾.\n"};
  // that of the breakers. Kept: K26.
  static constexpr Reason kFull = {"ADD_XF_FULL", "开关CB表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_XF_RELATION_FULL", "R_ST_XF表空间已满.\n"};
  static constexpr Reason kEndsFull = {"ADD_XF_ENDS_FULL", "R_ND_XF2或者XF2表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_XF_NOT_THERE", "欲删除的变压器线圈在表中不存在.\n"};
  // a removal that stops midway sets no text. Kept: K31.
  static constexpr Reason kFromLevelLess = {"REMOVE_XF_FROM_NODE_WITHOUT_LEVEL", nullptr};
  static constexpr Reason kToLevelLess = {"REMOVE_XF_TO_NODE_WITHOUT_LEVEL", nullptr};
  static constexpr Reason kFromEndMissing = {"REMOVE_XF_FROM_END_MISSING", nullptr};
  static constexpr Reason kToEndMissing = {"REMOVE_XF_TO_END_MISSING", nullptr};
  static constexpr Reason kUnrelated = {"REMOVE_XF_WITHOUT_STATION", nullptr};
};

template <>
struct EditReasons<ZBR> {
  static constexpr Reason kExists = {"ADD_ZBR_EXISTS", "零阻抗支路已经存在.\n"};
  static constexpr Reason kBreakerMissing = {"ADD_ZBR_BREAKER_UNKNOWN", "零阻抗支路关联的开关在开关表中不存在.\n"};
  static constexpr Reason kBreakerUnrelated = {"ADD_ZBR_BREAKER_WITHOUT_LEVEL", "零阻抗支路没有母线.\n"};
  static constexpr Reason kFull = {"ADD_ZBR_FULL", "零阻抗支路ZBR表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_ZBR_RELATION_FULL", "R_KV_ZBR表空间已满.\n"};
  static constexpr Reason kEndsFull = {"ADD_ZBR_ENDS_FULL", "ZBR2或者R_ND_ZBR2表空间已满.\n"};
  static constexpr Reason kSameNodes = {"ADD_ZBR_NODES_EQUAL", " 两端具有相同的结点名称.\n"};
  static constexpr Reason kNotThere = {"REMOVE_ZBR_NOT_THERE", "欲删除的零阻抗支路在ZBR表中不存在.\n"};
  static constexpr Reason kFromEndMissing = {"REMOVE_ZBR_FROM_END_MISSING", "删除零阻抗支路首端端子不存在.\n"};
  static constexpr Reason kToEndMissing = {"REMOVE_ZBR_TO_END_MISSING", "删除零阻抗支路末端端子不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_ZBR_WITHOUT_LEVEL", "删除零阻抗支路没有所属的分区.\n"};
};

template <>
struct EditReasons<LN> {
  static constexpr Reason kExists = {"ADD_LN_EXISTS", "线路在线路表中已经存在.\n"};
  static constexpr Reason kFromNodeMissing = {"ADD_LN_FROM_NODE_UNKNOWN", "线路的首端结点在网络中不存在.\n"};
  static constexpr Reason kToNodeMissing = {"ADD_LN_TO_NODE_UNKNOWN", "线路的末端结点在网络中不存在.\n"};
  static constexpr Reason kSameNodes = {"ADD_LN_NODES_EQUAL", "线路的两个结点名相等.\n"};
  static constexpr Reason kParentMissing = {"ADD_LN_DISTRICT_UNKNOWN", "线路提供的分区在分区表中不存在.\n"};
  static constexpr Reason kFromStationMissing = {"ADD_LN_FROM_STATION_UNKNOWN", "线路首端厂站在厂站表中不存在.\n"};
  static constexpr Reason kFromStationUnrelated = {"ADD_LN_FROM_STATION_WITHOUT_DISTRICT",
                                                   "线路首端厂站没有对应的分区.\n"};
  static constexpr Reason kToStationMissing = {"ADD_LN_TO_STATION_UNKNOWN", "线路末端厂站在厂站表中不存在.\n"};
  static constexpr Reason kSameStations = {"ADD_LN_STATIONS_EQUAL", "欲添加的线路有两个相同的厂站名称.\n"};
  static constexpr Reason kToStationUnrelated = {"ADD_LN_TO_STATION_WITHOUT_DISTRICT", "线路末端厂站没有对应的分区.\n"};
  static constexpr Reason kInOtherDistrict = {"ADD_LN_IN_OTHER_DISTRICT", "指定的厂站与指定的分区所属关系矛盾.\n"};
  static constexpr Reason kFromLevelMissing = {"ADD_LN_FROM_LEVEL_UNKNOWN", "线路指定的首端母线在母线表中不存在.\n"};
  static constexpr Reason kFromInOtherLevel = {"ADD_LN_FROM_NODE_IN_OTHER_LEVEL", "首端结点的母线与指定母线的矛盾.\n"};
  static constexpr Reason kFromInOtherStation = {"ADD_LN_FROM_NODE_IN_OTHER_STATION",
                                                 "首端端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason kToLevelMissing = {"ADD_LN_TO_LEVEL_UNKNOWN", "线路指定的末端母线在母线表中不存在.\n"};
  static constexpr Reason kToInOtherLevel = {"ADD_LN_TO_NODE_IN_OTHER_LEVEL", "末端结点的母线与指定的矛盾.\n"};
  static constexpr Reason kToInOtherStation = {"ADD_LN_TO_NODE_IN_OTHER_STATION",
                                               "末端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason kFull = {"ADD_LN_FULL", "线路LN表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_LN_RELATION_FULL", "R_DV_LN表空间已满.\n"};
  static constexpr Reason kEndsFull = {"ADD_LN_ENDS_FULL", "R_ND_LN2或者LN2表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_LN_NOT_THERE", "欲删除的线路在线路表LN中不存在.\n"};
  static constexpr Reason kFromLevelLess = {"REMOVE_LN_FROM_NODE_WITHOUT_LEVEL", "删除线路的首端结点没有所属的母线.\n"};
  static constexpr Reason kToLevelLess = {"REMOVE_LN_TO_NODE_WITHOUT_LEVEL", "删除线路的末端结点没有所属的母线.\n"};
  static constexpr Reason kFromEndMissing = {"REMOVE_LN_FROM_END_MISSING", "删除线路首端端子不存在.\n"};
  static constexpr Reason kToEndMissing = {"REMOVE_LN_TO_END_MISSING", "删除线路末端端子不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_LN_WITHOUT_DISTRICT", "删除线路没有所属的分区.\n"};
};

template <>
struct EditReasons<DLN> {
  static constexpr Reason kExists = {"ADD_DLN_EXISTS", "直流线表中已经存在这条线路.\n"};
  static constexpr Reason kFromNodeMissing = {"ADD_DLN_FROM_NODE_UNKNOWN", "该直流线的首端结点在结点表中不存在.\n"};
  static constexpr Reason kToNodeMissing = {"ADD_DLN_TO_NODE_UNKNOWN", "该条线的末端结点在结点线表中不存在.\n"};
  static constexpr Reason kSameNodes = {"ADD_DLN_NODES_EQUAL", "该条直流线有相同的结点名称.\n"};
  static constexpr Reason kParentMissing = {"ADD_DLN_DISTRICT_UNKNOWN", "直流线路提供的分区在分区表中不存在.\n"};
  static constexpr Reason kFromStationMissing = {"ADD_DLN_FROM_STATION_UNKNOWN", "直流线路首端厂站在厂站表中不存在.\n"};
  static constexpr Reason kFromStationUnrelated = {"ADD_DLN_FROM_STATION_WITHOUT_DISTRICT",
                                                   "直流线路首端厂站没有对应的分区.\n"};
  static constexpr Reason kToStationMissing = {"ADD_DLN_TO_STATION_UNKNOWN", "直流线路末端厂站在厂站表中不存在.\n"};
  static constexpr Reason kSameStations = {"ADD_DLN_STATIONS_EQUAL", "欲添加的直流线路有两个相同的厂站名称.\n"};
  static constexpr Reason kToStationUnrelated = {"ADD_DLN_TO_STATION_WITHOUT_DISTRICT",
                                                 "直流线路末端厂站没有对应的分区.\n"};
  static constexpr Reason kInOtherDistrict = {"ADD_DLN_IN_OTHER_DISTRICT",
                                              "直流线路指定的厂站与指定的分区所属关系矛盾.\n"};
  static constexpr Reason kFromLevelMissing = {"ADD_DLN_FROM_LEVEL_UNKNOWN",
                                               "直流线路指定的首端母线在母线表中不存在.\n"};
  static constexpr Reason kFromInOtherLevel = {"ADD_DLN_FROM_NODE_IN_OTHER_LEVEL",
                                               "直流线路首端结点的母线与指定母线的矛盾.\n"};
  static constexpr Reason kFromInOtherStation = {"ADD_DLN_FROM_NODE_IN_OTHER_STATION",
                                                 "直流线路首端端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason kToLevelMissing = {"ADD_DLN_TO_LEVEL_UNKNOWN", "直流线路指定的末端母线在母线表中不存在.\n"};
  static constexpr Reason kToInOtherLevel = {"ADD_DLN_TO_NODE_IN_OTHER_LEVEL", "直流线路末端结点的母线与指定的矛盾.\n"};
  static constexpr Reason kToInOtherStation = {"ADD_DLN_TO_NODE_IN_OTHER_STATION",
                                               "直流线路末端结点所属的厂站与填写的厂站矛盾.\n"};
  static constexpr Reason kFull = {"ADD_DLN_FULL", "直流线路DLN表空间已满.\n"};
  static constexpr Reason kRelationFull = {"ADD_DLN_RELATION_FULL", "R_DV_DLN表空间已满.\n"};
  static constexpr Reason kEndsFull = {"ADD_DLN_ENDS_FULL", "R_ND_DLN2或者DLN2表空间已满.\n"};
  static constexpr Reason kNotThere = {"REMOVE_DLN_NOT_THERE", "欲删除的直流线路DLN在直流表中不存在.\n"};
  static constexpr Reason kFromLevelLess = {"REMOVE_DLN_FROM_NODE_WITHOUT_LEVEL",
                                            "删除直流线首端结点没有所属的母线.\n"};
  static constexpr Reason kToLevelLess = {"REMOVE_DLN_TO_NODE_WITHOUT_LEVEL", "删除直流线末端结点没有所属的母线.\n"};
  static constexpr Reason kFromEndMissing = {"REMOVE_DLN_FROM_END_MISSING", "删除直流线路首端端子不存在.\n"};
  static constexpr Reason kToEndMissing = {"REMOVE_DLN_TO_END_MISSING", "删除直流线路末端端子不存在.\n"};
  static constexpr Reason kUnrelated = {"REMOVE_DLN_WITHOUT_DISTRICT", "删除直流线路没有所属的分区.\n"};
};

}  // namespace dtsdb::internal
