// Test helpers over the model reader alone (no importer, no client): a model
// saved and read back, lookups by name in the read structures, and changes
// between two models as lines a failed assertion prints whole.
#pragma once

#include <VrnIntf.h>
#include <VrnReader.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

// The model of a saved file; a failure when it cannot be read.
inline CModel ReadModel(const std::string& path) {
    CModel model;
    std::string error;
    EXPECT_TRUE(ReadModelFile(path, model, error)) << error;
    return model;
}

// The model the builder holds, saved to `path` and read back.
inline CModel SaveAndRead(CVrnAPI& builder, const std::string& path) {
    builder.SaveToFile(path.c_str());
    EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    return ReadModel(path);
}

// The table of that name (any letter case); null when the model has none.
inline const CModelTable* FindTable(const CModel& model, const std::string& name) {
    for (const CModelTable& table : model.tables)
        if (AfxCompareNoCase(table.name.c_str(), name.c_str()) == 0) return &table;
    return nullptr;
}

// The column of that name (any letter case); null when the table has none.
inline const CModelColumn* FindColumn(const CModelTable& table, const std::string& column) {
    for (const CModelColumn& each : table.columns)
        if (AfxCompareNoCase(each.name.c_str(), column.c_str()) == 0) return &each;
    return nullptr;
}

inline const CModelColumn* FindColumn(const CModel& model, const std::string& table, const std::string& column) {
    const CModelTable* found = FindTable(model, table);
    return found ? FindColumn(*found, column) : nullptr;
}

// Every field of a change but Describe's text, on one line:
// "Kind|object|field|before|after".
inline std::string ChangeLine(const CModelChange& change) {
    static const char* const kinds[] = {"Added", "Dropped", "Changed"};
    return std::string(kinds[static_cast<int>(change.change)]) + "|" + change.object + "|" + change.field + "|" +
           change.before + "|" + change.after;
}

inline std::vector<std::string> ChangeLines(const std::vector<CModelChange>& changes) {
    std::vector<std::string> lines;
    for (const CModelChange& change : changes) lines.push_back(ChangeLine(change));
    return lines;
}
