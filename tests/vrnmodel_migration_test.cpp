// The migration script between two models, checked the way a user checks
// one: each sample is written for each platform family and read back (the
// old model), a copy is changed in one way (the new model), and then
//   - the comparison names exactly that change;
//   - the old model's script followed by the migration imports to the model
//     the new model's script imports to;
//   - in generic SQL, SQLite itself runs both scripts.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "CommandLineTest.h"
#include "DdlWriter.h"
#include "ImportedModel.h"
#include "MigrationWriter.h"

namespace {

const auto Platform = PlatformCode;
const auto Changes = Described;

std::string Qualified(const CModelTable& table) {
    const std::size_t end = table.owner.find_last_not_of(' ');
    return end == std::string::npos ? table.name : table.owner.substr(0, end + 1) + "." + table.name;
}

// Where each column is used: by a key, an index, a foreign key or a check.
bool Used(const CModel& model, std::size_t tableAt, const std::string& column) {
    const CModelTable& table = model.tables[tableAt];
    for (const CModelIndex& index : table.indexes)
        for (const CModelIndexColumn& each : index.columns)
            if (AfxCompareNoCase(each.name.c_str(), column.c_str()) == 0) return true;
    for (const CModelForeignKey& key : model.foreignKeys)
        for (const CModelColumnPair& pair : key.pairs) {
            if (key.childTable == static_cast<int>(tableAt) && AfxCompareNoCase(pair.childColumn.c_str(), column.c_str()) == 0)
                return true;
            if (key.parentTable == static_cast<int>(tableAt) && AfxCompareNoCase(pair.parentColumn.c_str(), column.c_str()) == 0)
                return true;
        }
    for (int check : table.checks)
        if (AfxCompareNoCase(model.checks[static_cast<std::size_t>(check)].column.c_str(), column.c_str()) == 0) return true;
    return false;
}

// One change made to a copy of a model; false when the model has nothing it applies to.
struct CMutation {
    const char* name;
    std::function<bool(CModel&, std::string& expected)> apply;
};

const CMutation kMutations[] = {
    {"a column dropped",
     [](CModel& model, std::string& expected) {
         for (std::size_t t = 0; t < model.tables.size(); ++t) {
             CModelTable& table = model.tables[t];
             if (table.columns.size() < 2) continue;
             for (std::size_t c = 0; c < table.columns.size(); ++c) {
                 if (Used(model, t, table.columns[c].name) || table.columns[c].identity) continue;
                 expected = "table " + Qualified(table) + ": column " + table.columns[c].name + " dropped\n";
                 table.columns.erase(table.columns.begin() + static_cast<long>(c));
                 return true;
             }
         }
         return false;
     }},
    {"a type widened",
     [](CModel& model, std::string& expected) {
         // One that nothing stands on and that has no default: T-SQL changes
         // such a column in place, where the server named the constraints.
         for (std::size_t t = 0; t < model.tables.size(); ++t)
             for (CModelColumn& column : model.tables[t].columns) {
                 const CModelTable& table = model.tables[t];
                 if (column.datatype != "VAR" || column.width <= 0 || column.width > 1000 ||
                     !column.defaultText.empty() || Used(model, t, column.name))
                     continue;
                 expected = "table " + Qualified(table) + " column " + column.name + ": width " +
                            std::to_string(column.width) + " -> " + std::to_string(column.width + 10) + "\n";
                 column.width += 10;
                 return true;
             }
         return false;
     }},
    {"a column made NOT NULL",
     [](CModel& model, std::string& expected) {
         for (std::size_t t = 0; t < model.tables.size(); ++t)
             for (CModelColumn& column : model.tables[t].columns) {
                 if (!column.nullable || Used(model, t, column.name)) continue;
                 expected = "table " + Qualified(model.tables[t]) + " column " + column.name + ": nullable yes -> no\n";
                 column.nullable = false;
                 return true;
             }
         return false;
     }},
    {"an index added",
     [](CModel& model, std::string& expected) {
         for (CModelTable& table : model.tables) {
             if (table.columns.empty()) continue;
             CModelIndex index;
             index.name = "ix_added_by_test";
             index.columns.push_back({table.columns.back().attributeNo, table.columns.back().name, true});
             index.storageParams.fill(-1);
             table.indexes.push_back(index);
             expected = "table " + Qualified(table) + ": index ix_added_by_test added\n";
             return true;
         }
         return false;
     }},
    {"a foreign key's action changed",
     [](CModel& model, std::string& expected) {
         for (CModelForeignKey& key : model.foreignKeys) {
             if (key.childTable < 0 || key.parentTable < 0 || key.name.empty() || key.pairs.empty()) continue;
             const auto action = [](char code) {
                 return code == 'C' ? "cascade" : code == 'S' ? "set null" : code == 'R' ? "restrict" : "none";
             };
             const char was = key.onDelete;
             key.onDelete = was == 'C' ? 'N' : 'C';
             expected = "foreign key " + key.name + " of " + Qualified(model.tables[static_cast<std::size_t>(key.childTable)]) +
                        ": on delete " + action(was) + " -> " + action(key.onDelete) + "\n";
             return true;
         }
         return false;
     }},
    {"a procedure's text edited",
     [](CModel& model, std::string& expected) {
         for (CModelCode& procedure : model.procedures) {
             const std::size_t line = procedure.text.find('\n');
             if (line == std::string::npos) continue;
             procedure.text.insert(line + 1, "-- edited by the test\n");
             expected = "procedure " + (procedure.owner.empty() ? procedure.name : procedure.owner + "." + procedure.name) +
                        ": text changed\n";
             return true;
         }
         return false;
     }},
    {"a table renamed",
     [](CModel& model, std::string& expected) {
         for (std::size_t t = 0; t < model.tables.size(); ++t) {
             CModelTable& table = model.tables[t];
             bool triggered = false;
             for (const CModelCode& trigger : model.triggers) triggered = triggered || trigger.table == static_cast<int>(t);
             if (table.columns.empty() || !table.referencedBy.empty() || triggered) continue;
             const std::string old = Qualified(table);
             table.name += "_renamed";
             expected = "table " + old + " dropped\ntable " + Qualified(table) + " added\n";
             return true;
         }
         return false;
     }},
};

class MigrationTest : public ::testing::Test {
protected:
    CModel Import(int platform, const std::vector<std::string>& scripts, CImportReport* report = nullptr) {
        CImported imported = ImportScripts(platform, scripts, m_dir);
        if (report) *report = imported.report;
        for (CModelTable& table : imported.model.tables)
            for (CModelColumn& column : table.columns)
                if (column.scale < 0) column.scale = 0;  // a type without a code reads back with scale 0
        return std::move(imported.model);
    }
    static std::string Ddl(const CModel& model, int platform) {
        CDdlOptions options;
        options.platform = platform;
        return WriteDdl(model, options).text;
    }

