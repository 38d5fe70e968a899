// What holds for every record class: defaults, constructors, comparison, copying.
#include "model/relations.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "model/text.h"
#include "tests/model/record_values.h"

namespace dtsdb::test {
namespace {

/// Calls `check` for every record class, with a record of it.
template <class Check>
void ForEachClass(Check check) {
  DTSDB database;
  ForEachTable(database, [&]<class T>(tTable<T>&) {
    SCOPED_TRACE(T::kTableName);
    check(T());
  });
}

/// The fields of class `T` that don't start as 0 or null.
template <class T>
std::set<std::string> FieldsWithDefault() {
  std::set<std::string> names;
  const T record;
  ForEachField(record, [&names]<class Value>(const FieldInfo& field, const Value& value) {
    if constexpr (std::is_same_v<Value, QString>) {
      EXPECT_TRUE(value.isNull()) << field.name;
    } else if (value != Value()) {
      EXPECT_EQ(value, static_cast<Value>(-1)) << field.name;
      names.insert(field.name);
    }
  });
  return names;
}

TEST(Records, OnlyUnitLoadAndAnalogHaveAMinusOneDefault) {
  ForEachClass([]<class T>(const T&) {
    std::set<std::string> expected;
    if constexpr (std::is_same_v<T, UN> || std::is_same_v<T, LD>) expected = {"ref"};
    if constexpr (std::is_same_v<T, ANALOG>) expected = {"idx"};
    EXPECT_EQ(FieldsWithDefault<T>(), expected);
  });
}

TEST(Records, BuiltByIdentityHaveTheMinusOneDefaultToo) {
  EXPECT_EQ(UN(QStringLiteral("x")).ref, -1);
  EXPECT_EQ(LD(QStringLiteral("x")).ref, -1);
  EXPECT_EQ(ANALOG(QStringLiteral("x")).idx, -1);
}

TEST(Records, BuiltByKeyDifferFromADefaultOneInTheKeyOnly) {
  ForEachClass([]<class T>(const T& fresh) {
    const T keyed = Keyed<T>(7);
    ForEachField(keyed, [&]<class Value>(const FieldInfo& field, const Value& value) {
      const std::string name = field.name;
      const bool isKey = T::kKey == RecordKey::kRelation ? name.ends_with("_id") : name == "id";
      EXPECT_EQ(value == field.In<Value>(&fresh), !isKey) << name;
    });
  });
}

TEST(Records, AreEqualByKeyWhateverElseDiffers) {
  ForEachClass([]<class T>(const T&) {
    T a = Keyed<T>(7);
    T b;
    FillFields(b, 3);
    EXPECT_FALSE(a == b);
    if constexpr (T::kKey == RecordKey::kRelation) {
      b.*Relation<T>::kParentId = a.*Relation<T>::kParentId;
      EXPECT_FALSE(a == b);
      b.*Relation<T>::kChildId = a.*Relation<T>::kChildId;
    } else {
      b.id = a.id;
    }
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
  });
}

TEST(Records, AreOrderedByKey) {
  ForEachClass([]<class T>(const T&) {
    EXPECT_TRUE(Keyed<T>(7) < Keyed<T>(8));
    EXPECT_FALSE(Keyed<T>(8) < Keyed<T>(7));
    EXPECT_FALSE(Keyed<T>(7) < Keyed<T>(7));
  });
}

TEST(Records, NumberedOnesAreOrderedAsSignedNumbers) {
  EXPECT_TRUE(BS(-1) < BS(0));
  EXPECT_TRUE(TPL(-2147483647 - 1) < TPL(2147483647));
}

TEST(Records, IdentitiesAreOrderedByCodeUnit) {
  EXPECT_TRUE(ND(QStringLiteral("B")) < ND(QStringLiteral("a")));
  EXPECT_TRUE(ND(QStringLiteral("z")) < ND(IdFromBytes("\xB1\xB1")));
  EXPECT_TRUE(ND(QStringLiteral("a")) < ND(QStringLiteral("a1")));
}

TEST(Records, RelationRowsAreOrderedByParentThenChild) {
  const auto row = [](const char* parent, const char* child) {
    return R_KV_BUS(QString::fromLatin1(parent), QString::fromLatin1(child));
  };
  EXPECT_TRUE(row("a", "z") < row("b", "a"));
  EXPECT_TRUE(row("a", "a") < row("a", "b"));
  EXPECT_FALSE(row("b", "a") < row("a", "z"));
  EXPECT_FALSE(row("ab", "c") == row("a", "bc"));
}

TEST(Records, ANullAndAnEmptyIdentityAreEqual) {
  EXPECT_TRUE(ST(QString()) == ST(QStringLiteral("")));
  EXPECT_FALSE(ST(QString()) < ST(QStringLiteral("")));
  EXPECT_FALSE(ST(QStringLiteral("")) < ST(QString()));
}

TEST(Records, CopiesHoldAllFields) {
  ForEachClass([]<class T>(const T&) {
    T original;
    FillFields(original, 11);
    const T copy(original);
    T assigned;
    assigned = original;
    EXPECT_TRUE(SameFields(copy, original));
    EXPECT_TRUE(SameFields(assigned, original));
    EXPECT_FALSE(SameFields(T(), original));
  });
}

TEST(Records, AssignmentToItselfChangesNothing) {
  ForEachClass([]<class T>(const T&) {
    T record;
    FillFields(record, 11);
    const T before = record;
    T& same = record;
    record = same;
    EXPECT_TRUE(SameFields(record, before));
  });
}

TEST(Records, StoreAndLoadEveryFieldInItsPlace) {
  ForEachClass([]<class T>(const T&) {
    T original;
    FillFields(original, 11);
    T loaded;
    EXPECT_EQ(LoadImage(loaded, ImageOf(original)), QString());
    EXPECT_TRUE(SameFields(loaded, original));
  });
}

TEST(Records, FieldsAreListedOnceEach) {
  ForEachClass([]<class T>(const T&) {
    std::set<std::string> names;
    for (const FieldInfo& field : T::Fields()) {
      names.insert(field.name);
      EXPECT_STRNE(field.meaning, "") << field.name;
    }
    EXPECT_EQ(names.size(), T::Fields().size());
  });
}

TEST(Records, FieldsLieBehindEachOtherAndFillTheRecord) {
  constexpr std::size_t kSizes[] = {sizeof(QString), 1, 1, 4, 4, 4, 8};
  ForEachClass([&]<class T>(const T&) {
    std::size_t end = 0;
    for (const FieldInfo& field : T::Fields()) {
      EXPECT_GE(field.offset, end) << field.name;
      EXPECT_LT(field.offset, end + alignof(T)) << field.name << " has a gap in front of it";
      end = field.offset + kSizes[static_cast<std::size_t>(field.type)];
    }
    EXPECT_LT(sizeof(T), end + alignof(T)) << "the last field is followed by one that isn't listed";
  });
}

TEST(Records, LinksOfEquipmentAreTheNumbersNamedSo) {
  const std::set<std::string> ends = {"cb2", "zcb2", "ln2", "zln2", "dln2", "zdln2", "xf2", "zxf2", "zbr2", "zzbr2"};
  ForEachClass([&]<class T>(const T&) {
    if constexpr (T::kKey == RecordKey::kIdentified && T::kKind != KIND_ANALOG && T::kKind != KIND_ND) {
      for (const FieldInfo& field : T::Fields()) {
        const std::string name = field.name;
        const bool isNamedSo = name.starts_with("i") || name.starts_with("r_") || ends.count(name) > 0;
        EXPECT_EQ(field.IsLink(), field.type == FieldType::kI32 && isNamedSo) << name;
      }
    }
  });
}

TEST(Relations, AreFoundByTheirChildren) {
  ForEachRelation([]<class Row> {
    EXPECT_TRUE((std::is_same_v<ParentRow<typename Relation<Row>::Child>, Row>)) << Row::kTableName;
  });
}

TEST(Relations, NameTheirEnds) {
  ForEachClass([]<class T>(const T&) {
    if constexpr (T::kKey == RecordKey::kRelation) {
      using Row = Relation<T>;
      T row(QStringLiteral("parent"), QStringLiteral("child"));
      row.*Row::kChildNumber = 5;
      EXPECT_EQ(row.*Row::kParentId, QStringLiteral("parent"));
      EXPECT_EQ(row.*Row::kChildId, QStringLiteral("child"));
      EXPECT_EQ(row.*Row::kParentNumber, 0);
      EXPECT_EQ(row.ChildNumber(), 5);
      typename Row::Parent parent;
      parent.*Row::kHead = 3;
      typename Row::Child child;
      child.*Row::kOwn = 4;
      EXPECT_EQ(std::string(T::kTableName), std::string("R_") + Row::Parent::kTableName + "_" + Row::Child::kTableName);
    }
  });
}

TEST(KindCodes, AreThePlacesInTheAlphabeticalOrderFromOne) {
  int place = 0;
  std::string before;
  ForEachClass([&]<class T>(const T&) {
    EXPECT_EQ(kKindOf<T>, ++place);
    EXPECT_LT(before, T::kTableName);
    before = T::kTableName;
  });
  EXPECT_EQ(place, kTableCount);
}

}  // namespace
}  // namespace dtsdb::test
