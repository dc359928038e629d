// Relationship resolution, situation by situation, checked in the saved file:
// which foreign keys are written, relation keys, role names, attribute names,
// origins, copies of shared attributes, alternate key references, and the
// messages of resolving pending foreign keys.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class ResolutionTest : public CBuilderTest {
protected:
    // A table whose columns named in `keyColumns` form its primary key.
    unsigned long Table(const char* name, std::initializer_list<const char*> columns,
                        std::initializer_list<const char*> keyColumns) {
        const unsigned long entity = m_builder.AddEntity(name, nullptr, 0, 0);
        for (const char* column : columns) m_builder.AddAttribute(entity, column, "int", -1, -1, 0, 0);
        m_builder.AddPrimaryKey(entity, (std::string("PK_") + name).c_str());
        for (const char* column : keyColumns) m_builder.AddPrimaryKeyColumn(entity, column, 0);
        return entity;
    }
    // A foreign key with pairs by column name.
    unsigned long Fk(unsigned long parent, unsigned long child, const char* name,
                     std::initializer_list<std::pair<const char*, const char*>> pairs) {
        const unsigned long fk = m_builder.AddForeignKey(parent, child, name, nullptr, nullptr);
        for (const auto& [parentColumn, childColumn] : pairs)
            m_builder.AddForeignKeyColumnPair(fk, parentColumn, childColumn, 0);
        return fk;
    }
    // A foreign key with pairs by attribute number, which checks no key membership.
    unsigned long FkByNumber(unsigned long parent, unsigned long child, const char* name, unsigned long parentNo,
                             unsigned long childNo) {
        const unsigned long fk = m_builder.AddForeignKey(parent, child, name, nullptr, nullptr);
        m_builder.AddForeignKeyColumnPair(fk, parentNo, childNo, 1, 0);
        return fk;
    }
    // Fields of a saved attribute row of `entity`, the first by number that
    // `condition` picks; "" when there is none.
    std::string SavedAttribute(unsigned long entity, const std::string& condition, const std::string& fields) {
        const auto rows = m_reader->Query("SELECT * FROM Attribute WHERE entity_key = " + std::to_string(entity) +
                                          " AND " + condition + " ORDER BY attribute_no");
        return rows.empty() ? "" : Fields(rows.front(), fields);
    }
    std::string Attr(unsigned long entity, const char* column, const std::string& fields) {
        return SavedAttribute(entity, std::string("column_name = '") + column + "'", fields);
    }
    // The saved origin of every pair of a foreign key, as "entity.attribute ...".
    std::string Origins(unsigned long fk) {
        return m_reader->Scalar(
            "SELECT group_concat(origin_entity_key || '.' || origin_attribute_no, ' ') FROM "
            "(SELECT * FROM ForeignKeyColumn WHERE fk_key = " + std::to_string(fk) + " ORDER BY row_seq)");
    }
    std::vector<std::string> SavedForeignKeys() {
        return m_reader->Column("SELECT name FROM ForeignKey ORDER BY row_seq");
    }
};

TEST_F(ResolutionTest, AnIdentifyingMigrationOwnsAndNamesItsChildAttribute) {
    const unsigned long parent = Table("PARENT", {"ID"}, {"ID"});
    const unsigned long child = Table("CHILD", {"CID", "PID"}, {"CID", "PID"});
    const unsigned long fk = Fk(parent, child, "FK_CHILD", {{"ID", "PID"}});
    Save();
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey"), "I");
    // Named after its origin, ID; PID differs from it, so both role names count as given.
    EXPECT_EQ(Attr(child, "PID", "relation_key attribute_name role_name role_name_copy role_name_given "
                                 "role_name_copy_given"),
              "relation_key=" + std::to_string(fk) +
                  " attribute_name=ID role_name=PID role_name_copy=PID role_name_given=1 role_name_copy_given=1");
    EXPECT_EQ(Attr(child, "CID", "relation_key"), "relation_key=0");
    EXPECT_EQ(Origins(fk), std::to_string(parent) + ".1");
}

TEST_F(ResolutionTest, SameColumnNamesGiveNoRoleNameFlags) {
    const unsigned long parent = Table("PARENT", {"ID"}, {"ID"});
    const unsigned long child = Table("CHILD", {"ID", "CID"}, {"ID", "CID"});
    Fk(parent, child, "FK", {{"ID", "ID"}});
    Save();
    EXPECT_EQ(Attr(child, "ID", "role_name role_name_given role_name_copy_given"),
              "role_name=ID role_name_given=0 role_name_copy_given=0");
}

