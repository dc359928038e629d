// `vrnmodel show` as text, JSON and Markdown, on the models of the sample
// scripts and on a model made through the builder: what a reader of the
// report sees, and what a tool parsing the JSON gets (read with a real JSON
// parser, value by value).
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

#include <VrnIntf.h>

#include "CommandLineTest.h"
#include "ImportedModel.h"
#include "ModelFileReader.h"

namespace {

using nlohmann::json;

constexpr auto npos = std::string::npos;
const std::string kSamples = VRN_SAMPLES_DIR;

class ShowTest : public CommandLineTest {
protected:
    // The model of a sample script, imported by vrnmodel.
    std::string ImportSample(const std::string& sample, const std::string& platform) {
        const std::string model = m_dir.File(sample + ".vrn");
        EXPECT_EQ(Run("import " + kSamples + "/" + sample + " -o " + model + " --platform " + platform), 0) << Err();
        return model;
    }
    json ShowJson(const std::string& model) {
        EXPECT_EQ(Run("show " + model + " --json"), 0) << Err();
        return json::parse(Out());
    }
    static const json& TableNamed(const json& document, const std::string& name) {
        for (const json& table : document.at("tables"))
            if (table.at("name") == name) return table;
        throw std::runtime_error("no table " + name);
    }
    static const json& ColumnNamed(const json& table, const std::string& name) {
        for (const json& column : table.at("columns"))
            if (column.at("name") == name) return column;
        throw std::runtime_error("no column " + name);
    }
};

TEST_F(ShowTest, TextNamesThePlatformCountsObjectsAndWritesPlatformTypes) {
    const std::string model = ImportSample("flowable_mssql_all_create.sql", "sqlserver");
    ASSERT_EQ(Run("show " + model), 0) << Err();
    const std::string text = Out();
    EXPECT_NE(text.find("Platform   Microsoft SQL Server 2000 (41)"), npos) << text.substr(0, 400);
    EXPECT_NE(text.find("Holds      62 tables, 844 columns, 62 primary keys, 154 indexes, 59 foreign keys"), npos)
        << text.substr(0, 400);
    // Types as SQL Server writes them, not the model's codes.
    EXPECT_NE(text.find("nvarchar(64)"), npos);
    EXPECT_EQ(text.find("VAN("), npos);
    EXPECT_NE(text.find("foreign key ACT_FK_JOB_EXCEPTION (EXCEPTION_STACK_ID_) references ACT_GE_BYTEARRAY (ID_)"),
              npos);
}

TEST_F(ShowTest, JsonHasTypedValuesForEveryKind) {
    const json document = ShowJson(ImportSample("oracle_legacy_hr_cre.sql", "oracle"));
    EXPECT_EQ(document.at("format"), 1);
    EXPECT_EQ(document.at("platform"), json::parse(R"({"code": 47, "name": "Oracle 9i", "dialect": "Oracle"})"));
    EXPECT_EQ(document.at("counts").at("tables"), 7);
    EXPECT_EQ(document.at("counts").at("foreign_keys"), 10);
    const json& employees = TableNamed(document, "employees");
    const json salary = json::parse(R"json({"name": "salary", "attribute_no": 8, "attribute_name": "salary",
        "type": "NUMBER(8,2)", "datatype": "NUM", "width": 8, "scale": 2, "nullable": true, "primary_key": false,
        "identity": false, "default": "", "check": "", "definition": "", "role_name": "", "user_datatype": "",
        "bound_default_id": 0, "bound_rule_id": 0, "foreign_keys": [], "properties": []})json");
    EXPECT_EQ(ColumnNamed(employees, "salary"), salary);
    EXPECT_EQ(ColumnNamed(employees, "email").at("nullable"), false);
    EXPECT_EQ(ColumnNamed(employees, "employee_id").at("primary_key"), true);
    EXPECT_EQ(ColumnNamed(employees, "job_id").at("foreign_keys"), json::array({"emp_job_fk"}));
    EXPECT_EQ(employees.at("primary_key").at("columns"),
              json::parse(R"([{"name": "employee_id", "descending": false}])"));
    EXPECT_TRUE(employees.at("storage_params").at(0).is_null());
    EXPECT_EQ(employees.at("checks"),
              json::parse(R"([{"name": "emp_salary_min", "column": "", "text": "salary > 0"}])"));
    const json foreignKey = json::parse(R"({"name": "emp_dept_fk", "parent": {"owner": "", "name": "departments"},
        "identifying": false, "optional": true, "on_delete": "NO ACTION", "on_update": "NO ACTION",
        "references_alternate_key": false, "columns": [{"child": "department_id", "parent": "department_id"}]})");
    EXPECT_EQ(employees.at("foreign_keys").at(0), foreignKey);
}

