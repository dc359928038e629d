// Target platforms and the translation of datatype names into the model's
// datatype codes.
#include <gtest/gtest.h>

#include "TestBuilder.h"
#include "builder/Platforms.h"

namespace {

// Every name the translation knows, with the code it must give (on a
// platform where TEXT has no special rule).
const std::pair<const char*, const char*> kExpectedCodes[] = {
    {"BINARY", "BIN"},         {"BIT", "BIT"},
    {"BLOB", "PIC"},           {"CHAR", "CH"},
    {"CLOB", "DTX"},           {"DEC", "DC"},
    {"DECIMAL", "DC"},         {"DATE", "D"},
    {"DATETIME", "DT"},        {"DOUBLE", "DBL"},
    {"DOUBLE PRECISION", "DBL"}, {"FLOAT", "FLT"},
    {"INTEGER", "INT"},        {"INT", "INT"},
    {"INTERVAL", "ITV"},       {"IMAGE", "PIC"},
    {"LONG", "LVA"},           {"LONG BINARY", "LBN"},
    {"LONG RAW", "LBN"},       {"LONG VARCHAR", "LVA"},
    {"LONG VARBINARY", "LVB"}, {"MLSLABEL", "MLS"},
    {"MONEY", "MN"},           {"NCHAR", "CHN"},
    {"NCLOB", "TX"},           {"NVARCHAR2", "VAN"},
    {"NUMERIC", "NUM"},        {"NUMBER", "NUM"},
    {"RAW", "BIN"},            {"REAL", "SFL"},
    {"ROWID", "ROW"},          {"SMALLINT", "SI"},
    {"SMALLDATETIME", "SDT"},  {"SMALLMONEY", "SMN"},
    {"TIME", "T"},             {"TIMESTAMP", "TS"},
    {"TINYINT", "TI"},         {"VARBINARY", "VBN"},
    {"VARCHAR", "VAR"},        {"VARCHAR2", "VAR"},
    {"NVARCHAR", "VAN"},       {"NTEXT", "TX"},
    {"uniqueidentifier", "UID"}, {"BIGINT", "LIN"},
    {"sql_variant", "VNT"},    {"LONG VARGRAPHIC", "TX"},
    {"VARGRAPHIC", "VAN"},     {"GRAPHIC", "CHN"},
    {"CHARACTER", "CH"},       {"CHAR VARYING", "VAR"},
    {"CHARACTER VARYING", "VAR"}, {"NATIONAL CHAR", "CHN"},
    {"NATIONAL CHARACTER", "CHN"}, {"NCHAR VARYING", "VAN"},
    {"NATIONAL CHAR VARYING", "VAN"}, {"NATIONAL CHARACTER VARYING", "VAN"},
};

std::string Lower(const char* text) {
    std::string lower(text);
    for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    return lower;
}

TEST(DatatypeNameTest, EveryKnownNameGivesItsCodeInAnyLetterCase) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(41, nullptr), 1);
    for (const auto& [name, code] : kExpectedCodes) {
        SCOPED_TRACE(name);
        EXPECT_STREQ(builder.GetORVDatatype(name), code);
        EXPECT_STREQ(builder.GetORVDatatype(Lower(name).c_str()), code);
    }
    EXPECT_EQ(kDatatypeNameCount, 57);
    EXPECT_EQ(kDatatypeCodeCount, 37);
}

TEST(DatatypeNameTest, TextIsLongTextExceptOnOracle) {
    for (int platform = -3; platform <= 60; ++platform) {
        SCOPED_TRACE(platform);
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(platform, nullptr), 1);
        const bool oracle = platform == 8 || platform == 34 || platform == 47;
        EXPECT_STREQ(builder.GetORVDatatype("TEXT"), oracle ? "TX" : "DTX");
        EXPECT_STREQ(builder.GetORVDatatype("text"), oracle ? "TX" : "DTX");
        EXPECT_STREQ(builder.GetORVDatatype("NText"), "TX");
    }
}

TEST(DatatypeNameTest, OnlyWholeBareNamesAreKnown) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(1, nullptr), 1);
    for (const char* name : {"", "VARCHAR(10)", "VARCHAR ", " INT", "DOUBLEPRECISION", "NUMBER(5,2)", "XML", "MEM"})
        EXPECT_EQ(builder.GetORVDatatype(name), nullptr) << "'" << name << "'";
    EXPECT_EQ(builder.GetORVDatatype(nullptr), nullptr);
}

TEST(DatatypeNameTest, AnswersAreTextsOfTheLibraryThatOutliveTheCall) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(1, nullptr), 1);
    std::string name = "integer";
    const char* code = builder.GetORVDatatype(name.c_str());
    name = "changed";
    EXPECT_STREQ(code, "INT");
    EXPECT_EQ(builder.GetORVDatatype("INT"), builder.GetORVDatatype("INTEGER"));
}

TEST(PlatformTableTest, HasOneEntryPerCodeWithFiveUnused) {
    ASSERT_EQ(kPlatformCount, 55);
    for (int code = 0; code < kPlatformCount; ++code) {
        SCOPED_TRACE(code);
        EXPECT_EQ(kPlatforms[code].code, code);
        EXPECT_EQ(kPlatforms[code].name[0] == '\0', code >= 49 && code <= 53);
    }
    EXPECT_STREQ(kPlatforms[34].name, "Oracle 8.x");
    EXPECT_STREQ(kPlatforms[46].name, "IBM DB2 UDB for OS/390 7.x");
    EXPECT_STREQ(kPlatforms[54].name, "Sybase ASE 12.5");
}

TEST(PlatformTableTest, OnlySybaseAndNewerSqlServerDefaultToNotNull) {
    const std::set<int> notNullPlatforms = {2, 3, 11, 33, 36, 37, 41, 43, 54};
    for (int code = -2; code <= 60; ++code)
        EXPECT_EQ(PlatformIsNullableByDefault(code), notNullPlatforms.count(code) == 0) << code;
}

TEST(PlatformTableTest, UnlistedPlatformCodesAreKept) {
    CVrnAPI builder;
    EXPECT_EQ(builder.Initialize(60, nullptr), 1);
    EXPECT_EQ(builder.GetDbType(), 60);
    CVrnAPI negative;
    EXPECT_EQ(negative.Initialize(-7, nullptr), 1);
    EXPECT_EQ(negative.GetDbType(), -7);
}

}  // namespace
