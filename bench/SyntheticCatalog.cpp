#include "SyntheticCatalog.h"

#include <cstdint>
#include <string>

namespace {

constexpr int kUserDatatypes = 500;
constexpr int kDefaultsAndRules = 50;
constexpr int kColumns = 20;

// A small deterministic generator, so that every run builds the same catalog.
struct CRandom {
    std::uint64_t state;
    std::uint32_t Next() {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<std::uint32_t>(state >> 33);
    }
    long Below(long n) { return n > 0 ? static_cast<long>(Next() % static_cast<std::uint32_t>(n)) : 0; }
};

const char* const kBaseTypes[] = {"varchar(20)", "decimal(10,2)", "int", "char(5)", "date"};
const char* const kColumnTypes[] = {"int", "varchar", "decimal", "date", "timestamp", "char", "smallint", "float"};

}  // namespace

CCatalogSize DescribeSyntheticCatalog(CVrnAPI& builder, long tables) {
    CRandom random{0x5eed + static_cast<std::uint64_t>(tables)};
    CCatalogSize size;
    for (int i = 0; i < kDefaultsAndRules; ++i) {
        const std::string n = std::to_string(i);
        builder.AddDefault(("df_" + n).c_str(), ("(" + n + ")").c_str(), nullptr);
        builder.AddRule(("rl_" + n).c_str(), ("@v >= " + n).c_str(), nullptr);
    }
    for (int i = 0; i < kUserDatatypes; ++i) {
        const std::string name = "ut_" + std::to_string(i);
        builder.AddUserType(name.c_str(), kBaseTypes[i % 5]);
        if (i % 5 == 0) builder.BindRule(("rl_" + std::to_string(i % kDefaultsAndRules)).c_str(), name.c_str());
    }

    std::string name, column, text;
    for (long t = 0; t < tables; ++t) {
        name = "T" + std::to_string(t);
        const unsigned long entity = builder.AddEntity(name.c_str(), "APP", 0, 0);
        ++size.tables;
        for (int c = 0; c < kColumns; ++c) {
            const char* datatype = nullptr;
            long width = -1, scale = -1;
            if (c == 0 || c >= kColumns - 2) {
                column = c == 0 ? "ID" : (c == kColumns - 2 ? "PARENT1_ID" : "PARENT2_ID");
                datatype = "int";
            } else if (c == 1) {
                column = "CODE";
                datatype = "varchar";
                width = 20;
            } else if (c % 4 == 0) {
                column = "UT_COL" + std::to_string(c);
                text = "ut_" + std::to_string(random.Below(kUserDatatypes));
                datatype = text.c_str();
            } else {
                column = "COL" + std::to_string(c);
                datatype = kColumnTypes[random.Below(8)];
                if (datatype[0] == 'v' || datatype[0] == 'c') width = 1 + random.Below(200);
                if (datatype[0] == 'd' && datatype[1] == 'e') {
                    width = 10 + random.Below(9);
                    scale = random.Below(4);
                }
            }
            builder.AddAttribute(entity, column.c_str(), datatype, width, scale, c < 2 ? 0 : 1, 0);
            ++size.attributes;
        }
        // Every seventh table is identified through its first parent.
        const bool identifying = t > 0 && t % 7 == 0;
        builder.AddPrimaryKey(entity, ("PK_" + name).c_str());
        builder.AddPrimaryKeyColumn(entity, "ID", 0);
        if (identifying) builder.AddPrimaryKeyColumn(entity, "PARENT1_ID", 0);
        const unsigned long unique = builder.AddIndex(entity, ("UX_" + name).c_str());
        builder.AddIndexColumn(unique, "CODE", 0, 0);
        builder.SetIndexProperty(unique, 34, 1);
        const unsigned long index = builder.AddIndex(entity, nullptr);
        builder.AddIndexColumn(index, "COL2", 0, 0);
        builder.AddIndexColumn(index, "COL3", 0, 1);
        builder.SetIndexProperty(index, 22, 10);

        if (t > 0) {
            const unsigned long parent = builder.FindEntity(("T" + std::to_string(random.Below(t))).c_str(), "APP", 0);
            const unsigned long first = builder.AddForeignKey(parent, entity, ("FK1_" + name).c_str(), nullptr, nullptr);
            builder.AddForeignKeyColumnPair(first, "ID", "PARENT1_ID", 0);
            builder.SetForeignKeyProperty(first, 77, 1);
            ++size.foreignKeys;
            if (t % 2 == 0) {
                // The second parent's key is walked rather than named.
                const unsigned long other = builder.FindEntity(("T" + std::to_string(random.Below(t))).c_str(), nullptr, 0);
                const unsigned long second = builder.AddForeignKey(other, entity, ("FK2_" + name).c_str(), nullptr, nullptr);
                builder.AddForeignKeyColumnPair(second, nullptr, "PARENT2_ID", 0);
                ++size.foreignKeys;
            }
        }
        builder.AddCheckConstraint(("CK_" + name).c_str(), "ID > 0", entity, "ID", 0);
        builder.BindDefault(("df_" + std::to_string(t % kDefaultsAndRules)).c_str(), (name + ".COL5").c_str());
        builder.SetEntityStringProperty(entity, 15, "USERS");
        if (t % 10 == 0) {
            builder.AddTrigger(("TR_" + name).c_str(), "APP", "begin null; end;", 2, entity);
            builder.AddProcedure(("P_" + name).c_str(), "APP", "begin null; end;", 1);
        }
    }
    return size;
}
