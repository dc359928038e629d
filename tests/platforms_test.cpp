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
        EXPECT_EQ(builder.GetDbType(), platform);  // kept even where the table has no such platform
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
    for (int code = -2; code <= 60; ++code) {
        SCOPED_TRACE(code);
        const bool nullable = notNullPlatforms.count(code) == 0;
        EXPECT_EQ(PlatformIsNullableByDefault(code), nullable);
        CVrnAPI builder;
        builder.Initialize(code, nullptr);
        EXPECT_EQ(builder.GetNullableDefault(), nullable ? 1 : 0);
    }
}

TEST(PlatformTableTest, EachRuleHoldsOnExactlyItsPlatforms) {
    // The platforms each rule of the builder names, one list per rule.
    const std::pair<EPlatformRule, std::set<int>> rules[] = {
        {kRuleOracleTypes, {8, 34, 47}},
        {kRuleUnsizedNumberIsZero, {48}},
        {kRuleConsolidatePrimaryKey, {32, 38, 39, 40, 44, 46}},
        {kRuleKeepNamedPrimaryKey, {39, 40, 46}},
        {kRuleReverseKeyIndexes, {34, 47}},
        {kRuleAnyBufferPoolName, {39, 40, 46}},
    };
    for (const auto& [rule, codes] : rules)
        for (int code = -2; code <= 60; ++code)
            EXPECT_EQ(PlatformHasRule(code, rule), codes.count(code) == 1) << "rule " << rule << ", code " << code;
}

TEST(PlatformTableTest, FamiliesGroupTheDialects) {
    const std::pair<EPlatformFamily, std::set<int>> families[] = {
        {EPlatformFamily::TransactSql, {1, 2, 3, 11, 33, 36, 37, 41, 43, 54}},
        {EPlatformFamily::Oracle, {8, 34, 47}},
        {EPlatformFamily::Db2Luw, {9, 32, 38, 44}},
        {EPlatformFamily::Db2ZOs, {39, 40, 46}},
        {EPlatformFamily::As400, {48}},
    };
    for (int code = 0; code < kPlatformCount; ++code) {
        EPlatformFamily expected = EPlatformFamily::Other;
        for (const auto& [family, codes] : families)
            if (codes.count(code)) expected = family;
        EXPECT_EQ(FindPlatform(code)->family, expected) << code;
    }
    EXPECT_EQ(FindPlatform(-1), nullptr);
    EXPECT_EQ(FindPlatform(55), nullptr);
}

TEST(PlatformTableTest, CommandLineNamesFindTheirPlatform) {
    const std::pair<const char*, int> names[] = {
        {"oracle", 47}, {"ORACLE9", 47}, {"oracle8", 34}, {"oracle7", 8},  {"sqlserver", 41}, {"MsSql", 41},
        {"sybase", 54}, {"db2", 44},     {"db2luw", 44},  {"db2zos", 46}, {"os390", 46},     {"as400", 48},
        {"unknown", 0}, {"sqlite", 0},
    };
    for (const auto& [name, code] : names) {
        ASSERT_NE(FindPlatformByName(name), nullptr) << name;
        const CPlatformInfo* platform = FindPlatformByName(name);
        ASSERT_NE(platform, nullptr) << name;
        EXPECT_EQ(platform->code, code) << name;
    }
    for (const char* unknown : {"", "oracle 8", "db", "db2 ", "Oracle 9i", "postgres"})
        EXPECT_EQ(FindPlatformByName(unknown), nullptr) << unknown;
    EXPECT_EQ(FindPlatformByName(nullptr), nullptr);
}

}  // namespace
