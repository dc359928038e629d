// The model reader: a model file read once, whole, into plain C++ structures.
// Every output of a model (reports, JSON, diagrams, DDL, comparisons) is
// built on it; a client that wants to read a model from C++ uses it too.
//
//   CModel model;
//   std::string error;
//   if (!ReadModelFile("sales.vrn", model, error)) { ... error says why ... }
//   for (const CModelTable& table : model.tables) ...
//
// Reading takes one query per table of the file; rows are joined in memory
// by their keys, so the time grows with the number of rows, never with the
// product of two counts. The structures refer to each other by index into
// the model's vectors, never by pointer, so a model can be copied and moved.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/VrnExport.h"

// A physical option kept by the property manager: a property number, its
// value number, the catalogue's names for both, and the text and integer
// stored with it.
struct CModelProperty {
    int propertyNo = 0;
    int valueNo = 0;
    std::string name;   // the property's name in the catalogue ("" when unknown)
    std::string value;  // the value's text in the catalogue ("" when unknown)
    bool hasText = false;
    std::string text;
    int intArg = 0;
};

struct CModelColumn {
    std::uint32_t attributeNo = 0;  // number within the table; index, key and pair rows refer to it
    std::uint32_t attributeId = 0;  // the builder's identifier; 0 for a copy
    std::uint32_t sequenceNo = 0;
    std::string name;               // the column name
    std::string attributeName;
    std::string roleName;
    std::string datatype;           // the model's datatype code ("VAR", "NUM", ...)
    int width = 0;
    int scale = 0;
    bool nullable = true;
    std::string defaultText;
    std::string checkText;
    std::string definition;
    std::string userDatatype;       // the user datatype's name, "" for none
    std::uint32_t userDatatypeId = 0;
    std::uint32_t ruleId = 0;       // the bound rule, 0 for none
    std::uint32_t defaultId = 0;    // the bound default, 0 for none
    bool inPrimaryKey = false;
    std::uint32_t relationKey = 0;  // the foreign key that migrated it here, 0 for none
    bool identity = false;          // an identity (auto-numbered) column
    std::vector<CModelProperty> properties;
    // A copy of a migrated column that several relationships share: the
    // model keeps one copy per further relationship. `copyOf` is the number
    // of the column it copies, `copyFor` the index (into CModel::foreignKeys)
    // of the relationship that uses the copy.
    bool isCopy = false;
    std::uint32_t copyOf = 0;
    int copyFor = -1;
    // Every foreign key (index into CModel::foreignKeys) whose child side
    // uses this column or one of its copies.
    std::vector<int> foreignKeys;
};

struct CModelIndexColumn {
    std::uint32_t attributeNo = 0;
    std::string name;  // the column's name, "" when the number names no column
    bool descending = false;
};

struct CModelIndex {
    std::uint32_t key = 0;
    std::string name;
    char keyType = 'I';  // 'P' primary key, 'A' alternate key (unique), 'I' inversion entry
    bool unique = false;
    bool clustered = false;
    std::vector<CModelIndexColumn> columns;
    std::string storageSpace;
    std::array<int, 11> storageParams{};  // -1: not given
    std::vector<CModelProperty> properties;
    std::vector<int> partitions;  // indexes into CModel::partitions
};

struct CModelColumnPair {
    std::uint32_t parentAttributeNo = 0;
    std::uint32_t childAttributeNo = 0;
    std::string parentColumn;  // "" when the number names no column
    std::string childColumn;
};

struct CModelForeignKey {
    std::uint32_t key = 0;
    std::string name;
    int parentTable = -1;  // index into CModel::tables; -1 when the file names no such table
    int childTable = -1;
    bool identifying = false;
    bool optional = false;  // the child's columns admit nulls
    // Referential actions: 'N' none, 'C' cascade, 'R' restrict, 'S' set null.
    char onDelete = 'N';
    char onUpdate = 'N';
    std::uint32_t referencedKey = 0;  // the parent's alternate key it refers to, 0 for the primary key
    std::vector<CModelColumnPair> pairs;
};

