// The row factory: every row type makes its class, tied to the builder's
// model file and managers; unknown row types make nothing.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

struct CRowTypeCase {
    int rowType;
    const char* className;
    std::function<bool(CNSOutputBase*)> isExpectedClass;
};

template <class T>
std::function<bool(CNSOutputBase*)> Is() {
    return [](CNSOutputBase* row) { return dynamic_cast<T*>(row) != nullptr; };
}

const std::vector<CRowTypeCase>& RowTypeCases() {
    static const std::vector<CRowTypeCase> cases = {
        {12, "CVrnApiAttribute", Is<CVrnApiAttribute>()},
        {14, "CNSOutputCheckConstraints", Is<CNSOutputCheckConstraints>()},
        {23, "CNSOutputTrigger", Is<CNSOutputTrigger>()},
        {24, "CNSOutputPackage", Is<CNSOutputPackage>()},
        {26, "CNSOutputDefaults", Is<CNSOutputDefaults>()},
        {29, "CNSOutputDiagram", Is<CNSOutputDiagram>()},
        {40, "CVrnApiEntity", Is<CVrnApiEntity>()},
        {46, "CVrnApiForeignKey", Is<CVrnApiForeignKey>()},
        {47, "CNSOutputForeignKeyColumn", Is<CNSOutputForeignKeyColumn>()},
        {53, "CNSOutputIndexColumn", Is<CNSOutputIndexColumn>()},
        {54, "CVrnApiIndex", Is<CVrnApiIndex>()},
        {55, "CNSOutputIndexStorage", Is<CNSOutputIndexStorage>()},
        {65, "CNSOutputModel", Is<CNSOutputModel>()},
        {75, "CNSOutputPrimaryKey", Is<CNSOutputPrimaryKey>()},
        {76, "CNSOutputProc", Is<CNSOutputProc>()},
        {82, "CNSOutputReferencedObject", Is<CNSOutputReferencedObject>()},
        {86, "CNSOutputRules", Is<CNSOutputRules>()},
        {89, "CNSOutputStorageObj", Is<CNSOutputStorageObj>()},
        {100, "CNSOutputTableStorage", Is<CNSOutputTableStorage>()},
        {104, "CNSOutputUserDatatype", Is<CNSOutputUserDatatype>()},
        {110, "CNSOutputVersion", Is<CNSOutputVersion>()},
    };
    return cases;
}

TEST(RowFactoryTest, EveryRowTypeMakesItsClassTiedToTheBuildersManagersIfAny) {
    // Rows made before Initialize have no managers to refer to.
    for (const bool initialized : {true, false}) {
        CTestBuilder builder;
        if (initialized) {
            ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        }
        ASSERT_EQ(builder.GetVrnFile() != nullptr, initialized);
        for (const CRowTypeCase& c : RowTypeCases()) {
            SCOPED_TRACE(testing::Message() << "row type " << c.rowType << " (" << c.className << ")"
                                            << (initialized ? "" : " before Initialize"));
            std::unique_ptr<CNSOutputBase> row(builder.RowObjectClassFactory(c.rowType));
            ASSERT_NE(row, nullptr);
            EXPECT_TRUE(c.isExpectedClass(row.get()));
            EXPECT_EQ(row->m_pVrnFile, builder.GetVrnFile());
            EXPECT_EQ(row->m_pNameSpaceMgr, builder.GetNameSpaceMgr());
            EXPECT_EQ(row->m_pGuidMgr, builder.GetGuidMgr());
        }
        if (!initialized) {
            // Writing such a row has nowhere to go and must not fault.
            std::unique_ptr<CNSOutputBase> version(builder.RowObjectClassFactory(110));
            static_cast<CNSOutputVersion*>(version.get())->OutputRow();
            EXPECT_EQ(builder.GetVrnFile(), nullptr);
        }
    }
}

TEST(RowFactoryTest, UnknownRowTypesMakeNothing) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    for (int rowType : {-1, 0, 11, 13, 15, 25, 41, 99, 109, 111, 1000})
        EXPECT_EQ(builder.RowObjectClassFactory(rowType), nullptr) << rowType;
}

TEST(RowFactoryTest, TriggerRowsStartWithTrailingOneAndEmptyTexts) {
    CTestBuilder builder;
    std::unique_ptr<CNSOutputBase> row(builder.RowObjectClassFactory(23));
    auto* trigger = static_cast<CNSOutputTrigger*>(row.get());
    EXPECT_EQ(trigger->m_trailing, 1);
    for (const CString* text : {&trigger->m_owner, &trigger->m_name, &trigger->m_t3, &trigger->m_sqlText})
        EXPECT_TRUE(text->IsEmpty());
    EXPECT_EQ(trigger->m_triggerKey, 0u);
}

