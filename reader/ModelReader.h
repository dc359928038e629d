/// @file
/// The model reader: a model file read once, whole, into plain C++ structures.
/// Every output of a model (reports, JSON, diagrams, DDL, comparisons) is
/// built on it; a client that wants to read a model from C++ uses it too.
///
/// @code
///   CModel model;
///   std::string error;
///   if (!ReadModelFile("sales.vrn", model, error)) { ... error says why ... }
///   for (const CModelTable& table : model.tables) ...
/// @endcode
///
/// Reading takes one query per table of the file; rows are joined in memory
/// by their keys, so the time grows with the number of rows, never with the
/// product of two counts. The structures refer to each other by index into
/// the model's vectors, never by pointer, so a model can be copied and moved.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/VrnExport.h"

/// A physical option kept by the property manager: a property number, its
/// value number, the catalogue's names for both, and the text and integer
/// stored with it.
struct CModelProperty {
    /// The property's number in the property catalogue.
    int propertyNo = 0;
    /// The number of the property's value in the catalogue; the text and integer below qualify it.
    int valueNo = 0;
    std::string name;   ///< the property's name in the catalogue ("" when unknown)
    std::string value;  ///< the value's text in the catalogue ("" when unknown)
    /// True when a text was stored with the property; `text` is "" otherwise.
    bool hasText = false;
    /// The text stored with the property: a name, a number as digits, a column's attribute number.
    std::string text;
    /// The integer stored with it: a partition column's sequence, 0 for every other property.
    int intArg = 0;
};

/// One column of a table: an attribute row of the model file, with its properties and the foreign keys that use it.
struct CModelColumn {
    std::uint32_t attributeNo = 0;  ///< number within the table; index, key and pair rows refer to it
    std::uint32_t attributeId = 0;  ///< the builder's identifier; 0 for a copy
    /// The column's position as the builder's client gave it.
    std::uint32_t sequenceNo = 0;
    std::string name;  ///< the column name
    /// The attribute's name, which may differ from the column name.
    std::string attributeName;
    /// The role name a migrated column has in its foreign key, "" for none.
    std::string roleName;
    std::string datatype;  ///< the model's datatype code ("VAR", "NUM", ...)
    /// The length or precision; 0 when none was given.
    int width = 0;
    /// The scale; 0 when none was given.
    int scale = 0;
    /// True when the column admits nulls.
    bool nullable = true;
    /// The default value's text, "" for none.
    std::string defaultText;
    /// The column's check constraint text, "" for none.
    std::string checkText;
    /// The column's definition, the descriptive text a client set for it; "" for none.
    std::string definition;
    std::string userDatatype;  ///< the user datatype's name, "" for none
    /// The identifier of its user datatype, 0 for none.
    std::uint32_t userDatatypeId = 0;
    std::uint32_t ruleId = 0;     ///< the bound rule, 0 for none
    std::uint32_t defaultId = 0;  ///< the bound default, 0 for none
    /// True when the column belongs to the table's primary key.
    bool inPrimaryKey = false;
    std::uint32_t relationKey = 0;  ///< the foreign key that migrated it here, 0 for none
    bool identity = false;          ///< an identity (auto-numbered) column
    /// The column's physical options, in the order they were set.
    std::vector<CModelProperty> properties;
    /// A copy of a migrated column that several relationships share: the
    /// model keeps one copy per further relationship. `copyOf` is the number
    /// of the column it copies, `copyFor` the index (into CModel::foreignKeys)
    /// of the relationship that uses the copy.
    bool isCopy = false;
    /// For a copy: the attribute number of the column it copies; 0 otherwise.
    std::uint32_t copyOf = 0;
    /// For a copy: the index into CModel::foreignKeys of the relationship whose pair uses it; -1 for a column
    /// that is no copy, or a copy that no pair uses.
    int copyFor = -1;
    /// Every foreign key (index into CModel::foreignKeys) whose child side
    /// uses this column or one of its copies.
    std::vector<int> foreignKeys;
};

/// One column of an index or primary key, in the index's order.
struct CModelIndexColumn {
    /// The attribute number of the column in its table.
    std::uint32_t attributeNo = 0;
    std::string name;  ///< the column's name, "" when the number names no column
    /// True for a descending column.
    bool descending = false;
};

