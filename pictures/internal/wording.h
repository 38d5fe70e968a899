/// \file
/// Names and texts of elements, and the room that they take.
#pragma once

#include <string>
#include <vector>

#include "pictures/internal/fonts.h"
#include "pictures/picture.h"
#include "pictures/station.h"

namespace dtsdb::pictures::internal {

inline constexpr int kLineHeight = 13;  ///< from one line of a label to the next

/// A line of text at `at`, with the box that it takes.
Label MakeLabel(const std::string& text, Point at, Anchor anchor, const Font& font = kUsualFont);

/// The id of the element that stands for a record: the table and the identity, with '_' and two hexadecimal digits for
/// each byte that isn't a letter, digit or '-'. `part` is added to the end of a branch's id.
std::string ElementId(const RecordName& record, const std::string& part = "");

/// An identity without what it has in common with that of its level or station, and not too long.
std::string ShortName(const std::string& identity, const std::vector<std::string>& owners);

/// A name in lines that are not too long, three at most.
std::vector<std::string> Wrapped(const std::string& text);

// An arrow shows where power goes: the active one, or the reactive one where that is all. Texts have the size of the
// active power; reactive power below zero goes the other way.

/// The breaker is closed and has a known flow.
inline bool ShowsFlow(const StationSwitch& item) { return item.isBreaker && !item.open && item.flow.has_value(); }
/// Power goes as counted, not the other way.
bool GoesAlong(const Power& power);

/// Neither power is shown as more than zero; no arrow stands for it.
bool IsZero(const Power& power);

/// "12.5 MW" and "-3.1 Mvar".
std::vector<std::string> PowerTexts(const Power& power);
/// "12.5 / -3.1".
std::string ShortPowerText(const Power& power);

/// What a device is, such as "line".
const char* KindText(DeviceKind kind);

}  // namespace dtsdb::pictures::internal
