// A model builder with its protected row factory and key allocation opened up
// for tests, and helpers for the usual set-up.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include <VrnIntf.h>

#include "ModelFileReader.h"

class CTestBuilder : public CVrnAPI {
public:
    using CVrnAPI::AllocKey;
    using CVrnAPI::GetDTHandle;
    using CVrnAPI::DeleteForeignKey;
    using CVrnAPI::FindUserType;
    using CVrnAPI::RowObjectClassFactory;
    using CVrnAPI::UpdateRelationships;

    // A foreign key of the identifier map, or a pending one; null when neither.
    CVrnApiForeignKey* ForeignKeyById(unsigned long id) {
        if (CVrnApiForeignKey* known = m_foreignKeyMap.Find(static_cast<std::uint32_t>(id))) return known;
        for (POSITION pos = m_pendingForeignKeyList.GetHeadPosition(); pos;) {
            CVrnApiForeignKey* pending = m_pendingForeignKeyList.GetNext(pos);
            if (pending->m_fkKey == id) return pending;
        }
        return nullptr;
    }
    int ForeignKeyCount() const { return m_foreignKeyList.GetCount(); }
    int PendingForeignKeyCount() const { return m_pendingForeignKeyList.GetCount(); }
};

// Registers the three texts that name the model's own rows, and removes them
// again when it goes, so tests do not leak host texts into each other.
class CHostTexts {
public:
    CHostTexts(const char* product, const char* model, const char* diagram) {
        AfxSetResourceString(kHostTextProductName, product);
        AfxSetResourceString(kHostTextModelName, model);
        AfxSetResourceString(kHostTextDiagramName, diagram);
    }
    ~CHostTexts() {
        AfxSetResourceString(kHostTextProductName, nullptr);
        AfxSetResourceString(kHostTextModelName, nullptr);
        AfxSetResourceString(kHostTextDiagramName, nullptr);
    }
};

// A property record as "kind key property value text", with text 'quoted' or null.
inline std::string DescribeProperty(const CPropertyMgr::CRecord& r) {
    return r.ownerKind + " " + std::to_string(r.ownerKey) + " " + std::to_string(r.propertyNo) + " " +
           std::to_string(r.valueNo) + " " + (r.hasText ? "'" + r.text + "'" : "null");
}

// `pattern` with its placeholder K replaced by `key`.
inline std::string WithKey(std::string pattern, unsigned long key) {
    const std::size_t at = pattern.find('K');
    if (at != std::string::npos) pattern.replace(at, 1, std::to_string(key));
    return pattern;
}

// The columns of `row` named in `names` (separated by spaces) as
// "name=value name=value", so that several fields are compared at once and a
// mismatch shows every one of them.
inline std::string Fields(const CRowValues& row, const std::string& names) {
    std::istringstream list(names);
    std::string name, fields;
    while (list >> name) {
        const auto found = row.find(name);
        fields += (fields.empty() ? "" : " ") + name + "=" + (found == row.end() ? "<no column>" : found->second);
    }
    return fields;
}

// Saves `builder` as `name` in `dir`, expecting the save to succeed, and
// opens the saved file for reading.
inline std::unique_ptr<CModelFileReader> SaveAndOpen(CVrnAPI& builder, const CScratchDir& dir,
                                                    const std::string& name = "model.vrn") {
    const std::string path = dir.File(name);
    EXPECT_EQ(builder.SaveToFile(path.c_str()), 1);
    EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    return std::make_unique<CModelFileReader>(path);
}

// A test of a builder initialised for `platform` (Oracle 8.x unless given),
// with a scratch directory to save it in.
class CBuilderTest : public ::testing::Test {
protected:
    explicit CBuilderTest(int platform = 34) : m_platform(platform) {}
    void SetUp() override { ASSERT_EQ(m_builder.Initialize(m_platform, nullptr), 1); }
    // Saves the builder and opens the saved file, which stays open until the next save.
    CModelFileReader& Save() {
        m_reader = SaveAndOpen(m_builder, m_dir);
        return *m_reader;
    }

    const int m_platform;
    CScratchDir m_dir;
    CTestBuilder m_builder;
    std::unique_ptr<CModelFileReader> m_reader;
};
