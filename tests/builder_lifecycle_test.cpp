// The model builder's life: construction, Initialize for a new or an opened
// model, the rows of the model itself, model numbers, the save, and misuse
// that must change nothing instead of faulting.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class BuilderLifecycleTest : public ::testing::Test {
protected:
    // Saves `builder` to `name` and opens the result for reading.
    std::unique_ptr<CModelFileReader> SaveAndRead(CVrnAPI& builder, const std::string& name = "model.vrn") {
        return SaveAndOpen(builder, m_dir, name);
    }

    CScratchDir m_dir;
};

TEST_F(BuilderLifecycleTest, AnEmptyModelSavesItsOwnRowsThenTheManagersTables) {
    CHostTexts texts("Modeler 4.0", "Physical Model", "Main Diagram");
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    const std::string path = m_dir.File("empty.vrn");
    auto reader = SaveAndRead(builder, "empty.vrn");

    const auto version = reader->Rows("Version");
    ASSERT_EQ(version.size(), 1u);
    EXPECT_EQ(Fields(version[0], "row_seq version_no product"), "row_seq=1 version_no=210 product=Modeler 4.0");

    const auto diagram = reader->Rows("Diagram");
    ASSERT_EQ(diagram.size(), 1u);
    EXPECT_EQ(Fields(diagram[0], "row_seq diagram_no version_no name t2 t3 format_version product"),
              "row_seq=2 diagram_no=1 version_no=210 name=Main Diagram t2= t3= format_version=1.0 product=Modeler 4.0");
    EXPECT_EQ(Fields(diagram[0], "file_path t7 display_level"), "file_path=" + path + " t7= display_level=NameOnly");
    EXPECT_LE(diagram[0].at("created"), diagram[0].at("modified"));
    EXPECT_EQ(diagram[0].at("created").size(), 19u);  // YYYY-MM-DD HH:MM:SS

    const auto model = reader->Rows("Model");
    ASSERT_EQ(model.size(), 1u);
    EXPECT_EQ(Fields(model[0], "row_seq diagram_no model_no n3 n4 n5 name"),
              "row_seq=3 diagram_no=1 model_no=1 n3=0 n4=1 n5=0 name=Physical Model");

    for (const char* table : {"Entity", "Attribute", "ForeignKey", "Defaults", "DbTrigger", "Storage_Object"})
        EXPECT_EQ(reader->Count(table), 0) << table;
    EXPECT_EQ(reader->Scalar("SELECT text FROM NameSpace"), "Modeler 4.0");
    EXPECT_EQ(reader->Count("MetaTable"), 21);
    EXPECT_GT(reader->Count("ObjectType"), 0);
    EXPECT_GT(reader->Count("PropertyValue"), 0);
    EXPECT_EQ(reader->Count("Property"), 0);
    EXPECT_EQ(reader->Scalar("SELECT value FROM FileInfo WHERE name = 'format'"), "vrn-model");
}

TEST_F(BuilderLifecycleTest, UnregisteredHostTextsLeaveTheNamesEmpty) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(1, nullptr), 1);
    auto reader = SaveAndRead(builder);
    EXPECT_EQ(reader->Scalar("SELECT product FROM Version"), "");
    EXPECT_EQ(reader->Scalar("SELECT name || '|' || product FROM Diagram"), "|");
    EXPECT_EQ(reader->Scalar("SELECT name FROM Model"), "");
    EXPECT_EQ(reader->Count("NameSpace"), 0);
}

TEST_F(BuilderLifecycleTest, ModelNumberIsOneUntilOneIsSet) {
    // The model numbers set in turn, and the number the model row gets.
    const std::pair<std::vector<unsigned long>, const char*> cases[] = {{{}, "1"}, {{7}, "7"}, {{7, 0}, "1"}};
    for (const auto& [numbers, saved] : cases) {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        for (const unsigned long number : numbers) builder.SetModelId(number);
        EXPECT_EQ(SaveAndRead(builder)->Scalar("SELECT model_no FROM Model"), saved) << numbers.size() << " set";
    }
}

// How Initialize sized the name space and object type managers.
std::string ManagerSizes(CVrnAPI& builder) {
    return "texts " + std::to_string(builder.GetNameSpaceMgr()->GetInitTextCount()) + ", hash " +
           std::to_string(builder.GetNameSpaceMgr()->GetInitHashSize()) + ", opened " +
           std::to_string(builder.GetNameSpaceMgr()->GetInitOpenedFlag()) + ", types " +
           std::to_string(builder.GetGuidMgr()->GetInitTypeCount()) + ", first added " +
           std::to_string(builder.GetGuidMgr()->GetInitFirstAddedType());
}