/// A primary key or index of a table, with its columns, storage and partitions.
struct CModelIndex {
    /// The index key, unique among the model's primary keys and indexes.
    std::uint32_t key = 0;
    /// The index or primary key name.
    std::string name;
    char keyType = 'I';  ///< 'P' primary key, 'A' alternate key (unique), 'I' inversion entry
    /// True when the index is unique.
    bool unique = false;
    /// True when the index is clustered.
    bool clustered = false;
    /// The columns, in index order.
    std::vector<CModelIndexColumn> columns;
    /// The storage space (table space, file group) named for the index, "" for none.
    std::string storageSpace;
    std::array<int, 11> storageParams{};  ///< -1: not given
    /// The index's physical options, in the order they were set.
    std::vector<CModelProperty> properties;
    std::vector<int> partitions;  ///< indexes into CModel::partitions
};

/// One pair of a foreign key: a parent column and the child column that refers to it.
struct CModelColumnPair {
    /// The attribute number of the parent column in the parent table.
    std::uint32_t parentAttributeNo = 0;
    /// The attribute number of the child column in the child table.
    std::uint32_t childAttributeNo = 0;
    std::string parentColumn;  ///< "" when the number names no column
    /// The child column's name, "" when the number names no column.
    std::string childColumn;
};

/// A relationship from a parent table to a child table, carried by column pairs.
struct CModelForeignKey {
    /// The foreign key's key in the model file.
    std::uint32_t key = 0;
    /// The foreign key's name, "" when it has none.
    std::string name;
    int parentTable = -1;  ///< index into CModel::tables; -1 when the file names no such table
    /// The table that holds the foreign key: index into CModel::tables, -1 when the file names no such table.
    int childTable = -1;
    /// True for an identifying relationship (the child's key includes the migrated columns).
    bool identifying = false;
    bool optional = false;  ///< the child's columns admit nulls
    /// Referential actions: 'N' none, 'C' cascade, 'R' restrict, 'S' set null.
    char onDelete = 'N';
    /// The update action, in the same letters as onDelete.
    char onUpdate = 'N';
    std::uint32_t referencedKey = 0;  ///< the parent's alternate key it refers to, 0 for the primary key
    /// The column pairs, in sequence order.
    std::vector<CModelColumnPair> pairs;
};

/// A check constraint of a table or of one of its columns.
struct CModelCheck {
    /// The constraint's key in the model file.
    std::uint32_t key = 0;
    /// The constraint's name, "" when it has none.
    std::string name;
    /// The constraint's condition, as SQL text.
    std::string text;
    int table = -1;      ///< index into CModel::tables
    std::string column;  ///< "" for a table constraint
};

/// A partition of a table or of an index, with its properties.
struct CModelPartition {
    /// The partition's key, which its properties refer to.
    std::uint32_t key = 0;
    /// The partition's name.
    std::string name;
    bool ofIndex = false;  ///< a partition of an index, else of a table
    /// The key of the table or index it partitions.
    std::uint32_t ownerKey = 0;
    /// For an index partition, its sequence within the index (1, 2, 3, ...); 0 for a table partition.
    int intArg = 0;
    /// The partition's options, in the order they were set.
    std::vector<CModelProperty> properties;
};

/// A table or view of the model, with everything that belongs to it. Indexes and columns are held here; foreign keys,
/// checks and partitions are held by the model and referred to by index.
struct CModelTable {
    /// The entity key, which the file's other rows refer to the table by.
    std::uint32_t key = 0;
    std::string owner;  ///< as stored; catalogs pad some owners with spaces
    /// The table's name.
    std::string name;
    /// The table's definition, the descriptive text a client set for it; "" for none.
    std::string definition;
    /// The storage space (table space, file group) named for the table, "" for none.
    std::string storageSpace;
    std::array<int, 11> storageParams{};  ///< -1: not given
    /// The table's physical options, in the order they were set (overflow segment options are not read).
    std::vector<CModelProperty> properties;
    std::vector<CModelColumn> columns;  ///< the table's own columns, in order
    std::vector<CModelColumn> copies;   ///< copies of migrated columns (see CModelColumn)
    int primaryKey = -1;                ///< index into `indexes`, -1 for none
    std::vector<CModelIndex> indexes;   ///< the primary key first when there is one
    std::vector<int> checks;            ///< indexes into CModel::checks
    std::vector<int> foreignKeys;       ///< as child: indexes into CModel::foreignKeys
    std::vector<int> referencedBy;      ///< as parent: indexes into CModel::foreignKeys
    std::vector<int> partitions;        ///< indexes into CModel::partitions

    /// The column of that number, among the columns and then the copies; null when none.
    VRN_EXPORT const CModelColumn* FindColumn(std::uint32_t attributeNo) const;
};

