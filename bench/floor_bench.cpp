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
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// A table's rows, row by row: the integer columns in one array, the text
// columns as offsets into one arena (kNull for SQL NULL), so that inserting
// walks memory in order as a builder's rows would.
struct CTable {
    static constexpr std::uint32_t kNull = 0xFFFFFFFFu;
    std::string name;
    std::string createSql;
    std::vector<bool> isText;  // per column
    std::vector<long long> numbers;
    std::vector<std::uint32_t> texts;
    std::string arena;
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
        const int columns = sqlite3_column_count(rows);
        for (int c = 0; c < columns; ++c) {
            const char* type = sqlite3_column_decltype(rows, c);
            table.isText.push_back(type && std::string(type) == "TEXT");
        }
        while (sqlite3_step(rows) == SQLITE_ROW) {
            for (int c = 0; c < columns; ++c) {
                if (!table.isText[static_cast<std::size_t>(c)]) {
                    table.numbers.push_back(sqlite3_column_int64(rows, c));
                    continue;
                }
                const unsigned char* text = sqlite3_column_text(rows, c);
                if (!text) {
                    table.texts.push_back(CTable::kNull);
                    continue;
                }
                table.texts.push_back(static_cast<std::uint32_t>(table.arena.size()));
                table.arena += reinterpret_cast<const char*>(text);
                table.arena += '\0';
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
    // The same connection settings as the store's model in memory.
    sqlite3* db = nullptr;
    sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX,
                    nullptr);
    for (const CTable& table : tables)
        if (!Check(sqlite3_exec(db, table.createSql.c_str(), nullptr, nullptr, nullptr), db, "create")) return 1;
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    for (const CTable& table : tables) {
        std::string sql = "INSERT INTO \"" + table.name + "\" VALUES (?";
        for (std::size_t c = 1; c < table.isText.size(); ++c) sql += ", ?";
        sqlite3_stmt* insert = nullptr;
        if (!Check(sqlite3_prepare_v2(db, (sql + ")").c_str(), -1, &insert, nullptr), db, "prepare")) return 1;
        const long long* number = table.numbers.data();
        const std::uint32_t* text = table.texts.data();
        for (std::size_t r = 0; r < table.rows; ++r) {
            for (std::size_t c = 0; c < table.isText.size(); ++c) {
                const int i = static_cast<int>(c) + 1;
                if (!table.isText[c]) {
                    sqlite3_bind_int64(insert, i, *number++);
                } else if (*text == CTable::kNull) {
                    sqlite3_bind_null(insert, i);
                    ++text;
                } else {
                    const char* value = table.arena.data() + *text++;
                    sqlite3_bind_text(insert, i, value, static_cast<int>(std::strlen(value)), SQLITE_STATIC);
                }
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
