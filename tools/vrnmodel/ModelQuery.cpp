#include "ModelQuery.h"

CQueryRows QueryRows(sqlite3* db, const std::string& sql) {
    CQueryRows result;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) return result;
    for (int i = 0; i < sqlite3_column_count(stmt); ++i) result.columns.emplace_back(sqlite3_column_name(stmt, i));
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        std::vector<std::string> row;
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
            const unsigned char* text = sqlite3_column_text(stmt, i);
            row.emplace_back(text ? reinterpret_cast<const char*>(text) : "");
        }
        result.rows.push_back(std::move(row));
    }
    sqlite3_finalize(stmt);
    return result;
}

std::string SqliteFileName(const std::string& path) {
    return path.compare(0, 5, "file:") == 0 ? "./" + path : path;
}

CModelDatabase OpenModelFile(const std::string& path, std::string& error) {
    sqlite3* raw = nullptr;
    const int rc = sqlite3_open_v2(SqliteFileName(path).c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
    CModelDatabase db(raw);
    if (rc != SQLITE_OK ||
        QueryRows(db.get(), "SELECT 1 FROM FileInfo WHERE name = 'format' AND value = 'vrn-model'").rows.empty()) {
        error = "'" + path + "' is not a model file";
        return nullptr;
    }
    return db;
}
