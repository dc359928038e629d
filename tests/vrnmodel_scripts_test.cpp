// The client's script reading: encodings, tokens, and where statements end
// in each style of script.
#include <gtest/gtest.h>

#include "SqlLexer.h"
#include "SqlScript.h"
#include "SqlSource.h"

namespace {

std::vector<std::string> Statements(const std::string& text) {
    std::vector<std::string> unresolved;
    std::vector<std::string> texts;
    for (const CSqlStatement& statement : SplitScript(PrepareScriptText(text, {}, unresolved)).statements)
        texts.push_back(statement.text);
    return texts;
}

std::vector<std::string> TransactSqlStatements(const std::string& text) {
    std::vector<std::string> texts;
    for (const CSqlStatement& statement : SplitScript(text, true).statements) texts.push_back(statement.text);
    return texts;
}

// Where statements end, in each style of script: the texts of the
// statements, read as T-SQL or with the terminator the script shows.
TEST(SqlScriptTest, EachStyleOfScriptEndsItsStatementsWhereItsToolDoes) {
    using Texts = std::vector<std::string>;
    const std::string bare = "create table a (x int)\ncreate table b (y int,\n  z int)\ncreate index ix on a (x)\n";
    const Texts bareStatements = {"create table a (x int)", "create table b (y int,\n  z int)",
                                  "create index ix on a (x)"};
    const struct {
        const char* style;
        bool transactSql;
        std::string script;
        Texts statements;
    } cases[] = {
        // Install scripts of SQL Server and Sybase applications write
        // statement after statement, without GO or ";"; with no terminator
        // at all, that is the only sensible reading of any script.
        {"T-SQL without terminators", true, bare, bareStatements},
        {"no terminator at all", false, bare, bareStatements},
        // With ";" in the script, only T-SQL also ends statements at the next one's start.
        {"T-SQL with a semicolon", true, "create table a (x int)\ninsert into a values (1);\n",
         {"create table a (x int)", "insert into a values (1)"}},
        {"semicolons", false, "create table a (x int)\ninsert into a values (1);\n",
         {"create table a (x int)\ninsert into a values (1)"}},
        // A view's SELECT after AS is part of the view.
        {"T-SQL view", true, "create view v as\nselect x from a\ncreate table c (d int)\n",
         {"create view v as\nselect x from a", "create table c (d int)"}},
        {"T-SQL batches", false,
         "SET NOCOUNT ON\nGO\nexecute sp_addtype id, 'varchar(11)'\nexecute sp_addtype tid, 'varchar(6)'\n"
         "create table t (a int,\n b int)\ninsert t values (1, 2)\nGO\ncreate procedure p as\nselect 1\nselect 2\nGO\n",
         {"SET NOCOUNT ON", "execute sp_addtype id, 'varchar(11)'", "execute sp_addtype tid, 'varchar(6)'",
          "create table t (a int,\n b int)", "insert t values (1, 2)", "create procedure p as\nselect 1\nselect 2"}},
        // db2 -td@: announced, and ";" stays inside the procedure's body.
        {"announced @", false,
         "--#SET TERMINATOR @\nCREATE TABLE A (ID INT NOT NULL, PRIMARY KEY (ID))@\n"
         "CREATE PROCEDURE P() BEGIN DECLARE X INT; SET X = 1; END@\n",
         {"CREATE TABLE A (ID INT NOT NULL, PRIMARY KEY (ID))",
          "CREATE PROCEDURE P() BEGIN DECLARE X INT; SET X = 1; END"}},
        // db2 -td~ and -td!: not announced, seen from the ends of the lines.
        {"unannounced ~", false, "CREATE TABLE A (X INT) IN \"TS1\" ~\nCREATE TABLE B (Y INT)\n  IN \"TS2\" ~\n",
         {"CREATE TABLE A (X INT) IN \"TS1\"", "CREATE TABLE B (Y INT)\n  IN \"TS2\""}},
        {"unannounced !", false, "CREATE TABLE A (X INT)!\nCREATE TABLE B (Y INT)!\n",
         {"CREATE TABLE A (X INT)", "CREATE TABLE B (Y INT)"}},
        // Announced terminators change where the script says so.
        {"announced twice", false,
         "--#SET TERMINATOR @\nCREATE TABLE A (X INT)@\n--#SET TERMINATOR ;\n"
         "CREATE TABLE B (Y INT);\nCREATE TABLE C (Z INT);\n",
         {"CREATE TABLE A (X INT)", "CREATE TABLE B (Y INT)", "CREATE TABLE C (Z INT)"}},
        // A ";" script keeps ";", whatever a line ends with now and then.
        {"semicolons and a ~", false,
         "CREATE TABLE A (X INT);\nCREATE TABLE B (Y INT) IN TS ~\nCREATE TABLE C (Z INT);\n",
         {"CREATE TABLE A (X INT)", "CREATE TABLE B (Y INT) IN TS ~\nCREATE TABLE C (Z INT)"}},
        // SQL*Plus: its commands are no statements, a block ends at a "/" line.
        {"SQL*Plus", false,
         "REM it's a comment with a quote\nPROMPT don't stop\ncreate table t (a number);\n"
         "create or replace package body p as\n procedure x is begin null; end;\nend p;\n/\n"
         "create view v as select * from t;\n",
         {"create table t (a number)", "create or replace package body p as\n procedure x is begin null; end;\nend p;",
          "create view v as select * from t"}},
        {"SQL*Plus words as column names", false,
         "PROMPT creating t\ncreate table t (\n  id number,\n  prompt varchar2(10),\n  rem number\n);\nREM done\n",
         {"create table t (\n  id number,\n  prompt varchar2(10),\n  rem number\n)"}},
        // BEGIN ... END blocks hold their semicolons.
        {"BEGIN ATOMIC", false,
         "CREATE TRIGGER tr BEFORE INSERT ON t FOR EACH ROW BEGIN ATOMIC\n IF 1 = 1 THEN SET x = 1; END IF;\n"
         " SET y = CASE WHEN a THEN 1 ELSE 2 END;\nEND;\n"
         "CREATE TABLE u (a INT);\nCREATE FUNCTION f () RETURNS INT RETURN 1;\n",
         {"CREATE TRIGGER tr BEFORE INSERT ON t FOR EACH ROW BEGIN ATOMIC\n IF 1 = 1 THEN SET x = 1; END IF;\n"
          " SET y = CASE WHEN a THEN 1 ELSE 2 END;\nEND",
          "CREATE TABLE u (a INT)", "CREATE FUNCTION f () RETURNS INT RETURN 1"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.style);
        EXPECT_EQ(c.transactSql ? TransactSqlStatements(c.script) : Statements(c.script), c.statements);
    }
}

TEST(SqlSourceTest, DecodesByteOrderMarksAndLineEnds) {
    std::string text, error;
    ASSERT_TRUE(DecodeSourceText("\xEF\xBB\xBF" "a\r\nb\rc", text, error));
    EXPECT_EQ(text, "a\nb\nc");
    ASSERT_TRUE(DecodeSourceText(std::string("\xFF\xFE" "G\0O\0\r\0\n\0\xE9\0", 12), text, error));
    EXPECT_EQ(text, "GO\n\xC3\xA9");
    ASSERT_TRUE(DecodeSourceText(std::string("\xFE\xFF\0x\xD8\x3D\xDE\x00", 8), text, error));
    EXPECT_EQ(text, "x\xF0\x9F\x98\x80");
    EXPECT_FALSE(DecodeSourceText(std::string("\xFF\xFE" "a", 3), text, error));
    // Told the text is UTF-8, bytes that look like a byte order mark stay bytes.
    ASSERT_TRUE(DecodeSourceText(std::string("\xFF\xFE" "a", 3), text, error, false));
    EXPECT_EQ(text, "\xFF\xFE" "a");
    EXPECT_FALSE(DecodeSourceText(std::string("\xFF\xFE\x00\xDC", 4), text, error));
    EXPECT_FALSE(ReadSourceText("/no/such/file.sql", text, error));
    EXPECT_NE(error.find("/no/such/file.sql"), std::string::npos);
}

TEST(SqlLexerTest, ReadsEveryQuotingAndDropsComments) {
    const auto tokens = Tokenize("select [a b], \"c\"\"d\", `e`, 'it''s', N'nat' -- note\n/* x */ 64K 1.5e3;");
    std::vector<std::string> texts;
    for (const CToken& token : tokens) texts.push_back(token.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"select", "a b", ",", "c\"d", ",", "e", ",", "it's", ",", "nat", "64K",
                                               "1.5e3", ";"}));
    EXPECT_EQ(tokens.at(1).kind, CTokenKind::QuotedIdent);
    EXPECT_EQ(tokens.at(9).kind, CTokenKind::String);
    EXPECT_EQ(tokens.at(10).line, 2);
    EXPECT_TRUE(tokens.at(10).firstOnLine);
}

