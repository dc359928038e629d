#include "ModelFileReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

CModelFileReader::CModelFileReader(const std::string& path) {
    if (sqlite3_open_v2(path.c_str(), &m_db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(m_db);
        m_db = nullptr;
    }
}

CModelFileReader::~CModelFileReader() { sqlite3_close(m_db); }

std::vector<CRowValues> CModelFileReader::Rows(const std::string& table, const std::string& orderBy) const {
    std::string sql = "SELECT * FROM \"" + table + "\"";
    if (!orderBy.empty()) sql += " ORDER BY " + orderBy;
    else if (table != "FileInfo" && table != "NameSpace" && table != "ObjectType" && table != "KeyAllocator" &&
             table != "MetaTable" && table != "Property" && table != "Partition" && table != "PropertyValue")
        sql += " ORDER BY row_seq";
    return Query(sql);
}

std::vector<CRowValues> CModelFileReader::Query(const std::string& sql) const {
    std::vector<CRowValues> rows;
    sqlite3_stmt* stmt = nullptr;
    if (!m_db || sqlite3_prepare_v2(m_db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
        throw std::runtime_error("cannot run " + sql);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        CRowValues row;
        for (int col = 0; col < sqlite3_column_count(stmt); ++col) {
            const unsigned char* text = sqlite3_column_text(stmt, col);
            row[sqlite3_column_name(stmt, col)] = text ? reinterpret_cast<const char*>(text) : "NULL";
        }
        rows.push_back(std::move(row));
    }
    sqlite3_finalize(stmt);
    return rows;
}

std::int64_t CModelFileReader::Count(const std::string& table) const {
    return std::stoll(Scalar("SELECT count(*) FROM \"" + table + "\""));
}

std::string CModelFileReader::Scalar(const std::string& sql) const {
    const std::vector<std::string> column = Column(sql);
    return column.empty() ? std::string() : column.front();
}

std::vector<std::string> CModelFileReader::Column(const std::string& sql) const {
    std::vector<std::string> values;
    sqlite3_stmt* stmt = nullptr;
    if (!m_db || sqlite3_prepare_v2(m_db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
        throw std::runtime_error("cannot run " + sql);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        const unsigned char* text = sqlite3_column_text(stmt, 0);
        values.push_back(text ? reinterpret_cast<const char*>(text) : "NULL");
    }
    sqlite3_finalize(stmt);
    return values;
}

CScratchDir::CScratchDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/vrn-test-XXXXXX";
    if (!mkdtemp(&pattern[0])) throw std::runtime_error("cannot make a scratch directory");
    m_path = pattern;
}

namespace {

// With VRN_KEEP_MODELS set to a directory, the model files a test leaves in
// its scratch directories are copied there as "<suite>.<test>.<file>", so
// that the models of two builds can be compared (tools/compare-models).
void KeepModels(const std::string& scratch) {
    const char* keep = std::getenv("VRN_KEEP_MODELS");
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    if (!keep || !*keep || !test) return;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(scratch, ignored)) {
        if (!entry.is_regular_file(ignored) || entry.path().extension() != ".vrn") continue;
        const std::string name = std::string(test->test_suite_name()) + "." + test->name() + "." +
                                 entry.path().filename().string();
        std::filesystem::copy_file(entry.path(), std::filesystem::path(keep) / name,
                                   std::filesystem::copy_options::overwrite_existing, ignored);
    }
}

}  // namespace

CScratchDir::~CScratchDir() {
    KeepModels(m_path);
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> CScratchDir::Entries() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void ExecOnFile(const std::string& path, const std::string& sql) {
    sqlite3* db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK || sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        const std::string message = db ? sqlite3_errmsg(db) : "out of memory";
        sqlite3_close(db);
        throw std::runtime_error("cannot run SQL on " + path + ": " + message);
    }
    sqlite3_close(db);
}
