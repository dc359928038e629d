// Hostile names and texts are stored verbatim; every public operation called
// out of order, with unknown identifiers or with null texts answers its
// documented result and never faults.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

TEST(HostileTextTest, NamesAndTextsAreStoredVerbatim) {
    const std::vector<std::string> names = {
        "x'); DROP TABLE Entity; --",
        "\"quoted\" [bracketed] `back`",
        "semi;colon",
        "caf\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC",
        std::string("\x80\x81\xFE\xFF high bytes"),
        std::string(1 << 20, 'N'),
        "",
    };
    CScratchDir dir;
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(41, nullptr), 1);
    for (const std::string& name : names) {
        const unsigned long entity = builder.AddEntity(name.c_str(), name.c_str(), 0, 0);
        ASSERT_NE(entity, 0u);
        builder.AddAttribute(entity, name.c_str(), "varchar", 10, -1, 1, 0);
        builder.SetEntityStringProperty(entity, 2, name.c_str());
        builder.AddCheckConstraint(name.c_str(), name.c_str(), entity, nullptr, 0);
        builder.AddTrigger(name.c_str(), name.c_str(), name.c_str(), 1, entity);
    }
    const std::string path = dir.File("model.vrn");
    builder.SaveToFile(path.c_str());
    ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    CModelFileReader reader(path);
    const std::pair<const char*, const char*> stored[] = {
        {"Entity", "entity_name"},  {"Entity", "owner"},          {"Entity", "definition"},
        {"Attribute", "column_name"}, {"CheckConstraints", "text"}, {"DbTrigger", "sql_text"},
    };
    // Compared whole, not printed: one name is a megabyte long.
    for (const auto& [table, column] : stored)
        EXPECT_TRUE(reader.Column(std::string("SELECT ") + column + " FROM " + table + " ORDER BY row_seq") == names)
            << table << "." << column;
    EXPECT_EQ(builder.FindEntity(names[0].c_str(), nullptr, 0), 1u);
}

// Every operation of the model builder, on a builder in the given state.
// The results are those of "nothing found or made".
void ExpectNothingHappens(CTestBuilder& builder) {
    unsigned long parent = 9;
    CStringList messages;
    EXPECT_EQ(builder.AddEntity("T", nullptr, 0, 0), 0u);
    EXPECT_EQ(builder.FindEntity("T", nullptr, 0), 0u);
    EXPECT_EQ(builder.IsEntityView(1), 0);
    EXPECT_EQ(builder.GetEntityPtr(1), nullptr);
    EXPECT_EQ(builder.SetEntityProperty(1, 16, 1), 0);
    EXPECT_EQ(builder.SetEntityStringProperty(1, 2, "x"), 0);
    EXPECT_EQ(builder.AddAttribute(1, "A", "int", -1, -1, 1, 0), 0u);
    EXPECT_EQ(builder.FindAttribute(1, "A"), 0u);
    EXPECT_EQ(builder.DeleteAttribute(1, 1), 0);
    EXPECT_EQ(builder.SetAttributeProperty(1, 6, 1), 0);
    EXPECT_EQ(builder.SetAttributeStringProperty(1, 1, "x"), 0);
    EXPECT_EQ(builder.AddPrimaryKey(1, "PK"), nullptr);
    EXPECT_EQ(builder.GetPrimaryKeyIndexId(1), 0u);
    EXPECT_EQ(builder.AddPrimaryKeyColumn(1, "A", 0), 0);
    EXPECT_EQ(builder.AddIndex(1, "IX"), 0u);
    EXPECT_EQ(builder.AddIndexColumn(1, "A", 0, 0), 0);
    EXPECT_EQ(builder.SetIndexProperty(1, 34, 1), 0);
    EXPECT_EQ(builder.SetIndexStringProperty(1, 15, "x"), 0);
    EXPECT_EQ(builder.AddForeignKey(1, 2, "FK", "P", nullptr), 0u);
    EXPECT_EQ(builder.AddForeignKeyColumnPair(1, "A", "B", 0), 0);
    builder.AddForeignKeyColumnPair(1, 1, 1, 1, 0);
    builder.AddForeignKey(nullptr);
    EXPECT_EQ(builder.GetForeignKeyName(1), nullptr);
    EXPECT_EQ(builder.SetForeignKeyProperty(1, 77, 1), 0);
    builder.DeleteForeignKey(1);
    EXPECT_FALSE(builder.ResolveForeignKeyConstraints(messages));
    EXPECT_TRUE(messages.IsEmpty());
    builder.UpdateRelationships(1);
    EXPECT_EQ(builder.BindRule("r", "t.c"), 0u);
    EXPECT_EQ(builder.BindDefault("d", "t"), 0u);
    builder.AddCheckConstraint("C", "1 = 1", 1, "A", 0);
    EXPECT_EQ(builder.AddTrigger("T", nullptr, "t", 0, 0), 0u);
    EXPECT_EQ(builder.FindTrigger("T", nullptr, parent), 0u);
    EXPECT_EQ(parent, 0u);
    builder.SetTriggerInvalid(1);
    EXPECT_EQ(builder.AddProcedure("P", nullptr, "p", 0), 0u);
    EXPECT_EQ(builder.FindProcedure("P", nullptr), 0u);
    builder.SetProcInvalid(1);
    EXPECT_EQ(builder.AddPackage("PKG", nullptr, "p", true), 0u);
    EXPECT_EQ(builder.FindPackage("PKG", nullptr), nullptr);
    EXPECT_EQ(builder.AddReferencedObject(1, 2, 3, 4, 40), 0u);
    EXPECT_EQ(builder.FindReferencedObject(1, 2, 3, 4, 40), 0u);
    EXPECT_EQ(builder.AddTablePartition(1, "P1"), 0u);
    EXPECT_EQ(builder.AddIndexPartition(1, "P1"), 0u);
    EXPECT_EQ(builder.AddTablePartitionColumn(1, "A", 0), 0);
    EXPECT_EQ(builder.AddIndexPartitionColumn(1, "A", 0), 0);
    EXPECT_EQ(builder.SetPartitionProperty(1, 16, 1), 0);
    EXPECT_EQ(builder.SetPartitionStringProperty(1, 15, "x"), 0);
    EXPECT_EQ(builder.AddStorageObject("S", nullptr, "s", 0), 0u);
    EXPECT_EQ(builder.FindDefault("d"), 0u);
    EXPECT_EQ(builder.FindRule("r"), 0u);
    EXPECT_EQ(builder.FindUserType("u"), 0u);
    EXPECT_EQ(builder.FindUserType(1ul), nullptr);
    EXPECT_EQ(builder.AllocKey(EKeyClass::Entity), 0u);
    EXPECT_TRUE(builder.GetPackageList().IsEmpty());
}