struct CModelCheck {
    std::uint32_t key = 0;
    std::string name;
    std::string text;
    int table = -1;          // index into CModel::tables
    std::string column;      // "" for a table constraint
};

struct CModelPartition {
    std::uint32_t key = 0;
    std::string name;
    bool ofIndex = false;    // a partition of an index, else of a table
    std::uint32_t ownerKey = 0;
    int intArg = 0;
    std::vector<CModelProperty> properties;
};

struct CModelTable {
    std::uint32_t key = 0;
    std::string owner;       // as stored; catalogs pad some owners with spaces
    std::string name;
    std::string definition;
    std::string storageSpace;
    std::array<int, 11> storageParams{};  // -1: not given
    std::vector<CModelProperty> properties;
    std::vector<CModelColumn> columns;  // the table's own columns, in order
    std::vector<CModelColumn> copies;   // copies of migrated columns (see CModelColumn)
    int primaryKey = -1;                // index into `indexes`, -1 for none
    std::vector<CModelIndex> indexes;   // the primary key first when there is one
    std::vector<int> checks;            // indexes into CModel::checks
    std::vector<int> foreignKeys;       // as child: indexes into CModel::foreignKeys
    std::vector<int> referencedBy;      // as parent: indexes into CModel::foreignKeys
    std::vector<int> partitions;        // indexes into CModel::partitions

    // The column of that number, among the columns and then the copies; null when none.
    VRN_EXPORT const CModelColumn* FindColumn(std::uint32_t attributeNo) const;
};

struct CModelNamedText {  // a default or a rule
    std::uint32_t id = 0;
    std::string name;
    std::string text;
};

struct CModelUserDatatype {
    std::uint32_t id = 0;
    std::string name;
    std::string datatype;
    int length = 0;
    int scale = 0;
    std::uint32_t defaultId = 0;
    std::uint32_t ruleId = 0;
};

struct CModelCode {  // a trigger, procedure or package
    std::uint32_t key = 0;
    std::string owner;
    std::string name;
    int kind = 0;            // triggers: 1 before, 2 after, 3 instead of; procedures: 1 procedure, 2 function
    bool invalid = false;
    int table = -1;          // triggers: index into CModel::tables
    std::string text;        // packages: the header
    std::string body;        // packages: the body
};

struct CModelStorageObject {
    std::uint32_t key = 0;
    int kind = 0;            // 1 storage group, 2 database, 3 table space, 4 buffer pool
    std::string owner;
    std::string name;
    std::string text;
};

struct CModelReferencedObject {
    std::uint32_t key = 0;
    std::array<std::uint32_t, 4> values{};
    std::uint32_t metaTableKey = 0;
};

struct CModel {
    std::string path;
    int formatVersion = 0;
    bool hasPlatform = false;  // files written before the platform was kept have none
    int platform = 0;
    std::string product;       // the program that wrote it
    std::string modelName;
    std::string diagramName;
    std::string created;       // "YYYY-MM-DD HH:MM:SS", local time
    std::string modified;
    std::vector<CModelTable> tables;
    std::vector<CModelForeignKey> foreignKeys;
    std::vector<CModelCheck> checks;
    std::vector<CModelNamedText> defaults;
    std::vector<CModelNamedText> rules;
    std::vector<CModelUserDatatype> userDatatypes;
    std::vector<CModelCode> triggers;
    std::vector<CModelCode> procedures;
    std::vector<CModelCode> packages;
    std::vector<CModelReferencedObject> referencedObjects;
    std::vector<CModelStorageObject> storageObjects;
    std::vector<CModelPartition> partitions;
};

// Reads the model file at `path` into `model` (replacing what it held).
// False, with the reason in `error`, when the file cannot be read or is not a
// model file; the reasons are those of the library's own Open.
VRN_EXPORT bool ReadModelFile(const std::string& path, CModel& model, std::string& error);
