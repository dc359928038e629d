#include "builder/OptionTables.h"

namespace vrn {

namespace {

constexpr CBufferPool kBufferPools[] = {
    {"DEFAULT", 31, 14},
    {"KEEP", 32, 32},
    {"RECYCLE", 33, 33},
};

}  // namespace

const CBufferPool* FindBufferPool(const CString& keyword) {
    for (const CBufferPool& pool : kBufferPools)
        if (keyword == pool.keyword) return &pool;
    return nullptr;
}

}  // namespace vrn
