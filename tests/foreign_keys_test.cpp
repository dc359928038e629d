// Foreign keys: known and pending parents, column pairs by name, by the
// parent's primary key and by number, validity, type and optionality, the
// referential actions, and the rows a saved model holds for them.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class ForeignKeysTest : public CBuilderTest {
protected:
    // DEPT (ID, CODE key; NAME) and EMP (EMP_ID key; DEPT_ID, DEPT_CODE nullable; BOSS).
    void SetUp() override {
        CBuilderTest::SetUp();
        m_dept = m_builder.AddEntity("DEPT", nullptr, 0, 0);
        m_builder.AddAttribute(m_dept, "ID", "int", -1, -1, 0, 0);
        m_builder.AddAttribute(m_dept, "CODE", "char", 4, -1, 0, 0);
        m_builder.AddAttribute(m_dept, "NAME", "varchar2", 40, -1, 1, 0);
        m_builder.AddPrimaryKey(m_dept, "PK_DEPT");
        m_builder.AddPrimaryKeyColumn(m_dept, "ID", 0);
        m_builder.AddPrimaryKeyColumn(m_dept, "CODE", 0);

        m_emp = m_builder.AddEntity("EMP", nullptr, 0, 0);
        m_builder.AddAttribute(m_emp, "EMP_ID", "int", -1, -1, 0, 0);
        m_builder.AddAttribute(m_emp, "DEPT_ID", "int", -1, -1, 0, 0);
        m_builder.AddAttribute(m_emp, "DEPT_CODE", "char", 4, -1, 1, 0);
        m_builder.AddPrimaryKey(m_emp, "PK_EMP");
        m_builder.AddPrimaryKeyColumn(m_emp, "EMP_ID", 0);
        m_builder.AddPrimaryKeyColumn(m_emp, "DEPT_ID", 0);
    }
    CVrnApiForeignKey& ForeignKey(unsigned long id) {
        CVrnApiForeignKey* foreignKey = m_builder.ForeignKeyById(id);
        if (!foreignKey) throw std::runtime_error("no foreign key " + std::to_string(id));
        return *foreignKey;
    }
    // The parent and child attribute numbers of every pair, as "p-c p-c".
    std::string Pairs(unsigned long id) {
        std::string pairs;
        for (POSITION pos = ForeignKey(id).m_columnList.GetHeadPosition(); pos;) {
            const CForeignKeyColumnBase* pair = ForeignKey(id).m_columnList.GetNext(pos);
            if (!pairs.empty()) pairs += ' ';
            pairs += std::to_string(pair->m_parentAttributeNo) + "-" + std::to_string(pair->m_childAttributeNo);
        }
        return pairs;
    }
    unsigned long m_dept = 0;
    unsigned long m_emp = 0;
};

TEST_F(ForeignKeysTest, AKnownParentMakesAnAddressableForeignKey) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK_EMP_DEPT", "DEPT", nullptr);
    ASSERT_NE(fk, 0u);
    EXPECT_STREQ(m_builder.GetForeignKeyName(fk), "FK_EMP_DEPT");
    CVrnApiForeignKey& foreignKey = ForeignKey(fk);
    EXPECT_EQ(foreignKey.m_parentEntityKey, m_dept);
    EXPECT_EQ(foreignKey.m_childEntityKey, m_emp);
    EXPECT_EQ(foreignKey.m_fkKeyCopy, fk);
    EXPECT_STREQ(foreignKey.GetChildEntityName(), "EMP");
    EXPECT_STREQ(foreignKey.GetParentEntityOwner(), "");
    EXPECT_STREQ(foreignKey.GetRelationshipType(), "I");
    EXPECT_EQ(foreignKey.IsValid(), 1);
    EXPECT_NE(foreignKey.m_pOwnerData, nullptr);
    EXPECT_EQ(m_builder.ForeignKeyCount(), 1);
}

TEST_F(ForeignKeysTest, AnUnknownParentLeavesTheForeignKeyPending) {
    const unsigned long fk = m_builder.AddForeignKey(999, m_emp, "FK_LATER", "LOC", "HR");
    ASSERT_NE(fk, 0u);
    EXPECT_EQ(m_builder.GetForeignKeyName(fk), nullptr);
    EXPECT_EQ(m_builder.SetForeignKeyProperty(fk, 77, 1), 1);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fk, "LOC_ID", "DEPT_ID", 0), 1);
    CVrnApiForeignKey& pending = ForeignKey(fk);
    EXPECT_EQ(pending.m_columnList.GetCount(), 0);  // only the names are kept, for resolution
    EXPECT_STREQ(pending.m_parentColumnNames.GetHead(), "LOC_ID");
    EXPECT_STREQ(pending.m_childColumnNames.GetHead(), "DEPT_ID");
    EXPECT_STREQ(pending.GetParentEntityName(), "LOC");
    EXPECT_STREQ(pending.GetParentEntityOwner(), "HR");
    EXPECT_STREQ(pending.Text(CVrnApiForeignKey::kDeleteAction), "C");
    EXPECT_EQ(m_builder.ForeignKeyCount(), 0);
    EXPECT_EQ(m_builder.PendingForeignKeyCount(), 1);
    EXPECT_EQ(Save().Count("ForeignKey"), 0);  // pending foreign keys are not written
}

