#include "FamilyCatalog.h"

void CIndexRows::Add(const std::string& schema, const std::string& table, const std::string& name, bool primary,
                     bool unique, const std::string* column, bool descending) {
    const std::string key = Key(schema, table) + '\x1e' + name;
    auto [entry, added] = m_indexes.emplace(key, CRead());
    CRead& read = entry->second;
    if (added) {
        m_order.push_back(key);
        read.schema = schema;
        read.table = table;
        read.primary = primary;
        read.index.name = name;
        read.index.table = Name(schema, table);
        read.index.unique = unique;
    }
    if (!column) {
        read.index.expression = "(an expression)";
        return;
    }
    read.index.columns.push_back(*column);
    read.index.descending.push_back(descending);
}

void CIndexRows::MoveTo(CCatalogParts& parts) {
    for (const std::string& key : m_order) {
        CRead& read = m_indexes[key];
        const auto table = parts.tables->find(Key(read.schema, read.table));
        if (table == parts.tables->end()) continue;
        if (read.primary) {
            CConstraintDecl primaryKey;
            primaryKey.kind = EConstraintKind::PrimaryKey;
            primaryKey.name = read.index.name;
            primaryKey.columns = read.index.columns;
            table->second.elements.emplace_back(std::move(primaryKey));
            continue;
        }
        CStatementDecl statement;
        statement.kind = "CREATE INDEX";
        statement.declaration = std::move(read.index);
        parts.indexes.push_back(std::move(statement));
    }
    m_indexes.clear();
    m_order.clear();
}

void CForeignKeyRows::Add(const std::string& schema, const std::string& table, const std::string& name,
                          const CQualifiedName& parent, int onDelete, int onUpdate, const std::string& childColumn,
                          const std::string& parentColumn) {
    const std::string key = Key(schema, table) + '\x1e' + name;
    auto [entry, added] = m_keys.emplace(key, CAlterDecl());
    if (added) {
        m_order.push_back(key);
        entry->second.table = Name(schema, table);
        CConstraintDecl constraint;
        constraint.kind = EConstraintKind::ForeignKey;
        constraint.name = name;
        constraint.reference.name = name;
        constraint.reference.parent = parent;
        constraint.reference.onDelete = onDelete;
        constraint.reference.onUpdate = onUpdate;
        entry->second.items.emplace_back(std::move(constraint));
    }
    CForeignKeyDecl& reference = std::get<CConstraintDecl>(entry->second.items.front()).reference;
    reference.childColumns.push_back(childColumn);
    reference.parentColumns.push_back(parentColumn);
}

void CForeignKeyRows::MoveTo(CCatalogParts& parts) {
    for (const std::string& key : m_order) {
        CAlterDecl& alter = m_keys[key];
        if (!parts.tables->count(Key(alter.table.Owner(), alter.table.Name()))) continue;
        CStatementDecl statement;
        statement.kind = "ALTER TABLE";
        statement.declaration = std::move(alter);
        parts.foreignKeys.push_back(std::move(statement));
    }
    m_keys.clear();
    m_order.clear();
}
