// The bundled example: a host that registers its texts, builds a model through
// the public interface, saves it, and prints what the saved file holds, read
// back with plain SQLite as any reader of a model file would.
//
//   vrn_example_model [model-file]     (default: example.vrn)
#include <sqlite3.h>

#include <cstdio>
#include <string>

#include <VrnIntf.h>

namespace {

int PrintRows(sqlite3* db, const char* table) {
    const std::string sql = std::string("SELECT * FROM \"") + table + "\" ORDER BY 1";
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "cannot read %s: %s\n", table, sqlite3_errmsg(db));
        return 1;
    }
    std::printf("%s\n", table);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        std::printf(" ");
        for (int col = 0; col < sqlite3_column_count(stmt); ++col) {
            const unsigned char* value = sqlite3_column_text(stmt, col);
            std::printf(" %s=%s", sqlite3_column_name(stmt, col), value ? reinterpret_cast<const char*>(value) : "NULL");
        }
        std::printf("\n");
    }
    sqlite3_finalize(stmt);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "example.vrn";

    // The host's string table: the texts that name the model's own rows.
    AfxSetResourceString(1008, "VrnIntf example host");
    AfxSetResourceString(1349, "Example model");
    AfxSetResourceString(1362, "Example diagram");

    const CRuntimeClass* builderClass = CRuntimeClass::FromName("CVrnAPI");
    CVrnAPI* builder = builderClass ? static_cast<CVrnAPI*>(builderClass->CreateObject()) : nullptr;
    if (!builder) {
        std::fprintf(stderr, "the library offers no class named CVrnAPI\n");
        return 1;
    }
    builder->Initialize(34, nullptr);  // a new model for Oracle 8.x
    builder->SetModelId(1);
    std::printf("NUMBER is %s, TEXT is %s on Oracle 8.x\n", builder->GetORVDatatype("NUMBER"),
                builder->GetORVDatatype("text"));
    builder->SaveToFile(path);
    const std::string error = builder->GetVrnFile()->GetLastError();
    delete builder;
    if (!error.empty()) {
        std::fprintf(stderr, "the model was not saved: %s\n", error.c_str());
        return 1;
    }

    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path, &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "cannot open %s: %s\n", path, sqlite3_errmsg(db));
        sqlite3_close(db);
        return 1;
    }
    std::printf("saved %s\n", path);
    int failures = 0;
    for (const char* table : {"FileInfo", "Version", "Diagram", "Model", "NameSpace", "KeyAllocator"})
        failures += PrintRows(db, table);
    sqlite3_close(db);
    return failures == 0 ? 0 : 1;
}
