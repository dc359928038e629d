// Build step: runs a SQL script against a new SQLite database file.
//   make_example_db SCRIPT DATABASE
#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <sstream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_example_db SCRIPT DATABASE\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    std::stringstream script;
    script << in.rdbuf();
    std::remove(argv[2]);
    sqlite3* db = nullptr;
    char* error = nullptr;
    if (sqlite3_open(argv[2], &db) != SQLITE_OK ||
        sqlite3_exec(db, script.str().c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
        std::fprintf(stderr, "make_example_db: %s\n", error ? error : sqlite3_errmsg(db));
        sqlite3_free(error);
        sqlite3_close(db);
        return 1;
    }
    sqlite3_close(db);
    return 0;
}
