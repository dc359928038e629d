// Physical options as scripts spell them, as data: one table per object kind
// (tables, indexes, partitions, STORAGE clauses), each row a keyword, the
// model builder's property code it sets and the kind of argument it takes.
// One reader applies any of them; what is not a plain keyword with an
// argument (storage spaces, STORAGE clauses, partition lists) stays with the
// parser.
#pragma once

#include <string>

#include "DdlDecl.h"

enum class EOptionArgument {
    Number,          // a number; sizes with K, M or G in kilobytes; UNLIMITED
    Bytes,           // a size in bytes, or with K, M or G; kept in kilobytes (Oracle's INITIAL 65536 is 64)
    OptionalNumber,  // a number when one follows, else 0 (PARALLEL)
    Name,            // a name, as text (USING STOGROUP SG1)
    Word,            // the next word as it stands, as text (CLOSE YES, GBPCACHE ALL, PIECESIZE 2G)
    UpperWord,       // the next word in upper case, as text (BUFFER_POOL keep)
    On,              // no argument: the option set to 1
    Off,             // no argument: the option set to 0
};

struct COptionKeyword {
    const char* words;  // one or more words, space-separated, matched in any case
    int code;           // the model builder's property code
    EOptionArgument argument;
};

extern const COptionKeyword kTableOptions[];
extern const COptionKeyword kIndexOptions[];
extern const COptionKeyword kPartitionOptions[];
extern const COptionKeyword kStorageOptions[];

// Reads the option of `options` (a table ending with a row of null words)
// that starts at the cursor onto `read`; false, with the cursor where it
// was, when none does.
bool ReadOption(CSqlCursor& cursor, const COptionKeyword* options, COptionList& read);
