// Check constraints, code objects (triggers, procedures, packages,
// referenced objects), storage objects, and the nine catalog lists in the
// saved file.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class CatalogObjectsTest : public CBuilderTest {
protected:
    void SetUp() override {
        CBuilderTest::SetUp();
        m_item = m_builder.AddEntity("ITEM", "SALES", 0, 0);
        m_builder.AddAttribute(m_item, "QTY", "int", -1, -1, 1, 0);
        m_builder.AddAttribute(m_item, "STATE", "int", -1, -1, 1, 0);
    }
    CVrnApiAttribute& Attribute(int number) { return *m_builder.GetEntityPtr(m_item)->GetAttribute(number); }

    unsigned long m_item = 0;
};

TEST_F(CatalogObjectsTest, CheckConstraintsAreNumberedPerEntity) {
    const unsigned long other = m_builder.AddEntity("OTHER", nullptr, 0, 0);
    m_builder.AddCheckConstraint("CK1", "QTY > 0", m_item, "qty", 0);
    m_builder.AddCheckConstraint(nullptr, "STATE IN (1, 2)", m_item, nullptr, 99);
    m_builder.SetModelId(7);
    m_builder.AddCheckConstraint("CK3", "1 = 1", m_item, nullptr, 0);
    m_builder.AddCheckConstraint("CK_OTHER", "1 = 1", other, nullptr, 0);
    const auto rows = Save().Rows("CheckConstraints");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows.at(0).at("constraint_no") + rows.at(1).at("constraint_no") + rows.at(2).at("constraint_no") +
                  rows.at(3).at("constraint_no"),
              "1231");
    const std::string item = std::to_string(m_item);
    EXPECT_EQ(Fields(rows.at(0), "attribute_no attribute_id entity_key table_key model_no"),
              "attribute_no=1 attribute_id=1 entity_key=" + item + " table_key=" + item + " model_no=1");
    EXPECT_EQ(Fields(rows.at(1), "name attribute_id text"), "name= attribute_id=0 text=STATE IN (1, 2)");
    EXPECT_EQ(rows.at(2).at("model_no"), "7");
    EXPECT_NE(rows.at(0).at("constraint_key"), rows.at(1).at("constraint_key"));
}

TEST_F(CatalogObjectsTest, UnknownEntitiesAndColumnsAddNoCheckConstraint) {
    m_builder.AddCheckConstraint("CK", "1 = 1", 999, nullptr, 0);
    m_builder.AddCheckConstraint("CK", "1 = 1", m_item, "MISSING", 0);
    EXPECT_EQ(m_builder.GetEntityPtr(m_item)->m_nextCheckConstraintNo, 1);
    m_builder.AddCheckConstraint("CK", "1 = 1", m_item, nullptr, 0);
    EXPECT_EQ(Save().Scalar("SELECT group_concat(constraint_no) FROM CheckConstraints"), "1");
}

TEST_F(CatalogObjectsTest, ColumnsAlreadyConstrainedGetTheConstraintFlag) {
    m_builder.AddUserType("Flag", "int");
    m_builder.AddAttribute(m_item, "TYPED", "Flag", -1, -1, 1, 0);
    m_builder.AddRule("positive", "@v > 0", nullptr);
    m_builder.AddDefault("zero", "0", nullptr);
    m_builder.BindRule("positive", "ITEM.QTY");
    m_builder.BindDefault("zero", "ITEM.STATE");
    Attribute(1).m_constraintFlags = 2;
    m_builder.AddCheckConstraint("CK1", "QTY > 0", m_item, "QTY", 0);
    m_builder.AddCheckConstraint("CK2", "STATE > 0", m_item, "STATE", 0);  // a default alone does not count
    m_builder.AddCheckConstraint("CK3", "TYPED > 0", m_item, "TYPED", 0);
    EXPECT_EQ(Attribute(1).m_constraintFlags, 10u);
    EXPECT_EQ(Attribute(2).m_constraintFlags, 0u);
    EXPECT_EQ(m_builder.GetEntityPtr(m_item)->GetAttribute(3)->m_constraintFlags, 8u);
}

