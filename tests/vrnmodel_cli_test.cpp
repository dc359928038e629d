// The command line as people expect it: help for every command, a version,
// a short usage line on a usage error, and a message that names the problem
// for every kind of wrong input.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "CommandLineTest.h"
#include "ModelFileReader.h"

namespace {

constexpr auto npos = std::string::npos;

class CliTest : public CommandLineTest {
protected:
    void SetUp() override {
        WriteBytes(m_dir.File("ok.sql"), "create table t (a int);\n");
        WriteBytes(m_dir.File("empty.sql"), "");
        WriteBytes(m_dir.File("picture.png"), std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
        ExecOnFile(m_dir.File("other.db"), "CREATE TABLE customers (id INTEGER)");
    }
};

TEST_F(CliTest, EveryCommandHasItsHelpAndTheProgramItsVersion) {
    for (const char* command : {"import", "show", "diagram"}) {
        SCOPED_TRACE(command);
        ASSERT_EQ(Run(std::string(command) + " --help"), 0);
        EXPECT_EQ(Out().rfind(std::string("usage: vrnmodel ") + command, 0), 0u) << Out();
        ASSERT_EQ(Run(std::string("help ") + command), 0);
        EXPECT_EQ(Out().rfind(std::string("usage: vrnmodel ") + command, 0), 0u) << Out();
    }
    ASSERT_EQ(Run("import --help"), 0);
    EXPECT_NE(Out().find("Platform names: unknown (0), sqlite (0)"), npos) << Out();
    ASSERT_EQ(Run("--version"), 0);
    EXPECT_EQ(Out().rfind("vrnmodel 0.", 0), 0u) << Out();
    ASSERT_EQ(Run("--help"), 0);
    EXPECT_NE(Out().find("vrnmodel COMMAND --help"), npos) << Out();
}

struct CMistake {
    const char* arguments;  // {OK}, {EMPTY}, {PNG}, {OTHER}, {DIR}, {NOSUCH} and {M} stand for the test's files
    int status;
    const char* says;
};

TEST_F(CliTest, EachMistakeGetsItsOwnMessage) {
    const CMistake mistakes[] = {
        {"frobnicate", 2, "unknown command 'frobnicate'"},
        {"import {OK} -o", 2, "-o needs a value"},
        {"import {OK} -o {M} --define", 2, "--define needs a value"},
        {"import {OK} -o {M} --model-id 0", 2, "--model-id needs a number from 1 to 4294967295"},
        {"import {OK} -o {M} --model-id 4294967297", 2, "--model-id needs a number from 1 to 4294967295"},
        {"import {OK} -o {M} --platform 4294967337", 2, "unknown platform '4294967337'"},
        {"show -o -h {OK}", 1, "it is a text file"},  // -h as the value of -o is a file name, not a request for help
        {"import {OK}", 2, "no model file given"},
        {"import {OK} -o {M} --platform 50", 2, "unknown platform '50'; the platform names are unknown (0)"},
        {"import {OK} -o {M} --platform 999", 2, "unknown platform '999'"},
        {"import {OK} -o {M} --platform postgres", 2, "oracle (47)"},
        {"import {DIR} -o {M}", 1, "is a directory, not a DDL script or an SQLite database"},
        {"import {EMPTY} -o {M}", 1, "is empty: there is nothing to import"},
        {"import {PNG} -o {M}", 1, "is a PNG image, not a DDL script or an SQLite database"},
        {"import {NOSUCH} -o {M}", 1, "No such file or directory"},
        {"show", 2, "no model file given"},
        {"show {OK} {OK}", 2, "one model file at a time"},
        {"show {DIR}", 1, "it is a directory"},
        {"show {EMPTY}", 1, "it is empty"},
        {"show {PNG}", 1, "it is a PNG image, not an SQLite database"},
        {"show {OK}", 1, "it is a text file, not an SQLite database"},
        {"show {OTHER}", 1, "it is an SQLite database that is not a model"},
        {"diagram {OTHER} -o", 2, "-o needs a file name"},
        {"diagram {PNG} -o {M}", 1, "it is a PNG image, not an SQLite database"},
        {"diagram {OTHER} --tables", 2, "--tables needs a pattern"},
    };
    auto expand = [&](std::string arguments) {
        const std::pair<const char*, std::string> names[] = {
            {"{NOSUCH}", m_dir.File("nosuch.sql")}, {"{OK}", m_dir.File("ok.sql")},   {"{EMPTY}", m_dir.File("empty.sql")},
            {"{PNG}", m_dir.File("picture.png")},   {"{OTHER}", m_dir.File("other.db")}, {"{DIR}", m_dir.Path()},
            {"{M}", m_dir.File("m.vrn")},
        };
        for (const auto& [word, path] : names)
            for (std::size_t at; (at = arguments.find(word)) != npos;) arguments.replace(at, std::strlen(word), path);
        return arguments;
    };
    for (const CMistake& mistake : mistakes) {
        SCOPED_TRACE(mistake.arguments);
        EXPECT_EQ(Run(expand(mistake.arguments)), mistake.status);
        EXPECT_NE(Err().find(mistake.says), npos) << Err();
        if (mistake.status == 2 && std::string(mistake.arguments) != "frobnicate") {
            // A usage error gets the command's usage line, not the whole help.
            EXPECT_NE(Err().find("usage: vrnmodel "), npos) << Err();
            EXPECT_EQ(Err().find("--verbose"), npos) << Err();
        }
    }
    EXPECT_FALSE(std::filesystem::exists(m_dir.File("m.vrn")));
}

TEST_F(CliTest, ScriptsOfDialectsOutsideThePlatformTableAreNamedAndRefused) {
    WriteBytes(m_dir.File("mysql.sql"),
               "CREATE TABLE `orders` (\n  `id` int unsigned NOT NULL AUTO_INCREMENT,\n  `customer_id` int NOT NULL,\n"
               "  PRIMARY KEY (`id`),\n  KEY `ix_customer` (`customer_id`)\n) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4;\n");
    WriteBytes(m_dir.File("postgres.sql"),
               "CREATE TABLE orders (id SERIAL PRIMARY KEY, placed date DEFAULT now()::date);\n"
               "ALTER TABLE orders OWNER TO shop;\n"
               "CREATE FUNCTION touch() RETURNS trigger AS $$ BEGIN RETURN NEW; END $$ LANGUAGE plpgsql;\n");
    const std::string model = m_dir.File("m.vrn");
    EXPECT_EQ(Run("import " + m_dir.File("mysql.sql") + " -o " + model), 1);
    EXPECT_NE(Err().find("looks like a MySQL script (backquoted names, ENGINE=, AUTO_INCREMENT"), npos) << Err();
    EXPECT_NE(Err().find("Give --platform"), npos) << Err();
    EXPECT_EQ(Run("import " + m_dir.File("postgres.sql") + " -o " + model), 1);
    EXPECT_NE(Err().find("looks like a PostgreSQL script (SERIAL columns, :: casts"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists(model));
    // --platform forces a reading, and a single sign is no proof.
    EXPECT_EQ(Run("import " + m_dir.File("postgres.sql") + " -o " + model + " --platform unknown"), 0) << Err();
    WriteBytes(m_dir.File("tsql.sql"), "create table t (a int) -- see http://example.org/a::b\ngo\n");
    EXPECT_EQ(Run("import " + m_dir.File("tsql.sql") + " -o " + m_dir.File("t.vrn")), 0) << Err();
}

TEST_F(CliTest, EachSourceIsReadInItsOwnDialectAndTheSummarySaysWhich) {
    WriteBytes(m_dir.File("oracle.sql"), "create table t (a varchar2(10));\n");
    WriteBytes(m_dir.File("tsql.sql"), "create table u (a int)\ncreate table v (b int)\ngo\n");
    ASSERT_EQ(Run("import " + m_dir.File("oracle.sql") + " " + m_dir.File("tsql.sql") + " -o " + m_dir.File("m.vrn")), 0)
        << Err();
    EXPECT_NE(Out().find("Read as:\n  " + m_dir.File("oracle.sql") + ": Oracle (guessed from the script)\n  " +
                         m_dir.File("tsql.sql") + ": T-SQL (guessed from the script)\n"),
              npos)
        << Out();
    EXPECT_NE(Out().find("Oracle 9i (47), guessed"), npos) << Out();  // the first platform a script tells
    EXPECT_NE(Out().find("  3 tables\n"), npos) << Out();               // the T-SQL statements split without ";"
    ASSERT_EQ(Run("import " + m_dir.File("tsql.sql") + " -o " + m_dir.File("n.vrn") + " --platform sybase"), 0) << Err();
    EXPECT_NE(Out().find(": T-SQL (--platform)"), npos) << Out();
}

TEST_F(CliTest, PlatformNamesInAnyCaseAndCodesOfThePlatformTable) {
    ASSERT_EQ(Run("import " + m_dir.File("ok.sql") + " -o " + m_dir.File("a.vrn") + " --platform Oracle"), 0) << Err();
    EXPECT_NE(Out().find("Oracle 9i (47)"), npos) << Out();
    ASSERT_EQ(Run("import " + m_dir.File("ok.sql") + " -o " + m_dir.File("b.vrn") + " --platform 33"), 0) << Err();
    EXPECT_NE(Out().find("Microsoft SQL Server 7.x (33)"), npos) << Out();
}

}  // namespace