TEST(SqlLexerTest, UnterminatedTextEndsWithTheScript) {
    const auto tokens = Tokenize("create table t (a int) 'never closed\n;");
    ASSERT_FALSE(tokens.empty());
    EXPECT_EQ(tokens.back().kind, CTokenKind::String);
    EXPECT_TRUE(Tokenize("/* open comment").empty());
}

TEST(SqlScriptTest, LineCommandsEndWithTheirLine) {
    const CSqlScript script = SplitScript("SET CURRENT SQLID='ADMIN';\nCREATE TABLE t (a INT);\n~\nCOMMIT;\n");
    ASSERT_EQ(script.statements.size(), 3u);
    EXPECT_TRUE(script.statements.at(0).lineCommand);
    EXPECT_FALSE(script.statements.at(1).lineCommand);
    EXPECT_EQ(script.statements.at(1).line, 2);
}

TEST(SqlScriptTest, TemplateTagsAreReplaced) {
    std::vector<std::string> unresolved;
    const std::string text =
        PrepareScriptText("CREATE TABLE &$DBSCH..T (A INT) IN &$DBNAME..TS;\n", {{"DBSCH", "PROD"}}, unresolved);
    EXPECT_EQ(text, "CREATE TABLE PROD.T (A INT) IN DBNAME.TS;\n");
    EXPECT_EQ(unresolved, std::vector<std::string>{"DBNAME"});
}

}  // namespace