TEST(MisuseTest, EveryOperationBeforeInitializeDoesNothing) {
    CScratchDir dir;
    CTestBuilder builder;
    ExpectNothingHappens(builder);
    EXPECT_EQ(builder.SaveToFile(dir.File("m.vrn").c_str()), 0);
    EXPECT_TRUE(dir.Entries().empty());
}

TEST(MisuseTest, EveryOperationAfterAFailedInitializeDoesNothing) {
    CScratchDir dir;
    WriteBytes(dir.File("notes.txt"), "not a model");
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, dir.File("notes.txt").c_str()), 0);
    // Only the file is kept, to say why it was refused; no platform, no managers.
    EXPECT_EQ(builder.GetDbType(), 0);
    ASSERT_NE(builder.GetVrnFile(), nullptr);
    EXPECT_NE(std::string(builder.GetVrnFile()->GetLastError()).find("notes.txt"), std::string::npos);
    EXPECT_EQ(builder.GetNameSpaceMgr(), nullptr);
    EXPECT_EQ(builder.GetGuidMgr(), nullptr);
    EXPECT_EQ(builder.GetPropertyMgr(), nullptr);
    ExpectNothingHappens(builder);
    EXPECT_EQ(builder.SaveToFile(dir.File("m.vrn").c_str()), 0);
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"notes.txt"});
}