TEST_F(ForeignKeysTest, AnUnknownChildMakesNothing) {
    EXPECT_EQ(m_builder.AddForeignKey(m_dept, 999, "FK", nullptr, nullptr), 0u);
    EXPECT_EQ(m_builder.AddForeignKey(m_dept, 0, nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(m_builder.ForeignKeyCount() + m_builder.PendingForeignKeyCount(), 0);
}

TEST_F(ForeignKeysTest, PairsByNameFindColumnsIgnoringCase) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fk, "id", "dept_id", 0), 1);
    EXPECT_EQ(Pairs(fk), "1-2");
    EXPECT_STREQ(ForeignKey(fk).GetRelationshipType(), "I");
    EXPECT_EQ(ForeignKey(fk).IsValid(), 1);
}

TEST_F(ForeignKeysTest, UnnamedParentColumnsWalkThePrimaryKeyAndStartOverOrFindNone) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fk, nullptr, "DEPT_ID", 0), 1);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fk, nullptr, "DEPT_CODE", 0), 1);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fk, nullptr, "EMP_ID", 0), 1);
    EXPECT_EQ(Pairs(fk), "1-2 2-3 1-1");
    // A parent without primary key has nothing to walk.
    const unsigned long loose = m_builder.AddEntity("LOOSE", nullptr, 0, 0);
    m_builder.AddAttribute(loose, "X", "int", -1, -1, 0, 0);
    const unsigned long fromLoose = m_builder.AddForeignKey(loose, m_emp, "FK_LOOSE", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(fromLoose, nullptr, "DEPT_ID", 0), 0);
    EXPECT_EQ(ForeignKey(fromLoose).IsValid(), 1);
}

TEST_F(ForeignKeysTest, ValidityFollowsTheParentColumns) {
    const unsigned long unknownColumn = m_builder.AddForeignKey(m_dept, m_emp, "FK1", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(unknownColumn, "NOPE", "DEPT_ID", 0), 0);
    EXPECT_EQ(ForeignKey(unknownColumn).IsValid(), 0);

    const unsigned long notKey = m_builder.AddForeignKey(m_dept, m_emp, "FK2", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(notKey, "NAME", "DEPT_ID", 0), 1);
    EXPECT_EQ(ForeignKey(notKey).IsValid(), 0);
    EXPECT_EQ(Pairs(notKey), "3-2");

    const unsigned long unknownChild = m_builder.AddForeignKey(m_dept, m_emp, "FK3", nullptr, nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(unknownChild, "ID", "NOPE", 0), 0);
    EXPECT_EQ(ForeignKey(unknownChild).IsValid(), 1);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(999, "ID", "DEPT_ID", 0), 0);

    m_builder.DeleteForeignKey(unknownChild);
    EXPECT_EQ(ForeignKey(unknownChild).IsValid(), 0);
    EXPECT_EQ(Save().Count("ForeignKey"), 0);  // none of the three is valid
}

TEST_F(ForeignKeysTest, TypeAndOptionalityOnlyEverLoosen) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    m_builder.AddForeignKeyColumnPair(fk, "CODE", "DEPT_CODE", 0);  // child not in its key, and nullable
    EXPECT_STREQ(ForeignKey(fk).GetRelationshipType(), "N");
    EXPECT_STREQ(ForeignKey(fk).Text(CVrnApiForeignKey::kParentOptionality), "O");
    EXPECT_STREQ(ForeignKey(fk).Text(CVrnApiForeignKey::kChildOptionality), "O");
    m_builder.AddForeignKeyColumnPair(fk, "ID", "DEPT_ID", 0);  // key column, not null
    EXPECT_STREQ(ForeignKey(fk).GetRelationshipType(), "N");
    EXPECT_STREQ(ForeignKey(fk).Text(CVrnApiForeignKey::kChildOptionality), "O");
}