TEST_F(ShowTest, CodeObjectsReadAsLinesAndTheirTextOnRequest) {
    const std::string model = m_dir.File("code.vrn");
    WriteBytes(m_dir.File("code.sql"),
               "create table orders (id int primary key)\nGO\n"
               "create trigger trg_orders on orders after insert as select 1\nGO\n"
               "create procedure p_list as select * from orders\nGO\n");
    ASSERT_EQ(Run("import " + m_dir.File("code.sql") + " -o " + model + " --platform sqlserver"), 0) << Err();
    ASSERT_EQ(Run("show " + model), 0) << Err();
    EXPECT_NE(Out().find("TRIGGER trg_orders ON orders (after)"), npos) << Out();
    EXPECT_NE(Out().find("PROCEDURE p_list"), npos) << Out();
    EXPECT_EQ(Out().find("select * from orders"), npos);
    EXPECT_EQ(Out().find("="), npos) << "no key=value dumps";
    ASSERT_EQ(Run("show " + model + " --code"), 0) << Err();
    EXPECT_NE(Out().find("create procedure p_list as select * from orders"), npos) << Out();
    const json document = ShowJson(model);
    EXPECT_EQ(document.at("triggers").at(0).at("timing"), "after");
    EXPECT_EQ(document.at("triggers").at(0).at("table"), "orders");
    EXPECT_NE(document.at("procedures").at(0).at("text").get<std::string>().find("select * from orders"), npos);
}

TEST_F(ShowTest, SharedMigratedColumnsShowOnceWithEveryForeignKey) {
    // Two relationships share the child column payer_id: the model keeps a
    // copy for the second, the report one column that lists both.
    const std::string model = m_dir.File("shared.vrn");
    BuildModelFile(model, 41, [](CVrnAPI& builder) {
        const unsigned long customer = builder.AddEntity("customer", "dbo", 0, 0);
        builder.AddAttribute(customer, "id", "int", -1, -1, 0, 0);
        builder.AddPrimaryKey(customer, nullptr);
        builder.AddPrimaryKeyColumn(customer, "id", 0);
        const unsigned long invoice = builder.AddEntity("invoice", "dbo", 0, 0);
        builder.AddAttribute(invoice, "payer_id", "int", -1, -1, 1, 0);
        for (const char* name : {"fk_paid_by", "fk_billed_to"}) {
            const unsigned long foreignKey = builder.AddForeignKey(customer, invoice, name, nullptr, nullptr);
            builder.AddForeignKeyColumnPair(foreignKey, "id", "payer_id", 0);
        }
    });
    ASSERT_EQ(Run("show " + model), 0) << Err();
    EXPECT_NE(Out().find("payer_id  int  NULL  FK fk_paid_by, fk_billed_to"), npos) << Out();
    const json document = ShowJson(model);
    const json& invoice = TableNamed(document, "invoice");
    EXPECT_EQ(invoice.at("columns").size(), 1u);
    EXPECT_EQ(invoice.at("column_copies").size(), 1u);
    EXPECT_EQ(invoice.at("column_copies").at(0).at("copy_of"), "payer_id");
    EXPECT_EQ(invoice.at("column_copies").at(0).at("copy_for_foreign_key"), "fk_billed_to");
    EXPECT_EQ(document.at("counts").at("columns"), 2);
}

TEST_F(ShowTest, BoundDefaultsAndRulesAreNamed) {
    const std::string model = m_dir.File("bound.vrn");
    BuildModelFile(model, 41, [](CVrnAPI& builder) {
        builder.AddDefault("df_zero", "0", nullptr);
        builder.AddRule("r_positive", "@v > 0", nullptr);
        builder.AddUserType("amount", "numeric(10,2)");
        builder.BindRule("r_positive", "amount");
        const unsigned long table = builder.AddEntity("orders", "dbo", 0, 0);
        builder.AddAttribute(table, "qty", "int", -1, -1, 1, 0);
        builder.BindDefault("df_zero", "orders.qty");
    });
    ASSERT_EQ(Run("show " + model), 0) << Err();
    EXPECT_NE(Out().find("qty  int  NULL  default df_zero"), npos) << Out();
    EXPECT_NE(Out().find("User datatypes\n  amount numeric(10,2)  rule r_positive\n"), npos) << Out();
    EXPECT_NE(Out().find("Defaults\n  df_zero: 0\n"), npos) << Out();
}

