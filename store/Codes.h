/// @file
/// The store's two numberings, named once: row types (one per row class, the
/// number the row factory makes a row by) and key classes (the key
/// allocator's key spaces). They are different numberings: an entity is row
/// type 40 but key class 35. Both are part of the model file's contract, so
/// the numbers never change.
#pragma once

/// The row types: each value is the number by which the row factory makes the row class of that name
/// (a row class states its own as kRowType); the model file numbers its object types and meta tables by it.
enum class ERowType : int {
    Attribute = 12,
    CheckConstraint = 14,
    Trigger = 23,
    Package = 24,
    Default = 26,
    Diagram = 29,
    Entity = 40,
    ForeignKey = 46,
    ForeignKeyColumn = 47,
    IndexColumn = 53,
    Index = 54,
    IndexStorage = 55,
    Model = 65,
    PrimaryKey = 75,
    Procedure = 76,
    ReferencedObject = 82,
    Rule = 86,
    StorageObject = 89,
    TableStorage = 100,
    UserDatatype = 104,
    Version = 110,
};

/// The key classes: each value names one key space of the key allocator, in which the keys of that kind of
/// object count 1, 2, 3, ...; the model file keeps each class's last key in its KeyAllocator table.
enum class EKeyClass : int {
    Attribute = 12,
    CheckConstraint = 14,
    Trigger = 22,
    Package = 23,
    Entity = 35,
    ForeignKey = 40,
    ForeignKeyColumnPair = 41,
    Index = 47,  // primary keys and indexes share one key space
    Procedure = 67,
    ReferencedObject = 73,
    StorageObject = 77,
};