    // Every sample, written for `family` and read back, changed in each way.
    void CheckFamily(const char* family) {
        const int platform = family[0] ? Platform(family) : 0;
        std::map<std::string, int> applied;
        for (const CSample& sample : AllSamples()) {
            SCOPED_TRACE(std::string(sample.prefix) + " as " + (family[0] ? family : "generic SQL"));
            const CModel source = Import(Platform(sample.platform), SampleTexts(sample.prefix));
            const std::string oldScript = Ddl(source, platform);
            const CModel old = Import(platform, {oldScript});
            ASSERT_EQ(Changes(CompareModels(old, old)), "");
            for (const CMutation& mutation : kMutations) {
                SCOPED_TRACE(mutation.name);
                CModel changed = old;
                std::string expected;
                if (!mutation.apply(changed, expected)) continue;
                ++applied[mutation.name];
                EXPECT_EQ(Changes(CompareModels(old, changed)), expected);

                CDdlOptions options;
                options.platform = platform;
                const CMigrationScript migration = WriteMigration(old, changed, options);
                if (platform == Platform("db2zos") && std::string(mutation.name) == "a column made NOT NULL") {
                    // DB2 for z/OS makes no column NOT NULL in place: the script says so.
                    ASSERT_EQ(migration.manualSteps.size(), 1u) << migration.text;
                    EXPECT_NE(migration.text.find("-- manual step: DB2 for z/OS"), std::string::npos) << migration.text;
                    continue;
                }
                EXPECT_TRUE(migration.manualSteps.empty()) << migration.text;
                CImportReport report;
                const CModel migrated = Import(platform, {oldScript, migration.text}, &report);
                const CModel wanted = Import(platform, {Ddl(changed, platform)});
                EXPECT_EQ(Changes(CompareModels(wanted, migrated)), "") << migration.text;
                if (!platform) {
                    EXPECT_EQ(RunInSqlite({oldScript, migration.text}), "");  // SQLite runs both
                }
            }
        }
        // Code is written for its own family only.
        const bool code = family == std::string("oracle") || family == std::string("sqlserver");
        for (const CMutation& mutation : kMutations) {
            if (std::string(mutation.name) == "a procedure's text edited" && !code) continue;
            EXPECT_GT(applied[mutation.name], 0) << mutation.name << " applies to no sample";
        }
    }