TEST_F(ResolutionTest, AnAttributeUsedByTwoRelationshipsGetsACopyForTheSecond) {
    const unsigned long p1 = Table("P1", {"ID"}, {"ID"});
    const unsigned long p2 = Table("P2", {"ID"}, {"ID"});
    const unsigned long child = Table("CHILD", {"CID", "REF"}, {"CID", "REF"});
    const unsigned long first = Fk(p1, child, "FK1", {{"ID", "REF"}});
    const unsigned long second = Fk(p2, child, "FK2", {{"ID", "REF"}});
    Save();
    EXPECT_EQ(SavedForeignKeys(), (std::vector<std::string>{"FK1", "FK2"}));
    EXPECT_EQ(m_reader->Count("Attribute"), 5);  // P1.ID, P2.ID, CID, REF and the copy of REF
    EXPECT_EQ(SavedAttribute(child, "attribute_no = 2", "relation_key"), "relation_key=" + std::to_string(first));
    EXPECT_EQ(SavedAttribute(child, "attribute_no = 3", "column_name parent_attribute_no attribute_id relation_key"),
              "column_name=REF parent_attribute_no=2 attribute_id=0 relation_key=0");
    EXPECT_EQ(m_reader->Scalar("SELECT child_attribute_no FROM ForeignKeyColumn WHERE fk_key = " +
                               std::to_string(second)),
              "3");
    EXPECT_EQ(Origins(first), std::to_string(p1) + ".1");
    EXPECT_EQ(Origins(second), std::to_string(p2) + ".1");
}

// CHILD.REF is migrated by FK_I (identifying) and by FK_N, which is
// non-identifying because its other column, OTHER, is not in CHILD's key.
class ConflictTest : public ResolutionTest, public ::testing::WithParamInterface<bool> {};

TEST_P(ConflictTest, IdentifyingWinsAndTheNonIdentifyingPairGetsACopy) {
    const bool identifyingFirst = GetParam();
    const unsigned long p1 = Table("P1", {"ID"}, {"ID"});
    const unsigned long p2 = Table("P2", {"ID", "X"}, {"ID", "X"});
    const unsigned long child = Table("CHILD", {"CID", "REF", "OTHER"}, {"CID", "REF"});
    unsigned long identifying = 0, nonIdentifying = 0;
    if (identifyingFirst) identifying = Fk(p1, child, "FK_I", {{"ID", "REF"}});
    nonIdentifying = Fk(p2, child, "FK_N", {{"ID", "REF"}, {"X", "OTHER"}});
    if (!identifyingFirst) identifying = Fk(p1, child, "FK_I", {{"ID", "REF"}});
    Save();
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey WHERE name = 'FK_I'"), "I");
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey WHERE name = 'FK_N'"), "N");
    EXPECT_EQ(Attr(child, "REF", "relation_key"), "relation_key=" + std::to_string(identifying));
    EXPECT_EQ(Attr(child, "OTHER", "relation_key"), "relation_key=" + std::to_string(nonIdentifying));
    // FK_N's REF pair now points at a copy of REF.
    EXPECT_EQ(m_reader->Scalar("SELECT child_attribute_no FROM ForeignKeyColumn WHERE fk_key = " +
                               std::to_string(nonIdentifying) + " ORDER BY row_seq LIMIT 1"),
              "4");
    EXPECT_EQ(SavedAttribute(child, "attribute_no = 4", "parent_attribute_no"), "parent_attribute_no=2");
}

INSTANTIATE_TEST_SUITE_P(EitherOrder, ConflictTest, ::testing::Bool());

// A, B and C each have a key column K; "A from B" migrates B.K into A.K.
class CycleTest : public ResolutionTest {
protected:
    void MakeEntities(bool bKeyed) {
        m_a = Table("A", {"K"}, {"K"});
        m_b = Table("B", {"K"}, bKeyed ? std::initializer_list<const char*>{"K"} : std::initializer_list<const char*>{});
        m_c = Table("C", {"K"}, {"K"});
    }
    bool Valid(unsigned long fk) { return m_builder.ForeignKeyById(fk)->IsValid() != 0; }
    unsigned long m_a = 0, m_b = 0, m_c = 0;
};