TEST(RowFactoryTest, LibraryObjectsRememberTheBuilderThatMadeThem) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(39, nullptr), 1);
    std::unique_ptr<CNSOutputBase> attribute(builder.RowObjectClassFactory(12));
    std::unique_ptr<CNSOutputBase> entity(builder.RowObjectClassFactory(40));
    std::unique_ptr<CNSOutputBase> foreignKey(builder.RowObjectClassFactory(46));
    std::unique_ptr<CNSOutputBase> index(builder.RowObjectClassFactory(54));
    EXPECT_EQ(static_cast<CVrnApiAttribute*>(attribute.get())->m_pOwner, &builder);
    EXPECT_EQ(static_cast<CVrnApiEntity*>(entity.get())->m_pOwner, &builder);
    EXPECT_EQ(static_cast<CVrnApiForeignKey*>(foreignKey.get())->m_pOwner, &builder);
    EXPECT_EQ(static_cast<CVrnApiIndex*>(index.get())->m_pOwner, &builder);
}

TEST(RowFactoryTest, EntitiesAndIndexesComeWithStorageRowsNotGivenAnyParameter) {
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    std::unique_ptr<CNSOutputBase> made(builder.RowObjectClassFactory(40));
    auto* entity = static_cast<CVrnApiEntity*>(made.get());
    ASSERT_NE(entity->m_pTableStorage, nullptr);
    EXPECT_EQ(entity->m_pTableStorage->m_pVrnFile, builder.GetVrnFile());
    for (std::int32_t slot : entity->m_pTableStorage->m_params) EXPECT_EQ(slot, -1);
    EXPECT_EQ(entity->m_isValidView, 1);
    EXPECT_EQ(entity->m_pPrimaryKey, nullptr);

    std::unique_ptr<CNSOutputBase> madeIndex(builder.RowObjectClassFactory(54));
    auto* index = static_cast<CVrnApiIndex*>(madeIndex.get());
    ASSERT_NE(index->m_pStorage, nullptr);
    EXPECT_EQ(index->m_pStorage->m_pGuidMgr, builder.GetGuidMgr());
    for (std::int32_t slot : index->m_pStorage->m_params) EXPECT_EQ(slot, -1);
}

TEST(RowFactoryTest, ObjectsMadeWithoutABuilderHaveNoStorageRow) {
    CVrnApiEntity entity;
    EXPECT_EQ(entity.m_pTableStorage, nullptr);
    EXPECT_EQ(entity.m_pOwner, nullptr);
    CVrnApiIndex index;
    EXPECT_EQ(index.m_pStorage, nullptr);
    CVrnApiForeignKey foreignKey;
    EXPECT_EQ(foreignKey.m_pOwner, nullptr);
    EXPECT_EQ(foreignKey.m_valid, 1);
}

TEST(RowFactoryTest, ForeignKeysStartIdentifyingWithoutReferentialActions) {
    CVrnApiForeignKey foreignKey;
    const char* const expected[CNSOutputForeignKey::kTextCount] = {"I", "", "P", "P", "O", "M", "M", "", "",
                                                                   "",  "", "N", "N", "N", "N", "N", "N"};
    for (int i = 0; i < CNSOutputForeignKey::kTextCount; ++i)
        EXPECT_STREQ(foreignKey.m_texts[i], expected[i]) << "text " << i + 1;
    EXPECT_EQ(foreignKey.m_nextColumnSeq, 1);
    EXPECT_EQ(foreignKey.m_pkColumnPosition, nullptr);
}

TEST(RowFactoryTest, RowsWrittenThroughTheFactoryReachTheSavedFile) {
    CScratchDir dir;
    CTestBuilder builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    {
        std::unique_ptr<CNSOutputBase> made(builder.RowObjectClassFactory(54));
        auto* index = static_cast<CVrnApiIndex*>(made.get());
        index->m_indexKey = 3;
        index->m_keyType.Set(0, CVrnApiIndex::KEYTYPE_PK);
        index->m_indexName = "XPKITEM";
        index->OutputRow();
    }  // deleted right after its output: the record stays
    const std::string path = dir.File("model.vrn");
    builder.SaveToFile(path.c_str());
    CModelFileReader reader(path);
    const auto rows = reader.Rows("Indexes");
    ASSERT_EQ(rows.size(), 1u);
    // Its row comes before the model's own rows, which come at save.
    EXPECT_EQ(Fields(rows.at(0), "index_key key_type index_name row_seq"),
              "index_key=3 key_type=P index_name=XPKITEM row_seq=1");
    EXPECT_EQ(reader.Scalar("SELECT count(*) FROM NameSpace WHERE text = 'P'"), "1");
}

}  // namespace