    CScratchDir m_dir;
};

// The order a server needs: what stands on a changing column goes first and
// comes back after it, in the reverse order.
TEST_F(MigrationTest, DependentsMakeWayForAChangingKeyColumnAndComeBackAfter) {
    const auto script = [](int width) {
        const std::string type = "varchar(" + std::to_string(width) + ")";
        return "CREATE TABLE parent (id " + type + " NOT NULL, CONSTRAINT pk_parent PRIMARY KEY (id))\nGO\n"
               "CREATE TABLE child (pid " + type + " NULL, note varchar(10) NULL)\nGO\n"
               "CREATE INDEX ix_child ON child (pid)\nGO\n"
               "ALTER TABLE child ADD CONSTRAINT fk_child FOREIGN KEY (pid) REFERENCES parent (id)\nGO\n";
    };
    const int tsql = Platform("sqlserver");
    const CModel old = Import(tsql, {script(10)});
    const CModel wider = Import(tsql, {script(20)});
    CDdlOptions options;
    const std::string text = WriteMigration(old, wider, options).text;
    const std::vector<std::string> order = {
        "ALTER TABLE child DROP CONSTRAINT fk_child",  "ALTER TABLE parent DROP CONSTRAINT pk_parent",
        "ALTER TABLE parent ALTER COLUMN id varchar(20) NOT NULL", "ALTER TABLE child ALTER COLUMN pid varchar(20) NULL",
        "ALTER TABLE parent ADD CONSTRAINT pk_parent PRIMARY KEY", "ALTER TABLE child ADD CONSTRAINT fk_child FOREIGN KEY"};
    std::size_t at = 0;
    for (const std::string& statement : order) {
        const std::size_t found = text.find(statement);
        ASSERT_NE(found, std::string::npos) << statement << "\n" << text;
        EXPECT_GT(found, at) << statement << " is out of order:\n" << text;
        at = found;
    }
    // A widened column keeps its index in T-SQL.
    EXPECT_EQ(text.find("ix_child"), std::string::npos) << text;

    // Oracle changes only what changed, and takes a default away with DEFAULT NULL.
    const int oracle = Platform("oracle");
    const CModel before = Import(oracle, {"CREATE TABLE t (a NUMBER(5) DEFAULT 1 NOT NULL, b VARCHAR2(10));\n"});
    const CModel after = Import(oracle, {"CREATE TABLE t (a NUMBER(5) NOT NULL, b VARCHAR2(10) NOT NULL);\n"});
    const std::string modify = WriteMigration(before, after, options).text;
    EXPECT_NE(modify.find("ALTER TABLE t MODIFY (a DEFAULT NULL);\nALTER TABLE t MODIFY (b NOT NULL);\n"), std::string::npos)
        << modify;

    // DB2 narrows no column in place: the script says so, and does nothing else to it.
    options.platform = Platform("db2");
    const CMigrationScript narrower = WriteMigration(wider, old, options);
    ASSERT_EQ(narrower.manualSteps.size(), 2u) << narrower.text;
    EXPECT_NE(
        narrower.manualSteps.at(0).find("DB2 does not change column id of parent from VARCHAR(20) to VARCHAR(10)"),
        std::string::npos)
        << narrower.manualSteps.at(0);
    EXPECT_EQ(narrower.text.find("SET DATA TYPE"), std::string::npos) << narrower.text;
}

TEST_F(MigrationTest, TransactSqlMigrationsLeadToTheNewModel) { CheckFamily("sqlserver"); }
TEST_F(MigrationTest, OracleMigrationsLeadToTheNewModel) { CheckFamily("oracle"); }
TEST_F(MigrationTest, Db2LuwMigrationsLeadToTheNewModel) { CheckFamily("db2"); }
TEST_F(MigrationTest, Db2ZosMigrationsLeadToTheNewModel) { CheckFamily("db2zos"); }
TEST_F(MigrationTest, GenericMigrationsLeadToTheNewModelAndSqliteRunsThem) { CheckFamily(""); }

}  // namespace
