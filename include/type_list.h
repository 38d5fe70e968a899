/// \file
/// Lists of types, and loops over them at compile time.
#pragma once

namespace dtsdb {

/// A list of types.
template <class... T>
struct TypeList {};

/// Calls `visit.operator()<T>()` for every type of the list, in order.
template <class... T, class Visitor>
constexpr void ForEachType(TypeList<T...>, Visitor&& visit) {
  (visit.template operator()<T>(), ...);
}

}  // namespace dtsdb