TEST_F(CycleTest, AnIdentifyingCycleLosesEveryForeignKeyThatClosesIt) {
    MakeEntities(true);
    const unsigned long aFromB = FkByNumber(m_b, m_a, "A_FROM_B", 1, 1);
    const unsigned long bFromC = FkByNumber(m_c, m_b, "B_FROM_C", 1, 1);
    const unsigned long cFromA = FkByNumber(m_a, m_c, "C_FROM_A", 1, 1);
    Save();
    EXPECT_FALSE(Valid(aFromB));
    EXPECT_FALSE(Valid(bFromC));
    EXPECT_FALSE(Valid(cFromA));
    EXPECT_TRUE(SavedForeignKeys().empty());
}

TEST_F(CycleTest, ANonIdentifyingLinkKeepsTheCycle) {
    MakeEntities(false);  // B.K is not in B's key, so B from C is non-identifying
    FkByNumber(m_b, m_a, "A_FROM_B", 1, 1);
    FkByNumber(m_c, m_b, "B_FROM_C", 1, 1);
    FkByNumber(m_a, m_c, "C_FROM_A", 1, 1);
    Save();
    EXPECT_EQ(SavedForeignKeys(), (std::vector<std::string>{"A_FROM_B", "B_FROM_C", "C_FROM_A"}));
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey WHERE name = 'B_FROM_C'"), "N");
}

TEST_F(CycleTest, AForeignKeyThatReachesTheCycleFirstBreaksItThere) {
    MakeEntities(true);
    const unsigned long d = Table("D", {"K"}, {"K"});
    const unsigned long dFromA = FkByNumber(m_a, d, "D_FROM_A", 1, 1);
    const unsigned long aFromB = FkByNumber(m_b, m_a, "A_FROM_B", 1, 1);
    FkByNumber(m_c, m_b, "B_FROM_C", 1, 1);
    FkByNumber(m_a, m_c, "C_FROM_A", 1, 1);
    Save();
    EXPECT_TRUE(Valid(dFromA));
    EXPECT_FALSE(Valid(aFromB));
    EXPECT_EQ(SavedForeignKeys(), std::vector<std::string>{"D_FROM_A"});
    EXPECT_EQ(Origins(dFromA), std::to_string(m_a) + ".1");
}

TEST_F(ResolutionTest, ANonIdentifyingSelfRelationshipIsNoCycle) {
    const unsigned long emp = Table("EMP", {"ID", "BOSS"}, {"ID"});
    const unsigned long fk = Fk(emp, emp, "FK_BOSS", {{"ID", "BOSS"}});
    Save();
    EXPECT_EQ(SavedForeignKeys(), std::vector<std::string>{"FK_BOSS"});
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey"), "N");
    EXPECT_EQ(Attr(emp, "BOSS", "relation_key attribute_name role_name"),
              "relation_key=" + std::to_string(fk) + " attribute_name=ID role_name=BOSS");
    EXPECT_EQ(Origins(fk), std::to_string(emp) + ".1");
}

TEST_F(ResolutionTest, OriginsFollowIdentifyingChainsAndStopBeforeANonIdentifyingLink) {
    const unsigned long a = Table("A", {"K"}, {"K"});
    const unsigned long b = Table("B", {"K"}, {"K"});
    const unsigned long c = Table("C", {"K"}, {"K"});
    const unsigned long cFromB = FkByNumber(b, c, "C_FROM_B", 1, 1);
    FkByNumber(a, b, "B_FROM_A", 1, 1);
    const unsigned long d = Table("D", {"K"}, {"K"});
    const unsigned long e = Table("E", {"K"}, {});  // E from D is non-identifying
    const unsigned long f = Table("F", {"K"}, {"K"});
    const unsigned long fFromE = FkByNumber(e, f, "F_FROM_E", 1, 1);
    const unsigned long eFromD = FkByNumber(d, e, "E_FROM_D", 1, 1);
    Save();
    EXPECT_EQ(Origins(cFromB), std::to_string(a) + ".1");
    EXPECT_EQ(Origins(fFromE), std::to_string(e) + ".1");
    EXPECT_EQ(Origins(eFromD), std::to_string(d) + ".1");  // followed as the first step
}

