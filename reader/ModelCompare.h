/// @file
/// Two models compared object by object: what was added, dropped or changed
/// going from `before` to `after`.
///
/// @code
///   for (const CModelChange& change : CompareModels(before, after))
///       std::printf("%s\n", change.Describe().c_str());
/// @endcode
///
/// Objects are matched by what a user names them by, never by the keys,
/// identifiers or row order of the files: tables by owner and name, columns
/// by name, foreign keys by their tables and columns, and so on (see
/// docs/reader.md). Names match without regard to letter case. A model
/// compared with a copy of itself, or with the same model built in another
/// order, gives no change.
#pragma once

#include <string>
#include <vector>

#include "framework/VrnExport.h"
#include "reader/ModelReader.h"

/// What happened to an object going from one model to the other: it was added (only in the second), dropped
/// (only in the first) or changed (in both, with a field that differs).
enum class EModelChange { Added, Dropped, Changed };

/// One difference between two models, as CompareModels lists it.
struct CModelChange {
    EModelChange change = EModelChange::Changed;  ///< added, dropped, or changed in one field
    /// What the change is about, readable: "table SALES.ORDERS",
    /// "table SALES.ORDERS column QTY", "foreign key FK_X of SALES.ORDERS",
    /// "user datatype Flag", "procedure dbo.p", ... Names are spelled as in
    /// `before`, or as in `after` for an added object.
    std::string object;
    /// The table the object belongs to ("SALES.ORDERS"), "" for objects of
    /// the model itself (tables, user datatypes, code, storage objects).
    std::string table;
    /// For Changed: which field ("datatype", "width", "nullable", "default",
    /// "columns", "on delete", "text", "storage space", "property Logging", ...).
    std::string field;
    /// The field's values as text, before and after the change; "" for Added and Dropped.
    ///@{
    std::string before, after;
    ///@}

    /// One line: "table ORDERS column QTY: width 10 -> 12",
    /// "table ORDERS: column NOTE added", "procedure dbo.p: text changed"
    /// (values that span lines or run long are not repeated).
    VRN_EXPORT std::string Describe() const;
};

/// Which kinds of object to compare; all by default. Tables themselves (added
/// or dropped) are always compared.
struct CCompareOptions {
    bool columns = true;         ///< columns and their fields, position included
    bool keysAndIndexes = true;  ///< primary keys and other indexes
    bool foreignKeys = true;     ///< foreign keys: name, parent columns, identifying, optional and actions
    bool checks = true;          ///< check constraints
    bool userDatatypes = true;   ///< user datatypes, defaults and rules
    bool code = true;            ///< triggers, procedures and packages
    bool partitions = true;      ///< partitions of tables and of indexes
    bool storage = true;         ///< storage spaces and parameters, properties of tables and indexes
    bool storageObjects = true;  ///< storage groups, databases, table spaces, buffer pools
};

/// The changes from `before` to `after`, in a stable order: tables in
/// `before`'s order, then the added ones; within a table its own storage, its
/// columns, primary key, indexes, foreign keys, checks and partitions; then
/// defaults, rules, user datatypes, triggers, procedures, packages and storage
/// objects. An added or dropped table is one change: its contents are not
/// listed again.
VRN_EXPORT std::vector<CModelChange> CompareModels(const CModel& before, const CModel& after,
                                                   const CCompareOptions& options = {});
