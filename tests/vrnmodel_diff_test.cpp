// `vrnmodel diff` as a user runs it: a model against itself, and copies of
// a sample script changed one thing at a time, each named exactly in the
// text, JSON and Markdown reports, with diff(1)'s exit statuses.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "CommandLineTest.h"
#include "DiffReport.h"
#include "ImportedModel.h"
#include "ModelFileReader.h"

namespace {

using nlohmann::json;

const std::string kSamples = VRN_SAMPLES_DIR;
const std::string kPubs = kSamples + "/mssql_instpubs.sql";
// Changes to the pubs sample, each one thing.
const std::pair<std::string, std::string> kWiderName = {"au_lname       varchar(40)", "au_lname       varchar(60)"};
const std::pair<std::string, std::string> kCityNotNull = {
    "   city           varchar(20)           NULL,\n   state          char(2)               NULL,\n\n   zip",
    "   city           varchar(20)           NOT NULL,\n   state          char(2)               NULL,\n\n   zip"};
const std::pair<std::string, std::string> kNoRoyaltyShare = {"   royaltyper     int                   NULL,\n", ""};
const std::pair<std::string, std::string> kRenamedTable = {"CREATE TABLE roysched", "CREATE TABLE royalty_schedule"};
constexpr auto npos = std::string::npos;

class DiffTest : public CommandLineTest {
protected:
    // The pubs sample with each `from` replaced by its `to` (each exactly
    // once), as a script of the test's own.
    std::string ChangedPubs(const std::string& name, const std::vector<std::pair<std::string, std::string>>& changes) {
        std::string text = ReadBytes(kPubs);
        for (const auto& [from, to] : changes) {
            const std::size_t at = text.find(from);
            EXPECT_NE(at, npos) << from;
            EXPECT_EQ(text.find(from, at + 1), npos) << from << " is not unique";
            if (at != npos) text.replace(at, from.size(), to);
        }
        const std::string path = m_dir.File(name + ".sql");
        WriteBytes(path, text);
        return path;
    }
    std::string ChangedPubs(const std::string& name, const std::string& from, const std::string& to) {
        return ChangedPubs(name, {{from, to}});
    }
    // The one change the text report names, or what it says instead.
    std::string OnlyChange(const std::string& changed) {
        EXPECT_EQ(Run("diff " + kSamples + "/mssql_instpubs.sql " + changed), 1) << Err();
        const std::string out = Out();
        EXPECT_NE(out.find("\n1 change\n"), npos) << out;
        const std::size_t table = out.find("\nTable ");
        const std::size_t model = out.find("\nModel\n");
        const std::size_t start = table != npos ? table + 1 : model + 1;
        return out.substr(start, out.find("\n\n1 change") - start);
    }
};

TEST_F(DiffTest, EverySampleAgainstItselfIsEqual) {
    for (const CSample& sample : AllSamples()) {
        SCOPED_TRACE(sample.prefix);
        const std::string model = m_dir.File(std::string(sample.prefix) + ".vrn");
        ASSERT_EQ(Run("import " + kSamples + "/" + sample.prefix + "* -o " + model + " --platform " + sample.platform),
                  0)
            << Err();
        EXPECT_EQ(Run("diff " + model + " " + model), 0) << Out() << Err();
        EXPECT_EQ(Out(), model + " and " + model + " hold the same model\n");
    }
    // A script is imported on the fly, and gives the model its import gives.
    const std::string pubs = m_dir.File("pubs.vrn");
    ASSERT_EQ(Run("import " + kSamples + "/mssql_instpubs.sql -o " + pubs), 0) << Err();
    EXPECT_EQ(Run("diff " + pubs + " " + kPubs), 0) << Out() << Err();
}

TEST_F(DiffTest, EachChangeToAScriptIsNamedExactly) {
    EXPECT_EQ(OnlyChange(ChangedPubs("widened", {kWiderName})),
              "Table authors\n  column au_lname: width 40 -> 60");
    EXPECT_EQ(OnlyChange(ChangedPubs("nullable", {kCityNotNull})),
              "Table authors\n  column city: nullable yes -> no");
    EXPECT_EQ(OnlyChange(ChangedPubs("dropped", {kNoRoyaltyShare})),
              "Table titleauthor\n  column royaltyper dropped");
    EXPECT_EQ(OnlyChange(ChangedPubs("indexed", "CREATE NONCLUSTERED INDEX titleidind ON sales (title_id)",
                                     "CREATE NONCLUSTERED INDEX titleidind ON sales (title_id)\nGO\n"
                                     "CREATE INDEX ix_city ON authors (city)")),
              "Table authors\n  index ix_city added");
    EXPECT_EQ(OnlyChange(ChangedPubs("cascade", "         REFERENCES publishers(pub_id),\n\n   price",
                                     "         REFERENCES publishers(pub_id) ON DELETE CASCADE,\n\n   price")),
              "Table titles\n  foreign key (pub_id) of titles to publishers: on delete none -> cascade");
    const std::string procedure = OnlyChange(ChangedPubs(
        "procedure", "where titleauthor.royaltyper = @percentage\n", "where titleauthor.royaltyper >= @percentage\n"));
    EXPECT_NE(procedure.find("Model\n  procedure byroyalty: text changed\n"), npos) << procedure;
    EXPECT_NE(procedure.find("    -where titleauthor.royaltyper = @percentage\n"
                             "    +where titleauthor.royaltyper >= @percentage"),
              npos)
        << procedure;
}

TEST_F(DiffTest, ARenamedTableIsDroppedAndAdded) {
    const std::string renamed = ChangedPubs("renamed", {kRenamedTable});
    EXPECT_EQ(Run("diff " + kSamples + "/mssql_instpubs.sql " + renamed + " --json"), 1) << Err();
    const json report = json::parse(Out());
    EXPECT_EQ(report.at("equal"), false);
    std::vector<std::string> changes;
    for (const json& change : report.at("changes"))
        changes.push_back(change.at("change").get<std::string>() + " " + change.at("object").get<std::string>());
    EXPECT_EQ(changes, (std::vector<std::string>{"dropped table roysched", "added table royalty_schedule"}));

    EXPECT_EQ(Run("diff " + kSamples + "/mssql_instpubs.sql " + renamed), 1) << Err();
    EXPECT_NE(Out().find("\nTable roysched dropped\n\nTable royalty_schedule added\n\n2 changes\n"), npos) << Out();

    EXPECT_EQ(Run("diff " + kSamples + "/mssql_instpubs.sql " + renamed + " --markdown"), 1) << Err();
    EXPECT_NE(Out().find("| Object | Change | Before | After |\n|---|---|---|---|\n"), npos) << Out();
    EXPECT_NE(Out().find("| table roysched | dropped |"), npos) << Out();
    EXPECT_NE(Out().find("2 changes.\n"), npos) << Out();
}

// The migration as a user checks it: the old script followed by the
// migration imports to the model of the new script.
TEST_F(DiffTest, TheMigrationTakesTheOldScriptToTheNewModel) {
    const std::string pubs = kPubs, migration = m_dir.File("migration.sql");
    const std::string changed = ChangedPubs("changed", {kWiderName, kNoRoyaltyShare, kRenamedTable});
    ASSERT_EQ(Run("diff " + pubs + " " + changed + " --ddl -o " + migration), 1) << Err();
    const std::string script = ReadBytes(migration);
    EXPECT_NE(script.find("ALTER TABLE authors ALTER COLUMN au_lname varchar(60) NOT NULL\nGO\n"), npos) << script;
    EXPECT_NE(script.find("-- destructive: drops column royaltyper of titleauthor and what it holds\n"
                          "ALTER TABLE titleauthor DROP COLUMN royaltyper\nGO\n"),
              npos)
        << script;
    EXPECT_NE(script.find("-- destructive: drops table roysched and its rows\nDROP TABLE roysched\nGO\n"), npos) << script;
    // Foreign keys of the new table come last, after the tables they refer to.
    EXPECT_LT(script.find("CREATE TABLE royalty_schedule"), script.find("ALTER TABLE royalty_schedule ADD FOREIGN KEY"));
    EXPECT_EQ(Err(), "");

    const std::string migrated = m_dir.File("migrated.vrn");
    ASSERT_EQ(Run("import " + pubs + " " + migration + " -o " + migrated), 0) << Err();
    EXPECT_EQ(Run("diff " + migrated + " " + changed), 0) << Out();

    // Equal models need no migration.
    EXPECT_EQ(Run("diff " + pubs + " " + pubs + " --ddl"), 0) << Err();
    EXPECT_NE(Out().find("-- Nothing changes.\n"), npos) << Out();
    // What the platform cannot do in place is marked, and said.
    const std::string nullable = ChangedPubs("nullable", {kCityNotNull});
    EXPECT_EQ(Run("diff " + pubs + " " + nullable + " --ddl --platform db2zos"), 1) << Err();
    EXPECT_NE(Out().find("-- manual step: DB2 for z/OS does not change whether column city of authors admits nulls"),
              npos)
        << Out();
    EXPECT_NE(Err().find("vrnmodel: manual step: DB2 for z/OS"), npos) << Err();
    EXPECT_EQ(Run("diff " + pubs + " " + nullable + " --ddl --platform nowhere"), 2);
}

TEST_F(DiffTest, TroubleIsExitStatusTwo) {
    const std::string pubs = kPubs;
    EXPECT_EQ(Run("diff " + pubs + " /no/such.sql"), 2);
    EXPECT_NE(Err().find("/no/such.sql"), npos) << Err();
    EXPECT_EQ(Run("diff " + pubs), 2);
    EXPECT_EQ(Run("diff " + pubs + " " + pubs + " --frobnicate"), 2);
    EXPECT_EQ(Run("diff " + pubs + " " + pubs + " -o " + pubs), 2);  // never over an input
    WriteBytes(m_dir.File("grant.sql"), "GRANT SELECT ON t TO u;\n");
    EXPECT_EQ(Run("diff " + pubs + " " + m_dir.File("grant.sql")), 2);
    EXPECT_NE(Err().find("nothing could be imported"), npos) << Err();
}

TEST(LineDiff, KeepsCommonLinesAndMarksTheOthers) {
    EXPECT_EQ(LineDiff("a\nb\nc\nd", "a\nc\nx\nd"), (std::vector<std::string>{" a", "-b", " c", "+x", " d"}));
    EXPECT_EQ(LineDiff("", "one"), (std::vector<std::string>{"+one"}));
    EXPECT_EQ(LineDiff("same\n", "same\n"), (std::vector<std::string>{" same"}));
    // Two long texts are shown whole rather than compared line by line at a quadratic cost.
    std::string longOld, longNew;
    for (int i = 0; i < 3000; ++i) {
        longOld += "line " + std::to_string(i) + "\n";
        longNew += "line " + std::to_string(i + 1) + "\n";
    }
    const std::vector<std::string> whole = LineDiff(longOld, longNew);
    ASSERT_EQ(whole.size(), 6000u);
    EXPECT_EQ(whole.front(), "-line 0");
    EXPECT_EQ(whole.back(), "+line 3000");
}

}  // namespace
