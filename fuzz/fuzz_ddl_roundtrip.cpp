// Fuzz target: models built from fuzzed calls (tables, columns of every
// common type, keys, indexes, foreign keys, checks) with names of any
// spelling, written as DDL for their own platform and imported again. When
// the writer said nothing was left out, the imported model must equal the
// one written, object by object.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "DdlImporter.h"
#include "DdlWriter.h"
#include "Dialect.h"
#include "FuzzCheck.h"
#include "FuzzScratch.h"
#include "SqlLexer.h"

namespace {

class CInput {
public:
    CInput(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}
    std::uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    template <std::size_t N>
    const char* Pick(const char* const (&pool)[N]) {
        return pool[Byte() % N];
    }
    // A name from a pool of awkward spellings, or up to 12 raw bytes (no line
    // break or NUL: names read from a script never hold one); never empty.
    std::string Name() {
        static const char* const kNames[] = {"T",      "Orders", "order",  "ORDER",  "Mixed Case", "x\"y", "[z]",
                                             "a]b",    "a`b",    "it's",   "select", "_under",     "1st",  "a.b",
                                             "Ünïcode", "名前",   "$cash",  "#temp",  "@var",       "-- no", "/* c */"};
        const std::uint8_t pick = Byte();
        if (pick < 224) return kNames[pick % (sizeof kNames / sizeof *kNames)];
        std::string raw;
        for (std::size_t length = 1 + Byte() % 12; length > 0 && m_at < m_size; --length) {
            const char ch = static_cast<char>(Byte());
            if (ch != '\0' && ch != '\n' && ch != '\r') raw += ch;
        }
        return raw.empty() ? "R" : raw;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

// Names unique in their scope in any letter case, as a database needs them.
std::string Unique(std::string name, std::set<std::string>& taken) {
    const std::string base = name;
    for (int n = 2; !taken.insert(UpperAscii(name)).second; ++n) name = base + std::to_string(n);
    return name;
}

struct CColumn {
    std::string name;
    bool nullable;
};

struct CTable {
    unsigned long id;
    std::string name;
    std::vector<CColumn> columns;
    std::vector<std::string> key;  // primary key columns
};

// Types by the names the platform's own catalog gives them: a model read
// from Oracle never holds BIGINT, which Oracle's DDL writes as its NUMBER.
const char* TypeName(CInput& in, int platform) {
    static const char* const kStandard[] = {"INTEGER", "SMALLINT", "VARCHAR", "CHAR",   "DECIMAL", "DATE",
                                            "TIMESTAMP", "FLOAT",  "REAL",    "BIGINT", "NUMERIC"};
    static const char* const kOracle[] = {"NUMBER", "VARCHAR2", "CHAR",  "DATE", "TIMESTAMP",
                                          "FLOAT",  "NVARCHAR2", "RAW", "CLOB", "BLOB"};
    return DialectOfPlatform(platform, false).family == EPlatformFamily::Oracle ? in.Pick(kOracle) : in.Pick(kStandard);
}

void Build(CVrnAPI& builder, int platform, CInput& in) {
    static const char* const kOwners[] = {"APP", "dbo", "", "Mixed Owner"};
    std::set<std::string> tableNames, indexNames;
    std::vector<CTable> tables;
    const char* owner = in.Pick(kOwners);
    for (int t = 1 + in.Byte() % 3; t > 0; --t) {
        CTable table;
        table.name = Unique(in.Name(), tableNames);
        table.id = builder.AddEntity(table.name.c_str(), owner, 0, 0);
        std::set<std::string> columnNames;
        for (int c = 1 + in.Byte() % 5; c > 0; --c) {
            const std::string column = Unique(in.Name(), columnNames);
            const std::string type = TypeName(in, platform);
            const bool sized = type.find("CHAR") != std::string::npos || type == "RAW";
            const bool exact = type == "DECIMAL" || type == "NUMERIC" || type == "NUMBER";
            const long width = sized ? 1 + in.Byte() % 200 : exact ? 1 + in.Byte() % 31 : -1;
            const long scale = exact ? in.Byte() % (width + 1) : -1;
            const bool nullable = (in.Byte() & 1) != 0;
            builder.AddAttribute(table.id, column.c_str(), type.c_str(), width, scale, nullable, 0);
            table.columns.push_back({column, nullable});
        }
        if (in.Byte() % 2) {
            builder.AddPrimaryKey(table.id, Unique("PK_" + table.name, indexNames).c_str());
            for (const CColumn& column : table.columns)
                if (!column.nullable && table.key.size() < 2) {
                    builder.AddPrimaryKeyColumn(table.id, column.name.c_str(), 0);
                    table.key.push_back(column.name);
                }
        }
        if (in.Byte() % 2) {
            const unsigned long index = builder.AddIndex(table.id, Unique(in.Name(), indexNames).c_str());
            const CColumn& column = table.columns[in.Byte() % table.columns.size()];
            builder.AddIndexColumn(index, column.name.c_str(), 0, in.Byte() % 2);
        }
        if (in.Byte() % 2) {
            const CColumn& column = table.columns[in.Byte() % table.columns.size()];
            const CDialect dialect = DialectOfPlatform(platform, false);
            const std::string text = dialect.Quote(column.name) + " IS NOT NULL";
            builder.AddCheckConstraint(Unique(in.Name(), indexNames).c_str(), text.c_str(), table.id,
                                       column.name.c_str(), 0);
        }
        tables.push_back(table);
    }
    // Foreign keys from a table with a key to itself or a later table. The
    // builder breaks a cycle of identifying relationships by dropping one of
    // them, so a script's second reading would differ from its first: the
    // generator makes none (no self reference through the key itself).
    for (int f = in.Byte() % 3; f > 0; --f) {
        std::size_t first = in.Byte() % tables.size(), second = in.Byte() % tables.size();
        if (first > second) std::swap(first, second);
        const CTable& parent = tables[first];
        const CTable& child = tables[second];
        if (parent.key.empty() || child.columns.size() < parent.key.size()) continue;
        std::vector<std::string> childColumns;
        for (std::size_t i = 0; i < parent.key.size(); ++i) childColumns.push_back(child.columns[i].name);
        bool throughKey = true;
        for (const std::string& column : childColumns)
            throughKey = throughKey && std::find(child.key.begin(), child.key.end(), column) != child.key.end();
        if (first == second && throughKey) continue;
        const unsigned long key = builder.AddForeignKey(parent.id, child.id, Unique(in.Name(), indexNames).c_str(),
                                                        parent.name.c_str(), owner);
        for (std::size_t i = 0; i < parent.key.size(); ++i)
            builder.AddForeignKeyColumnPair(key, parent.key[i].c_str(), childColumns[i].c_str(), 0);
    }
}

CModel SaveAndRead(CVrnAPI& builder, const std::string& path) {
    builder.SaveToFile(path.c_str());
    CModel model;
    std::string error;
    FUZZ_CHECK(ReadModelFile(path, model, error));
    return model;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const kPlatforms[] = {"sqlserver", "oracle", "db2zos", "db2", "sqlite"};
    CInput in(data, size);
    const int platform = FindPlatformByName(in.Pick(kPlatforms))->code;
    CModel written;
    {
        CVrnAPI builder;
        FUZZ_CHECK(builder.Initialize(platform, nullptr) == 1);
        Build(builder, platform, in);
        static const CFuzzScratchFile scratch("roundtrip-written");
        written = SaveAndRead(builder, scratch.Path());
    }
    CDdlOptions options;
    options.platform = platform;
    const CDdlScript script = WriteDdl(written, options);
    CVrnAPI builder;
    FUZZ_CHECK(builder.Initialize(platform, nullptr) == 1);
    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.ImportScript("written.sql", script.text);
    importer.Finish();
    static const CFuzzScratchFile scratch("roundtrip-read");
    const CModel read = SaveAndRead(builder, scratch.Path());
    if (!script.warnings.empty()) return 0;
    const std::vector<CModelChange> changes = CompareModels(written, read);
    if (!changes.empty()) {
        std::fprintf(stderr, "%s\n", script.text.c_str());
        for (const CModelChange& change : changes) std::fprintf(stderr, "%s\n", change.Describe().c_str());
    }
    FUZZ_CHECK(changes.empty());
    return 0;
}
