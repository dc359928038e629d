// CEnhMetaTableTbl: the meta tables of the model, one per row table, numbered
// by the table's row type. Each has a fixed, nonzero technical key that
// referenced-object rows carry to name the table they point into.
#pragma once

#include "framework/VrnExport.h"

class CVrnFile;

class VRN_EXPORT CEnhMetaTableTbl {
public:
    CEnhMetaTableTbl() = default;
    virtual ~CEnhMetaTableTbl() = default;

    // The technical key of meta table `metaTableNo`; 0 when the number is unknown.
    unsigned long GetTechKey(int metaTableNo) const;
    // Writes the meta tables into the file's MetaTable table.
    void Save(CVrnFile* file) const;

    // Technical keys are the row type offset into a key range of their own,
    // so that they are stable and never 0.
    static constexpr unsigned long kTechKeyBase = 1000;
};