TEST_F(BuilderLifecycleTest, InitializeSizesTheManagersForANewModel) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(47, nullptr), 1);
    EXPECT_EQ(builder.GetDbType(), 47);
    EXPECT_EQ(ManagerSizes(builder), "texts 499, hash 499, opened 0, types 199, first added 530");
    EXPECT_NE(builder.GetPropertyMgr(), nullptr);
    EXPECT_FALSE(builder.GetVrnFile()->IsOpenedFile());
}

TEST_F(BuilderLifecycleTest, InitializeOnAFileContinuesIt) {
    CVrnAPI first;
    ASSERT_EQ(first.Initialize(34, nullptr), 1);
    const std::string path = m_dir.File("model.vrn");
    first.SaveToFile(path.c_str());

    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(8, path.c_str()), 1);
    EXPECT_EQ(builder.GetDbType(), 8);
    EXPECT_TRUE(builder.GetVrnFile()->IsOpenedFile());
    EXPECT_EQ(ManagerSizes(builder), "texts 0, hash 0, opened 1, types 0, first added 530");

    // Saved over the file it came from: the diagram row names the save path.
    builder.SaveToFile(path.c_str());
    CModelFileReader reader(path);
    EXPECT_EQ(reader.Column("SELECT file_path FROM Diagram ORDER BY row_seq"),
              (std::vector<std::string>{path, path}));
}

TEST_F(BuilderLifecycleTest, AFailedWriteOrANullPathStillAnswersOneAndLeavesNothingBehind) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    EXPECT_EQ(builder.SaveToFile(m_dir.File("missing/model.vrn").c_str()), 1);
    EXPECT_STRNE(builder.GetVrnFile()->GetLastError(), "");
    EXPECT_EQ(builder.SaveToFile(nullptr), 1);
    EXPECT_NE(std::string(builder.GetVrnFile()->GetLastError()).find("no path"), std::string::npos);
    EXPECT_TRUE(m_dir.Entries().empty());
}

TEST_F(BuilderLifecycleTest, ASecondInitializeKeepsEarlierRowsUsable) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    std::unique_ptr<CNSOutputBase> early(builder.RowObjectClassFactory(26));
    CVrnFile* firstFile = builder.GetVrnFile();
    ASSERT_EQ(builder.Initialize(8, nullptr), 1);
    EXPECT_NE(builder.GetVrnFile(), firstFile);
    EXPECT_EQ(builder.GetDbType(), 8);
    // The row made before still points at a live model file.
    EXPECT_EQ(early->m_pVrnFile, firstFile);
    static_cast<CNSOutputDefaults*>(early.get())->OutputRow();
    auto reader = SaveAndRead(builder);
    EXPECT_EQ(reader->Count("Defaults"), 0);  // it went into the replaced model, not this one
    EXPECT_EQ(reader->Count("Version"), 1);
}

TEST_F(BuilderLifecycleTest, CreatedByClassNameItWorksLikeAConstructedOne) {
    CObject* made = CRuntimeClass::FromName("CVrnAPI")->CreateObject();
    std::unique_ptr<CVrnAPI> builder(static_cast<CVrnAPI*>(made));
    ASSERT_EQ(builder->Initialize(34, nullptr), 1);
    auto reader = SaveAndRead(*builder);
    EXPECT_EQ(reader->Count("Model"), 1);
}

TEST_F(BuilderLifecycleTest, DB2SqlIdIsKeptAsACopy) {
    CVrnAPI builder;
    EXPECT_EQ(builder.GetDB2SqlId(), nullptr);
    std::string id = "PRODSCHM";
    builder.SetDB2SqlId(id.c_str());
    id[0] = 'X';
    EXPECT_STREQ(builder.GetDB2SqlId(), "PRODSCHM");
    builder.SetDB2SqlId("");
    EXPECT_EQ(builder.GetDB2SqlId(), nullptr);
    builder.SetDB2SqlId("A");
    builder.SetDB2SqlId(nullptr);
    EXPECT_EQ(builder.GetDB2SqlId(), nullptr);
}

}  // namespace
