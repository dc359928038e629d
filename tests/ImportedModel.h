// A model made from scripts as vrnmodel import makes it: the importer over a
// fresh builder, the model saved, then read back through the model reader.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "DdlImporter.h"
#include "ImportReport.h"
#include "ModelFileReader.h"
#include "SavedModel.h"
#include "SqlSource.h"

struct CImported {
    CModel model;
    CImportReport report;
};

// The code of a platform named as the command line names it; a name the
// table does not know fails the test rather than crashing it.
inline int PlatformCode(const char* name) {
    const CPlatformInfo* platform = FindPlatformByName(name);
    if (!platform) throw std::runtime_error(std::string("no platform named ") + name);
    return platform->code;
}

// One line per change, as a user reads them; "" for equal models.
inline std::string Described(const std::vector<CModelChange>& changes) {
    std::string text;
    for (const CModelChange& change : changes) text += change.Describe() + "\n";
    return text;
}

// Runs `scripts` in turn in the SQLite database at `path`: the first error
// with the script that gave it, or "" when all ran.
inline std::string RunInSqlite(const std::vector<std::string>& scripts, const std::string& path = ":memory:") {
    sqlite3* db = nullptr;
    std::string error = sqlite3_open(path.c_str(), &db) == SQLITE_OK ? "" : "cannot open " + path;
    for (const std::string& script : scripts) {
        char* message = nullptr;
        if (error.empty() && sqlite3_exec(db, script.c_str(), nullptr, nullptr, &message) != SQLITE_OK)
            error = std::string(message ? message : "failed") + " in:\n" + script;
        sqlite3_free(message);
    }
    sqlite3_close(db);
    return error;
}

// A model file made at `path` through a builder for `platform` by `build`.
inline void BuildModelFile(const std::string& path, int platform, const std::function<void(CVrnAPI&)>& build) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(platform, nullptr), 1);
    build(builder);
    builder.SaveToFile(path.c_str());
    ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
}

// The model of `scripts`, read in the dialect of `platform`, one source each,
// saved in `dir`.
inline CImported ImportScripts(int platform, const std::vector<std::string>& scripts, CScratchDir& dir) {
    static int saved = 0;
    CImported result;
    CVrnAPI builder;
    EXPECT_EQ(builder.Initialize(platform, nullptr), 1);
    CDdlImporter importer(builder, result.report);
    for (std::size_t i = 0; i < scripts.size(); ++i)
        importer.ImportScript("script" + std::to_string(i + 1) + ".sql", scripts[i]);
    importer.Finish();
    result.model = SaveAndRead(builder, dir.File("imported" + std::to_string(++saved) + ".vrn"));
    return result;
}

// Every sample of tests/data: the prefix of its files' names and the
// platform its scripts are written for.
struct CSample {
    const char* prefix;
    const char* platform;
};
inline const std::vector<CSample>& AllSamples() {
    static const std::vector<CSample> samples = {
        {"mssql_instpubs", "sqlserver"},   {"flowable_mssql", "sqlserver"}, {"sybase_ase", "sybase"},
        {"mssql_obevo_ssms", "sqlserver"}, {"oracle_legacy_hr", "oracle"},  {"oracle_legacy_sh", "oracle"},
        {"oracle_legacy_qs", "oracle"},    {"db2luw_SAMPLE", "db2"},        {"db2zos_genevaers", "db2zos"},
    };
    return samples;
}

// The texts of the sample scripts in tests/data whose file names start
// with `prefix`, in name order; a failure when there is none.
inline std::vector<std::string> SampleTexts(const std::string& prefix) {
    std::vector<std::string> names, texts;
    for (const auto& entry : std::filesystem::directory_iterator(VRN_SAMPLES_DIR))
        if (entry.path().filename().string().rfind(prefix, 0) == 0) names.push_back(entry.path().string());
    std::sort(names.begin(), names.end());
    EXPECT_FALSE(names.empty()) << "no sample named " << prefix << "* in " << VRN_SAMPLES_DIR;
    for (const std::string& name : names) {
        std::string text, error;
        EXPECT_TRUE(ReadSourceText(name, text, error)) << error;
        texts.push_back(text);
    }
    return texts;
}