TEST_F(ResolutionTest, AlternateKeyReferencesInColumnOrderAreAccepted) {
    const unsigned long parent = Table("PARENT", {"ID", "CODE", "REGION"}, {"ID"});
    const unsigned long unique = m_builder.AddIndex(parent, "UX_PARENT");
    m_builder.AddIndexColumn(unique, "CODE", 0, 0);
    m_builder.AddIndexColumn(unique, "REGION", 0, 0);
    m_builder.SetIndexProperty(unique, 34, 1);
    const unsigned long child = Table("CHILD", {"ID", "PCODE", "PREGION"}, {"ID"});
    Fk(parent, child, "FK_RIGHT", {{"CODE", "PCODE"}, {"REGION", "PREGION"}});
    Fk(parent, child, "FK_WRONG", {{"REGION", "PREGION"}, {"CODE", "PCODE"}});
    Save();
    EXPECT_EQ(SavedForeignKeys(), std::vector<std::string>{"FK_RIGHT"});
    EXPECT_EQ(m_reader->Scalar("SELECT referenced_key FROM ForeignKey"), std::to_string(unique));
    EXPECT_EQ(m_reader->Scalar("SELECT relationship_type FROM ForeignKey"), "N");
}

TEST_F(ResolutionTest, WritingRowsDuringResolutionOutputsRenamedAttributes) {
    const unsigned long parent = Table("PARENT", {"ID"}, {"ID"});
    const unsigned long child = Table("CHILD", {"PID"}, {"PID"});
    Fk(parent, child, "FK", {{"ID", "PID"}});
    m_builder.UpdateRelationships(1);
    Save();
    // Written once by resolution and once by the entity save.
    EXPECT_EQ(m_reader->Scalar("SELECT count(*) FROM Attribute WHERE entity_key = " + std::to_string(child)), "2");
}

class ResolveConstraintsTest : public ResolutionTest {
protected:
    void SetUp() override {
        ResolutionTest::SetUp();
        AfxSetResourceString(kHostTextParentNotFound, "Parent %1 not found");
        AfxSetResourceString(kHostTextUnnamedKeyNotAdded, "Foreign key has no name");
        AfxSetResourceString(kHostTextForeignKeyNotAdded, "Foreign key %1 dropped");
        AfxSetResourceString(kHostTextColumnPairNotAdded, "%1: no pair from %2 to %3");
        m_dept = Table("DEPT", {"ID", "CODE"}, {"ID", "CODE"});
        m_emp = Table("EMP", {"EMP_ID", "DEPT_ID", "DEPT_CODE"}, {"EMP_ID"});
    }
    void TearDown() override {
        for (unsigned id : {kHostTextParentNotFound, kHostTextUnnamedKeyNotAdded, kHostTextForeignKeyNotAdded,
                            kHostTextColumnPairNotAdded})
            AfxSetResourceString(id, nullptr);
    }
    std::vector<std::string> Messages(const CStringList& list) {
        std::vector<std::string> texts;
        for (POSITION pos = list.GetHeadPosition(); pos;) texts.push_back(list.GetNext(pos).str());
        return texts;
    }
    unsigned long m_dept = 0, m_emp = 0;
};

TEST_F(ResolveConstraintsTest, PendingForeignKeysFindTheirParentByName) {
    const unsigned long fk = m_builder.AddForeignKey(0, m_emp, "FK_EMP_DEPT", "dept", "SOMEONE");
    // Empty parent columns walk DEPT's key: ID, then CODE; a named one does not move the walk.
    m_builder.AddForeignKeyColumnPair(fk, "", "DEPT_ID", 0);
    m_builder.AddForeignKeyColumnPair(fk, "", "DEPT_CODE", 0);
    m_builder.AddForeignKeyColumnPair(fk, "ID", "EMP_ID", 0);
    CStringList messages;
    EXPECT_TRUE(m_builder.ResolveForeignKeyConstraints(messages));
    EXPECT_TRUE(Messages(messages).empty());
    EXPECT_STREQ(m_builder.GetForeignKeyName(fk), "FK_EMP_DEPT");
    Save();
    EXPECT_EQ(SavedForeignKeys(), std::vector<std::string>{"FK_EMP_DEPT"});
    EXPECT_EQ(m_reader->Scalar("SELECT parent_entity_key FROM ForeignKey"), std::to_string(m_dept));
    EXPECT_EQ(m_reader->Column("SELECT parent_attribute_no || '-' || child_attribute_no FROM ForeignKeyColumn "
                               "ORDER BY row_seq"),
              (std::vector<std::string>{"1-2", "2-3", "1-1"}));
}

