// The bundled example: a host that registers its texts, builds a model through
// the public interface, saves it, and prints what the saved file holds, read
// back with plain SQLite as any reader of a model file would.
//
//   vrn_example_model [model-file]     (default: example.vrn)
#include <sqlite3.h>

#include <cstdio>
#include <string>
#include <utility>

#include <VrnIntf.h>

namespace {

// Prints `columns` of every row of `table`, in output order.
int PrintRows(sqlite3* db, const char* table, const char* columns) {
    const std::string sql = std::string("SELECT ") + columns + " FROM \"" + table + "\" ORDER BY row_seq";
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
    AfxSetResourceString(kHostTextProductName, "VrnIntf example host");
    AfxSetResourceString(kHostTextModelName, "Example model");
    AfxSetResourceString(kHostTextDiagramName, "Example diagram");

    const CRuntimeClass* builderClass = CRuntimeClass::FromName("CVrnAPI");
    CVrnAPI* builder = builderClass ? static_cast<CVrnAPI*>(builderClass->CreateObject()) : nullptr;
    if (!builder) {
        std::fprintf(stderr, "the library offers no class named CVrnAPI\n");
        return 1;
    }
    builder->Initialize(41, nullptr);  // a new model for Microsoft SQL Server 2000
    builder->SetModelId(1);

    // Catalog objects beside the tables.
    builder->AddDefault("DateDefault", "getdate()", nullptr);
    builder->AddRule("booleanRule", "@value in (0, 1)", nullptr);
    builder->AddUserType("Boolean", "bit");
    builder->AddUserType("Amount", "decimal(19, 4)");

    // Two tables and a view, as a catalog reader would describe them.
    const int notNull = 0;
    const int nullable = 1;
    const unsigned long dept = builder->AddEntity("DEPT", "dbo", 0, 0);
    builder->AddAttribute(dept, "DEPT_ID", "int", -1, -1, notNull, 0);
    builder->AddAttribute(dept, "NAME", "varchar", 40, -1, notNull, 0);
    builder->AddAttribute(dept, "IS_ACTIVE", "dbo.Boolean", -1, -1, nullable, 0);
    builder->SetEntityStringProperty(dept, 2, "Departments of the company");

    const unsigned long emp = builder->AddEntity("EMP", "dbo", 0, 0);
    builder->AddAttribute(emp, "EMP_ID", "int", -1, -1, notNull, 0);
    builder->AddAttribute(emp, "DEPT_ID", "int", -1, -1, notNull, 0);
    builder->AddAttribute(emp, "SALARY", "Amount", -1, -1, nullable, 0);
    builder->AddAttribute(emp, "HIRED", "datetime", -1, -1, nullable, 0);
    builder->AddAttribute(emp, "NOTES", "geography", -1, -1, nullable, 0);  // unknown: the default type
    builder->SetEntityProperty(emp, 22, 10);                               // a storage parameter

    builder->AddEntity("V_EMP", "dbo", 0, 1);  // views are described but write no rows

    // Keys, an index and the relationship between the two tables.
    builder->AddPrimaryKey(dept, "PK_DEPT");
    builder->AddPrimaryKeyColumn(dept, "DEPT_ID", 0);
    builder->AddPrimaryKey(emp, "PK_EMP");
    builder->AddPrimaryKeyColumn(emp, "EMP_ID", 0);
    const unsigned long byDept = builder->AddIndex(emp, nullptr);  // named EMPIX2
    builder->AddIndexColumn(byDept, "DEPT_ID", 0, 0);
    const unsigned long worksIn = builder->AddForeignKey(dept, emp, "FK_EMP_DEPT", "DEPT", "dbo");
    builder->AddForeignKeyColumnPair(worksIn, "DEPT_ID", "DEPT_ID", 0);
    builder->SetForeignKeyProperty(worksIn, 78, 1);  // on delete restrict

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
    const std::pair<const char*, const char*> shown[] = {
        {"Version", "row_seq, version_no, product"},
        {"Diagram", "row_seq, diagram_no, created, name, product, file_path, display_level"},
        {"Model", "row_seq, model_no, name"},
        {"Attribute", "row_seq, entity_key, attribute_no, attribute_id, column_name, datatype, width, scale, "
                      "null_option, user_datatype_id, sequence_no"},
        {"PrimaryKey", "row_seq, entity_key, attribute_no, attribute_id"},
        {"Indexes", "row_seq, entity_key, index_no, index_key, key_type, index_name, is_unique"},
        {"IndexColumn", "row_seq, index_key, attribute_no, sequence_no, sort_order"},
        {"TableStorage", "row_seq, entity_key, param5"},
        {"Entity", "row_seq, entity_key, owner, entity_name, definition"},
        {"ForeignKey", "row_seq, fk_key, parent_entity_key, child_entity_key, relationship_type, name, t14"},
        {"ForeignKeyColumn", "row_seq, fk_key, sequence_no, parent_attribute_no, child_attribute_no"},
        {"Defaults", "row_seq, default_id, name, text"},
        {"Rules", "row_seq, rule_id, name, text"},
        {"UserDatatype", "row_seq, user_datatype_id, name, datatype, length, scale"},
    };
    for (const auto& [table, columns] : shown) failures += PrintRows(db, table, columns);
    sqlite3_close(db);
    return failures == 0 ? 0 : 1;
}