TEST_F(CatalogObjectsTest, ARuleBoundAfterTheCheckConstraintSetsNoFlag) {
    m_builder.AddRule("positive", "@v > 0", nullptr);
    m_builder.AddCheckConstraint("CK1", "QTY > 0", m_item, "QTY", 0);
    m_builder.BindRule("positive", "ITEM.QTY");
    EXPECT_EQ(Attribute(1).m_constraintFlags, 0u);
    EXPECT_EQ(Save().Scalar("SELECT constraint_flags FROM Attribute WHERE column_name = 'QTY'"), "0");
}

TEST_F(CatalogObjectsTest, TriggersAndProceduresAreFoundByNameAndOwner) {
    const unsigned long owned = m_builder.AddTrigger("TR_ITEM", "SALES", "begin null; end;", 3, 77);
    const unsigned long ownerless = m_builder.AddTrigger("TR_FREE", "", "x", 1, 5);
    unsigned long parent = 99;
    EXPECT_EQ(m_builder.FindTrigger("tr_item", "sales", parent), owned);
    EXPECT_EQ(parent, 77u);
    EXPECT_EQ(m_builder.FindTrigger("TR_ITEM", nullptr, parent), owned);
    EXPECT_EQ(m_builder.FindTrigger("TR_ITEM", "HR", parent), 0u);
    EXPECT_EQ(parent, 0u);
    EXPECT_EQ(m_builder.FindTrigger("TR_FREE", "SALES", parent), 0u);  // an empty owner is not any owner
    EXPECT_EQ(m_builder.FindTrigger("TR_FREE", "", parent), ownerless);

    const unsigned long first = m_builder.AddProcedure("P_CALC", "SALES", "text", 1);
    const unsigned long second = m_builder.AddProcedure("P_CALC", "HR", "text", 2);
    EXPECT_EQ(m_builder.FindProcedure("p_calc", nullptr), first);
    EXPECT_EQ(m_builder.FindProcedure("P_CALC", "hr"), second);
    EXPECT_EQ(m_builder.FindProcedure("P_OTHER", nullptr), 0u);
}

TEST_F(CatalogObjectsTest, InvalidMarkersTouchOnlyTheirOwnList) {
    const unsigned long trigger = m_builder.AddTrigger("TR", "S", "t", 0, 0);
    const unsigned long procedure = m_builder.AddProcedure("P", "S", "t", 0);
    ASSERT_EQ(trigger, procedure);  // separate key classes: both are 1
    m_builder.SetTriggerInvalid(trigger);
    m_builder.SetProcInvalid(999);
    Save();
    EXPECT_EQ(m_reader->Scalar("SELECT is_invalid FROM DbTrigger"), "1");
    EXPECT_EQ(m_reader->Scalar("SELECT is_invalid FROM Proc"), "0");
}

TEST_F(CatalogObjectsTest, PackageHeaderAndBodyMergeIntoOneRow) {
    const unsigned long declared = m_builder.AddPackage("PKG", "SCOTT", "package PKG is end;", false);
    const unsigned long body = m_builder.AddPackage("pkg", "scott", "package body PKG is end;", true);
    EXPECT_EQ(declared, body);
    EXPECT_EQ(m_builder.AddPackage("PKG", "SCOTT", "package body PKG is begin null; end;", true), declared);
    const auto rows = Save().Rows("DbPackage");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(Fields(rows.at(0), "name owner fixed_no header_text body_text"),
              "name=PKG owner=SCOTT fixed_no=1 header_text=package PKG is end; "
              "body_text=package body PKG is begin null; end;");
}

TEST_F(CatalogObjectsTest, APackageWithoutOwnerMatchesAnyOwner) {
    const unsigned long ownerless = m_builder.AddPackage("pkg", "", "head", false);
    EXPECT_EQ(m_builder.AddPackage("PKG", "SCOTT", "body", true), ownerless);
    EXPECT_EQ(m_builder.FindPackage("PKG", "ANYONE")->m_packageKey, ownerless);
    const unsigned long other = m_builder.AddPackage("OTHER", "HR", "head", false);
    EXPECT_EQ(m_builder.FindPackage("OTHER", "SCOTT"), nullptr);
    EXPECT_EQ(m_builder.FindPackage("OTHER", nullptr)->m_packageKey, other);
    EXPECT_EQ(m_builder.GetPackageList().GetCount(), 2);
}