TEST_F(ResolveConstraintsTest, MissingParentsAreReportedWithOrWithoutAName) {
    m_builder.AddForeignKey(0, m_emp, "UNKNOWN", "LOCATION", nullptr);
    m_builder.AddForeignKey(0, m_emp, "", "SITE", nullptr);
    m_builder.AddForeignKey(0, m_emp, "FK1", "REGION", nullptr);
    CStringList messages;
    EXPECT_FALSE(m_builder.ResolveForeignKeyConstraints(messages));
    EXPECT_EQ(Messages(messages),
              (std::vector<std::string>{"Parent LOCATION not found", "Foreign key has no name",
                                        "Parent SITE not found", "Foreign key has no name",
                                        "Parent REGION not found", "Foreign key FK1 dropped"}));
    EXPECT_TRUE(Save().Rows("ForeignKey").empty());
}

TEST_F(ResolveConstraintsTest, FailingPairsAreReportedAndTheForeignKeyStillMoves) {
    const unsigned long fk = m_builder.AddForeignKey(0, m_emp, "FK_BAD", "DEPT", nullptr);
    m_builder.AddForeignKeyColumnPair(fk, "NOPE", "DEPT_ID", 0);
    CStringList messages;
    EXPECT_TRUE(m_builder.ResolveForeignKeyConstraints(messages));
    EXPECT_EQ(Messages(messages), std::vector<std::string>{"FK_BAD: no pair from DEPT to EMP"});
    EXPECT_EQ(m_builder.ForeignKeyCount(), 1);
    EXPECT_FALSE(m_builder.ForeignKeyById(fk)->IsValid());
}

TEST_F(ResolveConstraintsTest, UnregisteredMessagesAreStillOneEntryEach) {
    AfxSetResourceString(kHostTextParentNotFound, nullptr);
    AfxSetResourceString(kHostTextForeignKeyNotAdded, nullptr);
    m_builder.AddForeignKey(0, m_emp, "FK1", "REGION", nullptr);
    CStringList messages;
    m_builder.ResolveForeignKeyConstraints(messages);
    EXPECT_EQ(Messages(messages), (std::vector<std::string>{"", ""}));
}

TEST_F(ResolveConstraintsTest, ASecondCallAppendsResolvedForeignKeysAgain) {
    const unsigned long fk = m_builder.AddForeignKey(0, m_emp, "FK_EMP_DEPT", "DEPT", nullptr);
    m_builder.AddForeignKeyColumnPair(fk, "ID", "DEPT_ID", 0);
    CStringList messages;
    m_builder.ResolveForeignKeyConstraints(messages);
    m_builder.ResolveForeignKeyConstraints(messages);
    EXPECT_TRUE(Messages(messages).empty());
    EXPECT_EQ(m_builder.ForeignKeyCount(), 2);
    EXPECT_EQ(m_builder.ForeignKeyById(fk)->m_columnList.GetCount(), 1);
    // Written once per place in the list; destroying the builder deletes it once.
    EXPECT_EQ(Save().Count("ForeignKey"), 2);
}

TEST(ResolutionScaleTest, ALongChainOfForeignKeysResolvesEveryLink) {
    // Its time at catalog scale is measured by the benchmark (bench/run).
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(41, nullptr), 1);
    constexpr int kTables = 2001;
    std::vector<unsigned long> tables;
    for (int i = 0; i < kTables; ++i) {
        const std::string name = "T" + std::to_string(i);
        const unsigned long table = builder.AddEntity(name.c_str(), nullptr, 0, 0);
        builder.AddAttribute(table, "ID", "int", -1, -1, 0, 0);
        builder.AddAttribute(table, "PARENT_ID", "int", -1, -1, 1, 0);
        builder.AddPrimaryKey(table, nullptr);
        builder.AddPrimaryKeyColumn(table, "ID", 0);
        tables.push_back(table);
    }
    // A tree of non-identifying relationships: every table refers to the one before.
    std::vector<unsigned long> foreignKeys;
    for (int i = 1; i < kTables; ++i) {
        foreignKeys.push_back(builder.AddForeignKey(tables[i - 1], tables[i], nullptr, nullptr, nullptr));
        builder.AddForeignKeyColumnPair(foreignKeys.back(), "ID", "PARENT_ID", 0);
    }
    builder.UpdateRelationships(0);
    for (int i : {1, 5, kTables / 2, kTables - 1})
        EXPECT_EQ(builder.GetEntityPtr(tables[i])->GetAttribute(2)->GetRelationId(), foreignKeys[i - 1]) << i;
}

}  // namespace
