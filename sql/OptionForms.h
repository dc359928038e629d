// Physical options of a model written back as DDL clauses: the reverse of
// the keyword tables the parser reads them with. Each option of a table, an
// index or a partition (a storage parameter slot, or a property with its
// value) has one form per family of dialects that has it; an option the
// target family has no form for is named, so that the writer can say it left
// it out.
#pragma once

#include <array>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

enum class EOptionOwner { Table, Index, Partition };

struct CWrittenOptions {
    std::string clauses;               // " PCTFREE 10 NOLOGGING STORAGE (INITIAL 64K)", with a leading blank
    std::vector<std::string> leftOut;  // "PCTFREE 10", for each option the family has no form for
};

// `slots` are the eleven storage parameters (-1: not given); null for a partition, which keeps none.
CWrittenOptions WriteOptions(EOptionOwner owner, const std::array<int, 11>* slots,
                             const std::vector<CModelProperty>& properties, EPlatformFamily family);
