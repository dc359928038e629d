#include "ModelSources.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "SqlSource.h"
#include "SqliteImporter.h"

namespace {

// Whether `path` can be imported, and as what: a script (text) or an SQLite
// database; false with a reason that says what it is otherwise.
bool CheckSource(const std::string& path, char& database, std::string& error) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0) {
        error = "cannot read '" + path + "': " + std::strerror(errno);
        return false;
    }
    if (S_ISDIR(info.st_mode)) {
        error = "'" + path + "' is a directory, not a DDL script or an SQLite database";
        return false;
    }
    // A pipe (a shell's <(...), /dev/stdin) is read once, as a script: its
    // first bytes cannot be looked at and then read again.
    database = false;
    if (!S_ISREG(info.st_mode)) return true;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot read '" + path + "': " + std::strerror(errno);
        return false;
    }
    char head[64] = {};
    in.read(head, sizeof head);
    const std::string kind = CVrnFile::DescribeContent(std::string(head, static_cast<std::size_t>(in.gcount())));
    database = kind == "an SQLite database";
    if (database || kind == "a text file" || kind == "a UTF-16 text file") return true;
    error = kind == "an empty file" ? "'" + path + "' is empty: there is nothing to import"
                                    : "'" + path + "' is " + kind + ", not a DDL script or an SQLite database";
    return false;
}

}  // namespace

void RegisterHostTexts() {
    AfxSetResourceString(kHostTextProductName, "vrnmodel");
    AfxSetResourceString(kHostTextModelName, "Physical model");
    AfxSetResourceString(kHostTextDiagramName, "Main diagram");
    AfxSetResourceString(kHostTextParentNotFound, "Parent table %1 was not found.");
    AfxSetResourceString(kHostTextUnnamedKeyNotAdded, "A foreign key without a name was not added.");
    AfxSetResourceString(kHostTextForeignKeyNotAdded, "Foreign key %1 was not added.");
    AfxSetResourceString(kHostTextColumnPairNotAdded, "Foreign key %1: a column pair from %2 to %3 could not be added.");
}


bool ReadSources(const std::vector<std::string>& paths, int platform, bool detectUtf16, CSources& sources,
                 std::string& error) {
    sources.paths = paths;
    sources.texts.assign(paths.size(), std::string());
    sources.databases.assign(paths.size(), 0);
    sources.dialects.assign(paths.size(), CDialect());
    sources.servers.assign(paths.size(), nullptr);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (COdbcSource::Names(paths[i])) {
            // A live database is connected to now: its server tells the model's platform.
            auto server = std::make_shared<COdbcSource>();
            if (!server->Open(paths[i], error)) return false;
            sources.servers[i] = std::move(server);
            continue;
        }
        if (!CheckSource(paths[i], sources.databases[i], error)) return false;
        if (sources.databases[i]) continue;
        if (!ReadSourceText(paths[i], sources.texts[i], error, detectUtf16)) return false;
    }
    sources.platform = platform;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (sources.servers[i]) {
            if (sources.platform < 0) sources.platform = sources.servers[i]->Platform();
            continue;
        }
        if (sources.databases[i]) continue;
        if (platform >= 0) {
            sources.dialects[i] = DialectOfPlatform(platform, false);
            continue;
        }
        std::string signs;
        if (const char* foreign = ForeignDialect(sources.texts[i], signs)) {
            error = "'" + paths[i] + "' looks like a " + foreign + " script (" + signs +
                    "); vrnmodel reads T-SQL (SQL Server, Sybase), Oracle, DB2 LUW and DB2 z/OS scripts "
                    "and SQLite databases. Give --platform to read it as one of those anyway.";
            return false;
        }
        const int guessed = GuessPlatform(sources.texts[i]);
        sources.dialects[i] = DialectOfPlatform(guessed, true);
        if (sources.platform <= 0 && guessed != 0) sources.platform = guessed;
    }
    if (sources.platform < 0) sources.platform = 0;
    return true;
}

bool ImportSources(const CSources& sources, CDdlImporter& importer, std::string& error, bool progress) {
    for (std::size_t i = 0; i < sources.paths.size(); ++i) {
        if (progress) std::fprintf(stderr, "\rreading %s ...", COdbcSource::Shown(sources.paths[i]).c_str());
        if (sources.servers[i]) {
            if (!sources.servers[i]->Import(importer, sources.odbc, COdbcSource::Shown(sources.paths[i]), error))
                return false;
        } else if (sources.databases[i]) {
            if (!ImportSqliteDatabase(sources.paths[i], importer, error)) return false;
        } else {
            importer.ImportScript(sources.paths[i], sources.texts[i], &sources.dialects[i]);
        }
    }
    importer.Finish();
    return true;
}

bool LoadModel(const std::string& path, CModel& model, std::string& error) {
    if (ReadModelFile(path, model, error)) return true;
    // A model file that cannot be read stays an error; anything else that
    // is no model file is a source to import.
    if (error.find("is not a model file") == std::string::npos) return false;
    CSources sources;
    if (!ReadSources({path}, -1, true, sources, error)) return false;
    RegisterHostTexts();
    CVrnAPI builder;
    if (!builder.Initialize(sources.platform, nullptr)) {
        error = builder.GetVrnFile()->GetLastError();
        return false;
    }
    CImportReport report;
    CDdlImporter importer(builder, report);
    if (!ImportSources(sources, importer, error)) return false;
    if (report.ImportedTotal() == 0) {
        error = "nothing could be imported from '" + path + "'";
        return false;
    }
    // The builder saves to a file only: a scratch one, removed once read.
    const char* tmp = std::getenv("TMPDIR");
    std::string scratch = std::string(tmp && *tmp ? tmp : "/tmp") + "/vrnmodel-XXXXXX";
    const int fd = ::mkstemp(&scratch[0]);
    if (fd < 0) {
        error = "cannot make a scratch file for the model of '" + path + "': " + std::strerror(errno);
        return false;
    }
    ::close(fd);
    builder.SaveToFile(scratch.c_str());
    const std::string saveError = builder.GetVrnFile()->GetLastError();
    const bool read = saveError.empty() && ReadModelFile(scratch, model, error);
    ::unlink(scratch.c_str());
    if (!saveError.empty()) error = "the model of '" + path + "' could not be made: " + saveError;
    if (read) model.path = path;
    return read;
}