// Names that are not plain identifiers: quoted in the text, kept as stored
// in JSON, and never breaking a Markdown row.
TEST_F(ShowTest, OddNamesAreQuotedKeptOrEscapedAsEachFormatNeeds) {
    const std::string model = m_dir.File("names.vrn");
    BuildModelFile(model, 41, [](CVrnAPI& builder) {
        const unsigned long table = builder.AddEntity("order items", "    ", 0, 0);
        builder.AddAttribute(table, "line\nno", "int", -1, -1, 0, 0);
        builder.AddAttribute(table, "say \"hi\"", "int", -1, -1, 0, 0);
        builder.AddAttribute(table, "a|b", "int", -1, -1, 1, 0);
        builder.AddAttribute(table, "line\nbreak", "int", -1, -1, 1, 0);
    });
    ASSERT_EQ(Run("show " + model), 0) << Err();
    EXPECT_NE(Out().find("Table \"order items\"\n"), npos) << Out();  // the blank owner is no owner
    EXPECT_NE(Out().find("\"line\\x0Ano\""), npos) << Out();
    EXPECT_NE(Out().find("\"say \"\"hi\"\"\""), npos) << Out();
    const json document = ShowJson(model);
    EXPECT_EQ(document.at("tables").at(0).at("owner"), "    ");
    EXPECT_EQ(document.at("tables").at(0).at("columns").at(0).at("name"), "line\nno");
    ASSERT_EQ(Run("show " + model + " --markdown"), 0) << Err();
    EXPECT_NE(Out().find("| `a\\|b` | int | yes |"), npos) << Out();
    EXPECT_NE(Out().find("| `line break` | int | yes |"), npos) << Out();
}

TEST_F(ShowTest, JsonIsValidUtf8WhateverBytesTheModelHolds) {
    // A Latin-1 script: its bytes are kept in the model as they are, and the
    // JSON writes each byte that is not UTF-8 as the character of its number.
    WriteBytes(m_dir.File("latin1.sql"), "create table caf\xE9 (prix int);\ncomment on table caf\xE9 is 'ch\xE8re';\n");
    const std::string model = m_dir.File("latin1.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("latin1.sql") + " -o " + model + " --platform oracle"), 0) << Err();
    const json document = ShowJson(model);  // nlohmann refuses invalid UTF-8
    EXPECT_EQ(document.at("tables").at(0).at("name"), "caf\u00e9");
    EXPECT_EQ(document.at("tables").at(0).at("definition"), "ch\u00e8re");
}

TEST_F(ShowTest, MarkdownIsADataDictionary) {
    const std::string model = ImportSample("oracle_legacy_hr_cre.sql", "oracle");
    ASSERT_EQ(Run("show " + model + " --markdown"), 0) << Err();
    const std::string text = Out();
    EXPECT_EQ(text.rfind("# Data dictionary of ", 0), 0u);
    EXPECT_NE(text.find("\n## employees\n"), npos);
    EXPECT_NE(text.find("| Column | Type | Null | Default | Key | Description |\n|---|---|---|---|---|---|\n"), npos);
    EXPECT_NE(text.find("| `salary` | NUMBER(8,2) | yes |"), npos) << text;
    EXPECT_NE(text.find("- References `jobs` as `emp_job_fk`: `job_id` → `job_id`"), npos) << text;
    EXPECT_NE(text.find("- Referenced by `employees` as `emp_manager_fk`"), npos) << text;
}

TEST_F(ShowTest, EverySampleShowsInEveryFormat) {
    int shown = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSamples)) {
        const std::string name = entry.path().filename().string();
        if (name == "SOURCES.md") continue;
        SCOPED_TRACE(name);
        const std::string model = m_dir.File("sample.vrn");
        // Some files of the DB2 z/OS set hold only statements about tables of
        // the others, or only grants: alone they give no model.
        if (Run("import " + entry.path().string() + " -o " + model) != 0) continue;
        ++shown;
        ASSERT_EQ(Run("show " + model), 0) << Err();
        EXPECT_NE(Out().find("Holds "), npos);
        ASSERT_EQ(Run("show " + model + " --markdown"), 0) << Err();
        const json document = ShowJson(model);
        EXPECT_EQ(document.at("counts").at("tables").get<std::size_t>(), document.at("tables").size());
        std::remove(model.c_str());
    }
    EXPECT_EQ(shown, 20);  // of the 27 sample files
}

}  // namespace
