// CPropertyMgr: the properties and partitions of the model's tables, indexes,
// attributes, partitions and overflow segments.
//
// A property record is (owner kind, owner key, property number, value number,
// optional text, integer). The manager accepts an insertion (returns 1) only
// when the owner key is nonzero and both numbers are in the property
// catalogue; otherwise it returns 0 and stores nothing. Records are kept in
// call order. Partitions get keys of their own (1, 2, 3, … per model file).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "framework/VrnExport.h"
#include "framework/AfxString.h"
#include "store/EnhMetaTableTbl.h"

class CVrnFile;
class CGuidMgr;

class VRN_EXPORT CPropertyMgr {
public:
    // `objectTypes` is accepted for the store's interface; this manager does not use it.
    CPropertyMgr(CVrnFile* file, CGuidMgr* objectTypes);
    virtual ~CPropertyMgr() = default;
    CPropertyMgr(const CPropertyMgr&) = delete;
    CPropertyMgr& operator=(const CPropertyMgr&) = delete;

    // Reads the properties and partitions of an opened file; returns 1.
    int Init();

    int InsertTableProperty(unsigned long tableKey, int property, int value, const char* text, int intArg);
    int InsertIndexProperty(unsigned long indexKey, int property, int value, const char* text, int intArg);
    int InsertAttributeProperty(unsigned long attributeKey, int property, int value, const char* text, int intArg);
    int InsertPartitionProperty(unsigned long partitionKey, int property, int value, const char* text, int intArg);
    int InsertOverflowSegmentProperty(unsigned long tableKey, int property, int value, const char* text, int intArg);

    // Make a partition of a table or index and give back its key in `newKey`.
    // Refused (0, newKey 0) for a zero owner key or an empty name.
    int InsertTablePartition(unsigned long tableKey, unsigned long& newKey, const char* name, unsigned long intArg);
    int InsertIndexPartition(unsigned long indexKey, unsigned long& newKey, const char* name, unsigned long intArg);

    // The latest record of `property` for the table: its text and value
    // number. 0 (text empty, value 0) when there is none.
    int GetTablePropertyValue(unsigned long tableKey, int property, CString& text, unsigned long& value) const;
    // The catalogue's text for a value number; "" for an unknown number.
    // The property catalogue, for readers of model files: the name of a
    // property number and the text of a value number; "" when unknown.
    static const char* PropertyName(int propertyNo);
    static const char* PropertyValueText(int valueNo);
    const char* GetPropertyValueString(int value) const;

    CEnhMetaTableTbl* m_pMetaTableTbl;

    // Writes properties, partitions, the value texts and the meta tables.
    void Save(CVrnFile* file);

    struct CRecord {
        std::string ownerKind;
        std::uint32_t ownerKey;
        int propertyNo;
        int valueNo;
        bool hasText;
        std::string text;
        std::int64_t intArg;
    };
    const std::vector<CRecord>& GetRecords() const { return m_records; }

private:
    struct CPartition {
        std::uint32_t key;
        std::string ownerKind;
        std::uint32_t ownerKey;
        std::string name;
        std::int64_t intArg;
    };

    int Insert(const char* ownerKind, unsigned long ownerKey, int property, int value, const char* text,
               int intArg);
    int InsertPartition(const char* ownerKind, unsigned long ownerKey, unsigned long& newKey, const char* name,
                        unsigned long intArg);

    CVrnFile* m_pFile;
    CEnhMetaTableTbl m_metaTables;
    std::vector<CRecord> m_records;
    // Latest record index per (owner kind, owner key, property), for read-back.
    std::map<std::tuple<std::string, std::uint32_t, int>, std::size_t> m_latest;
    std::vector<CPartition> m_partitions;
    std::uint32_t m_lastPartitionKey = 0;
};
