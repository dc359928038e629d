// Imports a generated script of N tables through vrnmodel's importer and
// saves the model, timing the whole job:
//   import_bench TABLES MODEL_FILE
// Prints one line of name=value figures. bench/run prints the time per table
// at each size, so that growth faster than the script shows.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "DdlImporter.h"
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

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: import_bench TABLES MODEL_FILE\n");
        return 2;
    }
    const long tables = std::strtol(argv[1], nullptr, 10);
    const std::string script = GeneratedScript(tables);
    const auto start = std::chrono::steady_clock::now();
    CVrnAPI builder;
    builder.Initialize(47, nullptr);
    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.ImportScript("generated.sql", script);
    importer.Finish();
    builder.SaveToFile(argv[2]);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const bool saved = *builder.GetVrnFile()->GetLastError() == '\0';
    // Reading alone: the script cut into statements of tokens, as the
    // importer does before it applies them; timed after the import, so that
    // both run on memory the process already has.
    const auto readStart = std::chrono::steady_clock::now();
    {
        std::vector<std::string> unresolved;
        const CSqlScript statements = SplitScript(PrepareScriptText(script, {}, unresolved));
        if (statements.statements.empty()) return 1;
    }
    const double reading = std::chrono::duration<double>(std::chrono::steady_clock::now() - readStart).count();
    std::printf("tables=%ld script_bytes=%zu seconds=%.3f reading=%.3f\n", tables, script.size(), seconds, reading);
    return saved ? 0 : 1;
}