TEST_F(ForeignKeysTest, PairsByNumberSetTheTypeAsDeclared) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    m_builder.AddForeignKeyColumnPair(fk, 1, 2, 0, 0);
    EXPECT_STREQ(ForeignKey(fk).GetRelationshipType(), "N");
    m_builder.AddForeignKeyColumnPair(fk, 2, 3, 1, 0);
    EXPECT_STREQ(ForeignKey(fk).GetRelationshipType(), "I");
    EXPECT_STREQ(ForeignKey(fk).Text(CVrnApiForeignKey::kChildOptionality), "O");
    EXPECT_EQ(Pairs(fk), "1-2 2-3");
    // Unknown foreign keys and child attributes are ignored rather than trusted.
    m_builder.AddForeignKeyColumnPair(fk, 1, 99, 1, 0);
    m_builder.AddForeignKeyColumnPair(999, 1, 2, 1, 0);
    EXPECT_EQ(Pairs(fk), "1-2 2-3");
}

TEST_F(ForeignKeysTest, PairSequencesCountOnlyTheAutomaticOnes) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    m_builder.AddForeignKeyColumnPair(fk, 1, 1, 1, 0);
    m_builder.AddForeignKeyColumnPair(fk, 1, 2, 1, 5);
    m_builder.AddForeignKeyColumnPair(fk, 2, 3, 1, 0);
    std::vector<std::uint32_t> sequences;
    for (POSITION pos = ForeignKey(fk).m_columnList.GetHeadPosition(); pos;)
        sequences.push_back(ForeignKey(fk).m_columnList.GetNext(pos)->m_sequenceNo);
    EXPECT_EQ(sequences, (std::vector<std::uint32_t>{1, 5, 2}));
}

TEST_F(ForeignKeysTest, ReferentialActionsAreSwitches) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK", nullptr, nullptr);
    EXPECT_EQ(m_builder.SetForeignKeyProperty(fk, 77, 0), 1);
    EXPECT_STREQ(ForeignKey(fk).Text(CVrnApiForeignKey::kDeleteAction), "N");
    const std::tuple<int, int, const char*> cases[] = {
        {77, 14, "C"}, {78, 14, "R"}, {79, 14, "S"}, {80, 13, "C"}, {81, 13, "R"}};
    for (const auto& [code, field, letter] : cases) {
        EXPECT_EQ(m_builder.SetForeignKeyProperty(fk, code, 1), 1);
        EXPECT_STREQ(ForeignKey(fk).Text(field), letter) << code;
    }
    EXPECT_EQ(m_builder.SetForeignKeyProperty(fk, 12, 1), 1);  // unknown codes change nothing
    EXPECT_EQ(m_builder.SetForeignKeyProperty(999, 77, 1), 0);
}

TEST_F(ForeignKeysTest, ASavedModelHoldsValidForeignKeysAfterTheEntities) {
    const unsigned long fk = m_builder.AddForeignKey(m_dept, m_emp, "FK_EMP_DEPT", nullptr, nullptr);
    m_builder.AddForeignKeyColumnPair(fk, "ID", "DEPT_ID", 0);
    m_builder.AddForeignKeyColumnPair(fk, "CODE", "DEPT_CODE", 0);
    m_builder.SetForeignKeyProperty(fk, 80, 1);
    const unsigned long invalid = m_builder.AddForeignKey(m_dept, m_emp, "FK_BAD", nullptr, nullptr);
    m_builder.AddForeignKeyColumnPair(invalid, "NOPE", "DEPT_ID", 0);
    CModelFileReader& reader = Save();

    const auto keys = reader.Rows("ForeignKey");
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_EQ(Fields(keys.at(0), "name fk_key parent_entity_key child_entity_key relationship_type"),
              "name=FK_EMP_DEPT fk_key=" + std::to_string(fk) + " parent_entity_key=" + std::to_string(m_dept) +
                  " child_entity_key=" + std::to_string(m_emp) + " relationship_type=N");
    EXPECT_EQ(Fields(keys.at(0), "t3 t4 t5 t6 t7 t13 t14"), "t3=P t4=P t5=O t6=O t7=O t13=C t14=N");

    const auto pairs = reader.Rows("ForeignKeyColumn");
    ASSERT_EQ(pairs.size(), 2u);
    EXPECT_EQ(Fields(pairs.at(0), "fk_key sequence_no"), "fk_key=" + std::to_string(fk) + " sequence_no=1");
    EXPECT_EQ(Fields(pairs.at(1), "parent_attribute_no child_attribute_no origin_entity_key origin_attribute_no"),
              "parent_attribute_no=2 child_attribute_no=3 origin_entity_key=" + std::to_string(m_dept) +
                  " origin_attribute_no=2");
    EXPECT_NE(pairs.at(0).at("column_key"), pairs.at(1).at("column_key"));
    // Pairs first, then their relationship row, after every entity.
    EXPECT_EQ(reader.Scalar("SELECT (SELECT max(row_seq) FROM Entity) < (SELECT min(row_seq) FROM ForeignKeyColumn)"
                             " AND (SELECT max(row_seq) FROM ForeignKeyColumn) < (SELECT row_seq FROM ForeignKey)"),
              "1");
}

}  // namespace
