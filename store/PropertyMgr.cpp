#include "store/PropertyMgr.h"

#include <limits>

#include "store/PropertyCatalog.h"
#include "store/TableWriter.h"
#include "store/VrnFile.h"

using vrn::CPropertyInfo;
using vrn::CPropertyValueInfo;
using vrn::CStatement;
using vrn::CStoreDb;
using vrn::CTableWriter;
using vrn::FindProperty;
using vrn::FindPropertyValue;
using vrn::kPropertyValueCount;
using vrn::kPropertyValues;

namespace {

bool FitsKey(unsigned long key) { return key != 0 && key <= std::numeric_limits<std::uint32_t>::max(); }

}  // namespace

CPropertyMgr::CPropertyMgr(CVrnFile* file, CGuidMgr* /*objectTypes*/) : m_pMetaTableTbl(&m_metaTables), m_pFile(file) {}

int CPropertyMgr::Init() {
    m_records.clear();
    m_latest.clear();
    m_partitions.clear();
    m_lastPartitionKey = 0;
    if (!m_pFile || !m_pFile->IsOpenedFile()) return 1;
    CStoreDb& db = m_pFile->GetDb();
    CStatement props = db.Prepare(
        "SELECT owner_kind, owner_key, property_no, value_no, text, int_arg FROM Property ORDER BY prop_seq");
    while (props.Step()) {
        CRecord record{props.ColumnText(0),
                       static_cast<std::uint32_t>(props.ColumnInt(1)),
                       static_cast<int>(props.ColumnInt(2)),
                       static_cast<int>(props.ColumnInt(3)),
                       !props.ColumnIsNull(4),
                       props.ColumnText(4),
                       props.ColumnInt(5)};
        m_latest[std::make_tuple(record.ownerKind, record.ownerKey, record.propertyNo)] = m_records.size();
        m_records.push_back(std::move(record));
    }
    CStatement parts =
        db.Prepare("SELECT partition_key, owner_kind, owner_key, name, int_arg FROM Partition ORDER BY partition_key");
    while (parts.Step()) {
        CPartition partition{static_cast<std::uint32_t>(parts.ColumnInt(0)), parts.ColumnText(1),
                             static_cast<std::uint32_t>(parts.ColumnInt(2)), parts.ColumnText(3), parts.ColumnInt(4)};
        if (partition.key > m_lastPartitionKey) m_lastPartitionKey = partition.key;
        m_partitions.push_back(std::move(partition));
    }
    return 1;
}

int CPropertyMgr::Insert(const char* ownerKind, unsigned long ownerKey, int property, int value, const char* text,
                         int intArg) {
    if (!FitsKey(ownerKey) || !FindProperty(property) || !FindPropertyValue(value)) return 0;
    const auto key = static_cast<std::uint32_t>(ownerKey);
    m_latest[std::make_tuple(std::string(ownerKind), key, property)] = m_records.size();
    m_records.push_back(CRecord{ownerKind, key, property, value, text != nullptr, text ? text : "", intArg});
    return 1;
}

int CPropertyMgr::InsertTableProperty(unsigned long tableKey, int property, int value, const char* text, int intArg) {
    return Insert("table", tableKey, property, value, text, intArg);
}

int CPropertyMgr::InsertIndexProperty(unsigned long indexKey, int property, int value, const char* text, int intArg) {
    return Insert("index", indexKey, property, value, text, intArg);
}

int CPropertyMgr::InsertAttributeProperty(unsigned long attributeKey, int property, int value, const char* text,
                                          int intArg) {
    return Insert("attribute", attributeKey, property, value, text, intArg);
}

int CPropertyMgr::InsertPartitionProperty(unsigned long partitionKey, int property, int value, const char* text,
                                          int intArg) {
    return Insert("partition", partitionKey, property, value, text, intArg);
}

int CPropertyMgr::InsertOverflowSegmentProperty(unsigned long tableKey, int property, int value, const char* text,
                                                int intArg) {
    return Insert("overflow", tableKey, property, value, text, intArg);
}

int CPropertyMgr::InsertPartition(const char* ownerKind, unsigned long ownerKey, unsigned long& newKey,
                                  const char* name, unsigned long intArg) {
    newKey = 0;
    if (!FitsKey(ownerKey) || !name || !*name) return 0;
    if (m_lastPartitionKey == std::numeric_limits<std::uint32_t>::max()) return 0;
    newKey = ++m_lastPartitionKey;
    m_partitions.push_back(CPartition{m_lastPartitionKey, ownerKind, static_cast<std::uint32_t>(ownerKey), name,
                                      static_cast<std::int64_t>(intArg)});
    return 1;
}

int CPropertyMgr::InsertTablePartition(unsigned long tableKey, unsigned long& newKey, const char* name,
                                       unsigned long intArg) {
    return InsertPartition("table", tableKey, newKey, name, intArg);
}

int CPropertyMgr::InsertIndexPartition(unsigned long indexKey, unsigned long& newKey, const char* name,
                                       unsigned long intArg) {
    return InsertPartition("index", indexKey, newKey, name, intArg);
}

int CPropertyMgr::GetTablePropertyValue(unsigned long tableKey, int property, CString& text,
                                        unsigned long& value) const {
    text.Empty();
    value = 0;
    if (!FitsKey(tableKey)) return 0;
    const auto found = m_latest.find(std::make_tuple(std::string("table"), static_cast<std::uint32_t>(tableKey), property));
    if (found == m_latest.end()) return 0;
    const CRecord& record = m_records[found->second];
    text = record.text;
    value = static_cast<unsigned long>(record.valueNo);
    return 1;
}

const char* CPropertyMgr::PropertyName(int propertyNo) {
    const CPropertyInfo* info = FindProperty(propertyNo);
    return info ? info->name : "";
}

const char* CPropertyMgr::PropertyValueText(int valueNo) {
    const CPropertyValueInfo* info = FindPropertyValue(valueNo);
    return info ? info->text : "";
}

const char* CPropertyMgr::GetPropertyValueString(int value) const {
    const CPropertyValueInfo* info = FindPropertyValue(value);
    return info ? info->text : "";
}

void CPropertyMgr::Save(CVrnFile* file) {
    if (!file) return;
    CTableWriter properties(*file, "Property", "prop_seq, owner_kind, owner_key, property_no, value_no, text, int_arg");
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        const CRecord& record = m_records[i];
        CStatement& row = properties.Row();
        row.BindInt(1, static_cast<std::int64_t>(i + 1));
        row.BindText(2, record.ownerKind.c_str());
        row.BindInt(3, record.ownerKey);
        row.BindInt(4, record.propertyNo);
        row.BindInt(5, record.valueNo);
        row.BindText(6, record.hasText ? record.text.c_str() : nullptr);
        row.BindInt(7, record.intArg);
        properties.Add();
    }

    CTableWriter partitions(*file, "Partition", "partition_key, owner_kind, owner_key, name, int_arg");
    for (const CPartition& entry : m_partitions) {
        CStatement& row = partitions.Row();
        row.BindInt(1, entry.key);
        row.BindText(2, entry.ownerKind.c_str());
        row.BindInt(3, entry.ownerKey);
        row.BindText(4, entry.name.c_str());
        row.BindInt(5, entry.intArg);
        partitions.Add();
    }

    CTableWriter valueTexts(*file, "PropertyValue", "value_no, text");
    for (int i = 0; i < kPropertyValueCount; ++i) {
        valueTexts.Row().BindInt(1, kPropertyValues[i].valueNo);
        valueTexts.Row().BindText(2, kPropertyValues[i].text);
        valueTexts.Add();
    }

    m_metaTables.Save(file);
}
