// The floor of the model builder's job: the rows of a saved model file,
// inserted into a new SQLite model in memory with prepared statements in one
// transaction, and written to a file the same way the store writes one
// (backup to a temporary file beside the target, sync, rename). Nothing can
// save a model faster than that.
//   floor_bench MODEL_FILE OUTPUT_FILE
// Prints one line of name=value figures; only inserting and writing are timed.
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// One column of a table, kept by its declared type.
struct CColumn {
    bool isText = false;
    std::vector<long long> numbers;
    std::vector<std::string> texts;
    std::vector<bool> nulls;
};

struct CTable {
    std::string name;
    std::string createSql;
    std::vector<CColumn> columns;
    std::size_t rows = 0;
};

std::vector<CTable> LoadTables(sqlite3* db) {
    std::vector<CTable> tables;
    sqlite3_stmt* list = nullptr;
    sqlite3_prepare_v2(db, "SELECT name, sql FROM sqlite_master WHERE type = 'table'", -1, &list, nullptr);
    while (sqlite3_step(list) == SQLITE_ROW) {
        CTable table;
        table.name = reinterpret_cast<const char*>(sqlite3_column_text(list, 0));
        table.createSql = reinterpret_cast<const char*>(sqlite3_column_text(list, 1));
        tables.push_back(std::move(table));
    }
    sqlite3_finalize(list);
    for (CTable& table : tables) {
        sqlite3_stmt* rows = nullptr;
        sqlite3_prepare_v2(db, ("SELECT * FROM \"" + table.name + "\"").c_str(), -1, &rows, nullptr);
        table.columns.resize(static_cast<std::size_t>(sqlite3_column_count(rows)));
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            const char* type = sqlite3_column_decltype(rows, static_cast<int>(c));
            table.columns[c].isText = type && std::string(type) == "TEXT";
        }
        while (sqlite3_step(rows) == SQLITE_ROW) {
            for (std::size_t c = 0; c < table.columns.size(); ++c) {
                CColumn& column = table.columns[c];
                const int i = static_cast<int>(c);
                if (column.isText) {
                    const unsigned char* text = sqlite3_column_text(rows, i);
                    column.texts.emplace_back(text ? reinterpret_cast<const char*>(text) : "");
                    column.nulls.push_back(text == nullptr);
                } else {
                    column.numbers.push_back(sqlite3_column_int64(rows, i));
                }
            }
            ++table.rows;
        }
        sqlite3_finalize(rows);
    }
    return tables;
}

bool Check(int rc, sqlite3* db, const char* what) {
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW) return true;
    std::fprintf(stderr, "floor_bench: %s: %s\n", what, sqlite3_errmsg(db));
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: floor_bench MODEL_FILE OUTPUT_FILE\n");
        return 2;
    }
    sqlite3* source = nullptr;
    if (sqlite3_open_v2(argv[1], &source, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "floor_bench: cannot open %s\n", argv[1]);
        return 1;
    }
    const std::vector<CTable> tables = LoadTables(source);
    sqlite3_close(source);
    std::size_t totalRows = 0;
    for (const CTable& table : tables) totalRows += table.rows;

    const auto start = std::chrono::steady_clock::now();
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    for (const CTable& table : tables)
        if (!Check(sqlite3_exec(db, table.createSql.c_str(), nullptr, nullptr, nullptr), db, "create")) return 1;
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    for (const CTable& table : tables) {
        std::string sql = "INSERT INTO \"" + table.name + "\" VALUES (?";
        for (std::size_t c = 1; c < table.columns.size(); ++c) sql += ", ?";
        sqlite3_stmt* insert = nullptr;
        if (!Check(sqlite3_prepare_v2(db, (sql + ")").c_str(), -1, &insert, nullptr), db, "prepare")) return 1;
        for (std::size_t r = 0; r < table.rows; ++r) {
            for (std::size_t c = 0; c < table.columns.size(); ++c) {
                const CColumn& column = table.columns[c];
                const int i = static_cast<int>(c) + 1;
                if (!column.isText)
                    sqlite3_bind_int64(insert, i, column.numbers[r]);
                else if (column.nulls[r])
                    sqlite3_bind_null(insert, i);
                else
                    sqlite3_bind_text(insert, i, column.texts[r].c_str(), static_cast<int>(column.texts[r].size()),
                                      SQLITE_STATIC);
            }
            if (!Check(sqlite3_step(insert), db, "insert")) return 1;
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
    }
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    const auto inserted = std::chrono::steady_clock::now();

    std::string temp = std::string(argv[2]) + ".XXXXXX";
    const int fd = mkstemp(&temp[0]);
    if (fd < 0) return 1;
    close(fd);
    sqlite3* file = nullptr;
    sqlite3_open(temp.c_str(), &file);
    sqlite3_backup* backup = sqlite3_backup_init(file, "main", db, "main");
    sqlite3_backup_step(backup, -1);
    sqlite3_backup_finish(backup);
    sqlite3_close(file);
    const int sync = open(temp.c_str(), O_RDONLY);
    fsync(sync);
    close(sync);
    rename(temp.c_str(), argv[2]);
    const auto written = std::chrono::steady_clock::now();
    sqlite3_close(db);

    const double insert = std::chrono::duration<double>(inserted - start).count();
    const double write = std::chrono::duration<double>(written - inserted).count();
    std::printf("rows=%zu insert=%.3f file=%.3f total=%.3f\n", totalRows, insert, write, insert + write);
    return 0;
}