TEST(MisuseTest, NullTextsCountAsEmptyOrFindNothing) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    const unsigned long entity = builder.AddEntity(nullptr, nullptr, 0, 0);
    ASSERT_NE(entity, 0u);
    const unsigned long attribute = builder.AddAttribute(entity, nullptr, nullptr, -1, -1, 1, 0);
    ASSERT_NE(attribute, 0u);
    EXPECT_EQ(builder.SetAttributeStringProperty(attribute, 1, nullptr), 1);
    EXPECT_EQ(builder.SetEntityStringProperty(entity, 15, nullptr), 1);
    EXPECT_EQ(builder.SetEntityStringProperty(entity, 31, nullptr), 1);
    EXPECT_STREQ(builder.AddPrimaryKey(entity, nullptr), "");
    EXPECT_EQ(builder.AddPrimaryKeyColumn(entity, nullptr, 0), 1);  // the unnamed column
    EXPECT_NE(builder.AddIndex(entity, nullptr), 0u);
    EXPECT_NE(builder.AddForeignKey(entity, entity, nullptr, nullptr, nullptr), 0u);
    EXPECT_NE(builder.AddDefault(nullptr, nullptr, nullptr), 0u);
    EXPECT_NE(builder.AddRule(nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(builder.AddUserType(nullptr, nullptr), 0u);
    EXPECT_NE(builder.AddTrigger(nullptr, nullptr, nullptr, 0, 0), 0u);
    EXPECT_NE(builder.AddProcedure(nullptr, nullptr, nullptr, 0), 0u);
    EXPECT_NE(builder.AddPackage(nullptr, nullptr, nullptr, false), 0u);
    builder.AddCheckConstraint(nullptr, nullptr, entity, nullptr, 0);
    EXPECT_EQ(builder.AddStorageObject(nullptr, nullptr, nullptr, 0), 0u);
    EXPECT_EQ(builder.AddTablePartition(entity, nullptr), 0u);
    CScratchDir dir;
    builder.SaveToFile(dir.File("m.vrn").c_str());
    EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
}

TEST(MisuseTest, IdentifiersOfTheWrongKindFindNothingOfThatKind) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    const unsigned long entity = builder.AddEntity("T", nullptr, 0, 0);
    builder.AddAttribute(entity, "A", "int", -1, -1, 1, 0);
    const unsigned long trigger = builder.AddTrigger("TR", nullptr, "t", 0, 0);
    // An entity identifier is not an index identifier, nor a foreign key's.
    EXPECT_EQ(builder.AddIndexColumn(entity, "A", 0, 0), 0);
    EXPECT_EQ(builder.GetForeignKeyName(entity), nullptr);
    EXPECT_EQ(builder.SetIndexProperty(trigger, 34, 1), 0);
    EXPECT_EQ(builder.AddIndexPartition(entity, "P"), 0u);
    builder.SetProcInvalid(trigger);  // a procedure of that number does not exist
    EXPECT_EQ(builder.IsEntityView(0xFFFFFFFFul), 0);
    EXPECT_EQ(builder.GetEntityPtr(0x1FFFFFFFFul), nullptr);
}

TEST(MisuseTest, AnAttributeDeletedThroughAnotherEntityLeavesNoIdentifierBehind) {
    CScratchDir dir;
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    const unsigned long first = builder.AddEntity("FIRST", nullptr, 0, 0);
    const unsigned long x = builder.AddAttribute(first, "X", "int", -1, -1, 1, 0);
    const unsigned long second = builder.AddEntity("SECOND", nullptr, 0, 0);
    const unsigned long y = builder.AddAttribute(second, "Y", "int", -1, -1, 1, 0);
    const unsigned long z = builder.AddAttribute(second, "Z", "int", -1, -1, 1, 0);
    // X and Y are both attribute number 1 of their entity: deleting X through
    // SECOND takes X's identifier away and deletes Y.
    EXPECT_EQ(builder.DeleteAttribute(second, x), 1);
    for (const unsigned long gone : {x, y}) {
        SCOPED_TRACE(gone);
        EXPECT_EQ(builder.SetAttributeProperty(gone, 6, 20), 0);
        EXPECT_EQ(builder.SetAttributeStringProperty(gone, 1, "RENAMED"), 0);
        EXPECT_EQ(builder.DeleteAttribute(second, gone), 0);
        EXPECT_EQ(builder.DeleteAttribute(first, gone), 0);
    }
    EXPECT_EQ(builder.SetAttributeStringProperty(z, 1, "Z2"), 1);
    // X stays in FIRST and is saved; Y is gone.
    const auto reader = SaveAndOpen(builder, dir);
    EXPECT_EQ(reader->Column("SELECT attribute_name FROM Attribute ORDER BY row_seq"),
              (std::vector<std::string>{"X", "Z2"}));
}

TEST(MisuseTest, SavingTwiceWritesTheModelRowsAgain) {
    CScratchDir dir;
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    builder.AddEntity("T", nullptr, 0, 0);
    EXPECT_EQ(builder.SaveToFile(dir.File("a.vrn").c_str()), 1);
    EXPECT_EQ(builder.SaveToFile(dir.File("b.vrn").c_str()), 1);
    CModelFileReader reader(dir.File("b.vrn"));
    EXPECT_EQ(reader.Count("Version"), 2);
    EXPECT_EQ(reader.Count("Entity"), 2);
}

}  // namespace
