// The sources a model is made of, checked, read and imported: scripts and
// SQLite databases, as `import` takes them and as `diff` takes a side that
// is not a model file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "DdlImporter.h"
#include "Dialect.h"
#include "OdbcSource.h"

struct CSources {
    std::vector<std::string> paths;
    std::vector<std::string> texts;  // scripts' text; empty for a database
    std::vector<char> databases;     // not vector<bool>: its elements are bound by reference
    std::vector<CDialect> dialects;  // each script's, chosen once
    // Each live database's connection (odbc:...), null for a file.
    std::vector<std::shared_ptr<COdbcSource>> servers;
    COdbcOptions odbc;               // the schemas and tables to read of live databases
    int platform = 0;                // --platform, or the first a script or server tells
};

// The host texts the builder writes into a model and its messages.
void RegisterHostTexts();

// Checks and reads every source, and chooses each script's dialect: from
// `platform` (-1 for none), or from what the script looks like. False with a
// reason when a source cannot be read or is in a dialect vrnmodel does not read.
bool ReadSources(const std::vector<std::string>& paths, int platform, bool detectUtf16, CSources& sources,
                 std::string& error);

// Imports the read sources through `importer` and finishes it; `progress`
// names each source on standard error as it is read.
bool ImportSources(const CSources& sources, CDdlImporter& importer, std::string& error, bool progress = false);

// The model of `path`: a model file read as it is, or scripts and SQLite
// databases imported into a model in a scratch file that is removed
// afterwards. False with the reason.
bool LoadModel(const std::string& path, CModel& model, std::string& error);
