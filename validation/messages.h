/// \file
/// The messages of the validation, as data.
///
/// A message in the log reads "--NMD ", the word of its severity, ":", the name of the table, a blank, the identity
/// and the text given here. The texts are part of the interface, as they stand: some bring a leading blank, some don't.
#pragma once

#include <QString>
#include <unordered_map>

#include "validation/finding.h"

namespace dtsdb {

/// What can be said about a record, whichever it is.
struct Message {
  Severity severity;
  const char* field;  ///< field concerned; null for the record as a whole
  const char* text;   ///< what follows the identity, UTF-8
  bool names = true;  ///< false: without blank and identity, the text follows the name of the table
};

/// A text in its two forms: as people read it, and as raw bytes for the log (one byte to one QChar).
struct LogText {
  QString real;
  QString bytes;

  LogText& operator+=(const LogText& other) {
    real += other.real;
    bytes += other.bytes;
    return *this;
  }
};

/// Turns texts into their two forms. Literals are converted once.
class LogTexts {
 public:
  /// `utf8` is a literal: it is remembered by its address.
  const LogText& Literal(const char* utf8);
  /// The two forms of an identity; the bytes are those it holds, valid or not.
  const LogText& Identity(const QString& id);
  /// The message about the record `id` of `table`.
  LogText Line(TableKind table, const QString& id, const Message& message);
  /// What every message of a severity begins with: "--NMD 错误:".
  LogText Opening(Severity severity);

 private:
  std::unordered_map<const void*, LogText> m_literals;
  QString m_lastId;  // messages about one record follow each other
  LogText m_lastIdentity;
};

namespace message {

constexpr Message Error(const char* field, const char* text) { return {Severity::kError, field, text}; }
constexpr Message Warning(const char* field, const char* text) { return {Severity::kWarning, field, text}; }
constexpr Message Notice(const char* text) { return {Severity::kNotice, nullptr, text}; }

// The run
inline constexpr Message kRunBegins = Notice("开始一次全网校验... ...");
inline constexpr Message kRunEnds = Notice("结束一次全网校验!");
inline constexpr Message kModelIsGood = Notice("目前网络数据库没有错误，请查看校验日志.");
inline constexpr const char* kErrorsRemain[] = {"网络数据库中还存在", "错误，请根据校验日志更改错误."};

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

/// The reasons in NMD::GetLastError when a table takes no more rows.
namespace full {

inline constexpr const char* kShuntNodes = "结点表ND或者电压结点关系表R_KV_ND已满.\n";
inline constexpr const char* kBranchNodes = "ND 或者 R_KV_ND表已满.\n";
inline constexpr const char* kBreakerEnds = "CB2或者R_ND_CB2表空间已满.\n";
inline constexpr const char* kZbrEnds = "ZBR2或者R_ND_ZBR2表空间已满.\n";
inline constexpr const char* kWindingEnds = "XF2或者R_ND_XF2表空间已满.\n";
inline constexpr const char* kLineEnds = "LN2表空间已满.\n";
inline constexpr const char* kDcLineEnds = "DLN2表空间已满.\n";
inline constexpr const char* kZbrRelation = "R_KV_ZBR表空间已满.\n";

}  // namespace full

}  // namespace dtsdb
