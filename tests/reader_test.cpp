// The model reader on files that are not quite models: a file that is not a
// model is refused with the library's reason. And the type name table the
// reader's outputs spell datatypes with. (A model read back field by field is
// in reader_compare_test.cpp, on the model the comparison uses.)
#include <gtest/gtest.h>

#include <set>
#include <string>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "ModelFileReader.h"

namespace {

TEST(ReaderRefusalTest, FilesThatAreNotModelsAreRefusedWithTheLibrarysReason) {
    CScratchDir dir;
    CModel model;
    std::string error;
    EXPECT_FALSE(ReadModelFile(dir.File("absent.vrn"), model, error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    WriteBytes(dir.File("text.vrn"), "create table t (a int);\n");
    EXPECT_FALSE(ReadModelFile(dir.File("text.vrn"), model, error));
    EXPECT_NE(error.find("not an SQLite database"), std::string::npos) << error;
    ExecOnFile(dir.File("other.db"), "CREATE TABLE t (a INTEGER)");
    EXPECT_FALSE(ReadModelFile(dir.File("other.db"), model, error));
    EXPECT_NE(error.find("an SQLite database that is not a model"), std::string::npos) << error;
    // A model with a page overwritten by noise.
    {
        CVrnAPI builder;
        builder.Initialize(41, nullptr);
        for (int i = 0; i < 50; ++i) builder.AddEntity(("T" + std::to_string(i)).c_str(), nullptr, 0, 0);
        builder.SaveToFile(dir.File("damaged.vrn").c_str());
    }
    std::string bytes = ReadBytes(dir.File("damaged.vrn"));
    ASSERT_GT(bytes.size(), 8192u);
    for (std::size_t i = 4096; i < 8192; ++i) bytes[i] = static_cast<char>(i * 7);
    WriteBytes(dir.File("damaged.vrn"), bytes);
    EXPECT_FALSE(ReadModelFile(dir.File("damaged.vrn"), model, error));
    EXPECT_NE(error.find("damaged"), std::string::npos) << error;
}

TEST(ReaderRefusalTest, AFileWithoutAPlatformSaysSo) {
    CScratchDir dir;
    CVrnAPI builder;
    builder.Initialize(34, nullptr);
    builder.SaveToFile(dir.File("old.vrn").c_str());
    ExecOnFile(dir.File("old.vrn"), "DELETE FROM FileInfo WHERE name = 'platform'");
    CModel model;
    std::string error;
    ASSERT_TRUE(ReadModelFile(dir.File("old.vrn"), model, error)) << error;
    EXPECT_FALSE(model.hasPlatform);
}

// The type name table, walked: every datatype code the builder can give has
// a spelling in every dialect, and the spellings take the arguments they say.
TEST(TypeNamesTest, EveryDatatypeCodeHasASpellingInEveryDialect) {
    std::set<std::string> codes;
    for (int i = 0; i < kDatatypeCodeCount; ++i) codes.insert(kDatatypeCodes[i]);
    std::set<std::string> named;
    for (int i = 0; i < kTypeNameCount; ++i) {
        named.insert(kTypeNames[i].code);
        for (const CTypeSpelling& spelling : kTypeNames[i].spellings) {
            ASSERT_NE(spelling.name, nullptr) << kTypeNames[i].code;
            EXPECT_NE(std::string(spelling.name), "") << kTypeNames[i].code;
            // A name with its own parentheses takes no more arguments, unless it marks where they go.
            const std::string name = spelling.name;
            if (name.find('(') != std::string::npos && name.find("()") == std::string::npos) {
                EXPECT_EQ(spelling.arguments, ETypeArguments::None) << name;
            }
        }
    }
    EXPECT_EQ(named, codes);
}

TEST(TypeNamesTest, TypesReadAsTheirPlatformWritesThem) {
    const struct {
        int platform;
        const char* code;
        int width, scale;
        const char* expected;
    } cases[] = {
        {41, "SI", 10, 0, "smallint"},
        {41, "DT", 10, 0, "datetime"},
        {41, "DTX", 10, 0, "text"},
        {41, "NUM", 10, 2, "numeric(10,2)"},
        {41, "VAR", 40, 0, "varchar(40)"},
        {54, "VAN", 12, 0, "nvarchar(12)"},
        {47, "NUM", 10, 2, "NUMBER(10,2)"},
        {34, "NUM", 0, 0, "NUMBER"},
        {47, "VAR", 30, 0, "VARCHAR2(30)"},
        {44, "VBN", 16, 0, "VARCHAR(16) FOR BIT DATA"},
        {46, "DC", 7, 0, "DECIMAL(7)"},
        {46, "DC", 7, 1, "DECIMAL(7,1)"},
        {41, "VAR", 40, 1, "varchar(40)"},  // a scale is written only where the type takes one
        {48, "CHN", 4, 0, "GRAPHIC(4)"},
        {0, "INT", 10, 0, "INTEGER"},
        {60, "DBL", 0, 0, "DOUBLE PRECISION"},
        {0, "XYZ", 5, 0, "XYZ"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SqlTypeName(TypeDialectOf(c.platform), c.code, c.width, c.scale), c.expected)
            << c.platform << " " << c.code;
}

TEST(TypeNamesTest, GenericNamesReadBackAsTheirOwnCode) {
    // The generic dialect writes the names the model itself knows: for every
    // code that some datatype name gives, its spelling gives it back.
    std::set<std::string> reachable;
    for (int i = 0; i < kDatatypeNameCount; ++i) reachable.insert(kDatatypeCodes[kDatatypeNames[i].codeIndex]);
    ASSERT_EQ(reachable.count("MEM"), 0u);  // MEM and UNK are reached by no name
    for (int i = 0; i < kTypeNameCount; ++i) {
        const std::string code = kTypeNames[i].code;
        if (!reachable.count(code)) continue;
        const std::string name = kTypeNames[i].spellings[static_cast<int>(ETypeDialect::Generic)].name;
        const char* back = TranslateDatatypeName(name.c_str(), 0);
        ASSERT_NE(back, nullptr) << name;
        EXPECT_STREQ(back, code.c_str()) << name;
    }
}

}  // namespace