TEST_F(CatalogObjectsTest, TheEarliestOfAnOwnedAndAnOwnerlessPackageWins) {
    const unsigned long owned = m_builder.AddPackage("PKG", "SCOTT", "a", false);
    m_builder.AddPackage("PKG", nullptr, "b", false);  // matches SCOTT's package: merged, not added
    EXPECT_EQ(m_builder.GetPackageList().GetCount(), 1);
    EXPECT_EQ(m_builder.FindPackage("PKG", "SCOTT")->m_packageKey, owned);
    const unsigned long hr = m_builder.AddPackage("PKG", "HR", "c", false);
    EXPECT_NE(hr, owned);
    EXPECT_EQ(m_builder.FindPackage("PKG", "HR")->m_packageKey, hr);
}

TEST_F(CatalogObjectsTest, ReferencedObjectsNeedAKnownMetaTable) {
    EXPECT_EQ(m_builder.AddReferencedObject(1, 2, 3, 4, 999), 0u);
    const unsigned long first = m_builder.AddReferencedObject(1, 2, 3, 4, 40);
    const unsigned long second = m_builder.AddReferencedObject(1, 2, 3, 4, 40);
    EXPECT_EQ(first, 1u);  // the refused call used no key
    EXPECT_NE(first, second);
    EXPECT_EQ(m_builder.FindReferencedObject(1, 2, 3, 4, 40), first);
    EXPECT_EQ(m_builder.FindReferencedObject(2, 1, 3, 4, 40), 0u);
    EXPECT_EQ(m_builder.FindReferencedObject(1, 2, 3, 4, 12), 0u);
    EXPECT_EQ(m_builder.FindReferencedObject(1, 2, 3, 4, 999), 0u);
    const auto rows = Save().Rows("Referenced_Object");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows.at(0).at("meta_table_key"),
              std::to_string(m_builder.GetPropertyMgr()->m_pMetaTableTbl->GetTechKey(40)));
    EXPECT_EQ(rows.at(0).at("value1") + rows.at(0).at("value2") + rows.at(0).at("value3") + rows.at(0).at("value4"),
              "1234");
}

TEST_F(CatalogObjectsTest, StorageObjectsAreWrittenButNotHandedOut) {
    EXPECT_EQ(m_builder.AddStorageObject("TS_DATA", nullptr, "create tablespace TS_DATA", 4), 0u);
    EXPECT_EQ(m_builder.AddStorageObject("TS_IDX", "SYS", "create tablespace TS_IDX", 4), 0u);
    const auto rows = Save().Rows("Storage_Object");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Fields(rows.at(0), "owner kind fixed_no"), "owner= kind=4 fixed_no=1");
    EXPECT_EQ(rows.at(1).at("owner"), "SYS");
    EXPECT_NE(rows.at(0).at("object_key"), rows.at(1).at("object_key"));
}

TEST_F(CatalogObjectsTest, TheNineCatalogListsAreWrittenInTheirFixedOrder) {
    // Added in reverse of the order in which they are written.
    m_builder.AddStorageObject("S", nullptr, "s", 0);
    m_builder.AddReferencedObject(1, 1, 1, 1, 40);
    m_builder.AddPackage("PKG", nullptr, "p", false);
    m_builder.AddProcedure("P", nullptr, "p", 0);
    m_builder.AddTrigger("T", nullptr, "t", 0, 0);
    m_builder.AddUserType("U", "int");
    m_builder.AddRule("R", "r", nullptr);
    m_builder.AddDefault("D", "d", nullptr);
    m_builder.AddCheckConstraint("C", "c", m_item, nullptr, 0);
    Save();
    const char* const order[] = {"Entity",    "CheckConstraints", "Defaults",  "Rules",          "UserDatatype",
                                 "DbTrigger", "Proc",             "DbPackage", "Referenced_Object", "Storage_Object"};
    std::int64_t previous = 0;
    for (const char* table : order) {
        const std::int64_t seq = std::stoll(m_reader->Scalar(std::string("SELECT row_seq FROM ") + table));
        EXPECT_GT(seq, previous) << table;
        previous = seq;
    }
}

}  // namespace
