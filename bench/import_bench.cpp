// Imports a generated script of N tables through vrnmodel's importer and
// saves the model, timing the whole job:
//   import_bench TABLES MODEL_FILE [PLATFORM [SCRIPT_FILE]]
// PLATFORM is a platform name (oracle, the default; sqlserver for T-SQL);
// the generated script is also written to SCRIPT_FILE when one is given.
// Prints one line of name=value figures, with the time and memory of
// reading and parsing the script alone. bench/run prints the time per table
// at each size, so that growth faster than the script shows.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "DdlImporter.h"
#include "DdlParser.h"
#include "Dialect.h"
#include "ImportReport.h"
#include "SqlScript.h"

namespace {

// 20 columns, a key, two indexes and a foreign key to the previous table each,
// plus a comment and a row of data: the shape of a real schema script.
std::string GeneratedScript(long tables) {
    std::string script;
    for (long t = 0; t < tables; ++t) {
        const std::string name = "t" + std::to_string(t);
        script += "CREATE TABLE " + name + " (\n  id INTEGER NOT NULL,\n  parent_id INTEGER NULL";
        for (int c = 0; c < 18; ++c) script += ",\n  c" + std::to_string(c) + " VARCHAR(" + std::to_string(10 + c) + ")";
        script += ",\n  CONSTRAINT pk_" + name + " PRIMARY KEY (id)\n);\n";
        script += "CREATE INDEX ix_" + name + " ON " + name + " (c1, c2 DESC);\n";
        script += "CREATE INDEX ix2_" + name + " ON " + name + " (c3);\n";
        if (t > 0)
            script += "ALTER TABLE " + name + " ADD CONSTRAINT fk_" + name + " FOREIGN KEY (parent_id) REFERENCES t" +
                      std::to_string(t - 1) + " (id);\n";
        script += "COMMENT ON TABLE " + name + " IS 'generated table';\nINSERT INTO " + name + " (id) VALUES (1);\n";
    }
    return script;
}

// Reads and parses the script as the importer does, statement by
// statement, without a model; the number of statements read.
long ReadAndParse(const std::string& script, const CDialect& dialect) {
    std::vector<std::string> unresolved;
    long statements = 0;
    ForEachStatement(PrepareScriptText(script, {}, unresolved), dialect.EndsStatementsAtNextStart(),
                     [&](const CSqlStatement& statement, const std::string& source) {
                         statements += ParseStatement(statement, source).line > 0 ? 1 : 0;
                     });
    return statements;
}

long PeakKib() {
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
    const CPlatformInfo* platform = FindPlatformByName(argc > 3 ? argv[3] : "oracle");
    if (argc < 3 || argc > 5 || !platform) {
        std::fprintf(stderr, "usage: import_bench TABLES MODEL_FILE [PLATFORM [SCRIPT_FILE]]\n");
        return 2;
    }
    const CDialect dialect = DialectOfPlatform(platform->code, false);
    const long tables = std::strtol(argv[1], nullptr, 10);
    const std::string script = GeneratedScript(tables);
    if (argc == 5) {
        std::FILE* out = std::fopen(argv[4], "wb");
        if (!out || std::fwrite(script.data(), 1, script.size(), out) != script.size() || std::fclose(out) != 0) {
            std::fprintf(stderr, "import_bench: cannot write %s\n", argv[4]);
            return 1;
        }
    }
    // The memory that reading and parsing take beyond the script itself:
    // measured first, in a process that holds nothing else yet.
    const long before = PeakKib();
    if (ReadAndParse(script, dialect) == 0) return 1;
    const long readingKib = PeakKib() - before;

    const auto start = std::chrono::steady_clock::now();
    CVrnAPI builder;
    builder.Initialize(platform->code, nullptr);
    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.ImportScript("generated.sql", script, &dialect);
    importer.Finish();
    builder.SaveToFile(argv[2]);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const bool saved = *builder.GetVrnFile()->GetLastError() == '\0';
    // Reading and parsing alone, timed after the import, so that both run
    // on memory the process already has.
    const auto readStart = std::chrono::steady_clock::now();
    if (ReadAndParse(script, dialect) == 0) return 1;
    const double reading = std::chrono::duration<double>(std::chrono::steady_clock::now() - readStart).count();
    std::printf("tables=%ld script_bytes=%zu seconds=%.3f reading=%.3f reading_kib=%ld peak_kib=%ld dialect=%s\n",
                tables, script.size(), seconds, reading, readingKib, PeakKib(), dialect.Name());
    return saved ? 0 : 1;
}