/// A default or a rule: a named text that columns and user datatypes are bound to by its identifier.
struct CModelNamedText {  // a default or a rule
    /// Its identifier: its place in the list of defaults or of rules, from 1.
    std::uint32_t id = 0;
    /// Its name.
    std::string name;
    /// Its SQL text.
    std::string text;
};

/// A user datatype: a named base datatype, with the default and rule bound to it.
struct CModelUserDatatype {
    /// Its identifier: its place in the list of user datatypes, from 1.
    std::uint32_t id = 0;
    /// Its name.
    std::string name;
    /// The model's datatype code of its base type.
    std::string datatype;
    /// The base type's length or precision, 0 when none was given.
    int length = 0;
    /// The base type's scale, 0 when none was given.
    int scale = 0;
    /// The bound default's identifier, 0 for none.
    std::uint32_t defaultId = 0;
    /// The bound rule's identifier, 0 for none.
    std::uint32_t ruleId = 0;
};

/// A trigger, procedure or package, with its SQL text.
struct CModelCode {  // a trigger, procedure or package
    /// Its key in the model file.
    std::uint32_t key = 0;
    /// Its owner (schema), "" for none.
    std::string owner;
    /// Its name.
    std::string name;
    int kind = 0;  ///< triggers: 1 before, 2 after, 3 instead of; procedures: 1 procedure, 2 function
    /// True when the builder's client marked it invalid (SetTriggerInvalid, SetProcInvalid).
    bool invalid = false;
    int table = -1;    ///< triggers: index into CModel::tables
    std::string text;  ///< packages: the header
    std::string body;  ///< packages: the body
};

/// A storage object of the platform: a storage group, database, table space or buffer pool.
struct CModelStorageObject {
    /// Its key in the model file.
    std::uint32_t key = 0;
    int kind = 0;  ///< 1 storage group, 2 database, 3 table space, 4 buffer pool
    /// Its owner, "" for none.
    std::string owner;
    /// Its name.
    std::string name;
    /// Its SQL text.
    std::string text;
};

/// A referenced object row: four values and the meta table they refer to, as the builder was given them.
struct CModelReferencedObject {
    /// Its key in the model file.
    std::uint32_t key = 0;
    /// The four values, in the order AddReferencedObject took them.
    std::array<std::uint32_t, 4> values{};
    /// The technical key of the meta table the values refer to (1000 + row type).
    std::uint32_t metaTableKey = 0;
};

/// A whole model file, as ReadModelFile reads it. Tables, foreign keys and the other objects are in the order of the
/// file's rows; the structures refer to each other by index into these vectors.
struct CModel {
    /// The path the model was read from.
    std::string path;
    /// The file format version (see CVrnFile::kFormatVersion).
    int formatVersion = 0;
    bool hasPlatform = false;  ///< files written before the platform was kept have none
    /// The target platform code (see kPlatforms); meaningful only when hasPlatform is true.
    int platform = 0;
    std::string product;  ///< the program that wrote it
    /// The model row's name.
    std::string modelName;
    /// The diagram row's name.
    std::string diagramName;
    std::string created;  ///< "YYYY-MM-DD HH:MM:SS", local time
    /// When it was last saved, in the form of `created`.
    std::string modified;
    /// The tables and views.
    std::vector<CModelTable> tables;
    /// Every foreign key, each listed in its child table's foreignKeys and its parent table's referencedBy.
    std::vector<CModelForeignKey> foreignKeys;
    /// Every check constraint, each listed in its table's checks.
    std::vector<CModelCheck> checks;
    /// The defaults, in the order of the file's rows.
    std::vector<CModelNamedText> defaults;
    /// The rules, in the order of the file's rows.
    std::vector<CModelNamedText> rules;
    /// The user datatypes.
    std::vector<CModelUserDatatype> userDatatypes;
    /// The triggers.
    std::vector<CModelCode> triggers;
    /// The procedures and functions.
    std::vector<CModelCode> procedures;
    /// The packages, header and body merged into one.
    std::vector<CModelCode> packages;
    /// The referenced objects.
    std::vector<CModelReferencedObject> referencedObjects;
    /// The storage objects.
    std::vector<CModelStorageObject> storageObjects;
    /// Every partition, each listed in its table's or index's partitions.
    std::vector<CModelPartition> partitions;
};

/// Reads the model file at `path` into `model` (replacing what it held).
/// False, with the reason in `error`, when the file cannot be read or is not a
/// model file; the reasons are those of the library's own Open.
VRN_EXPORT bool ReadModelFile(const std::string& path, CModel& model, std::string& error);
