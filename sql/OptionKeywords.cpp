#include "OptionKeywords.h"

#include <cctype>
#include <sstream>
#include <utility>
#include <vector>

#include "SqlCursor.h"

namespace {

// The model builder's property codes of physical options.
constexpr int kInitial = 16, kNext = 17, kFreeLists = 18, kFreeListGroups = 19, kMinExtents = 20, kMaxExtents = 21,
              kPctFree = 22, kPctUsed = 23, kPctIncrease = 24, kIniTrans = 25, kMaxTrans = 26, kBufferPool = 27,
              kLogging = 28, kMonitoring = 29, kCache = 30, kStorageGroup = 31, kVcat = 32, kRowMovement = 33,
              kCompress = 35, kReverse = 38, kCluster = 40, kCopy = 48, kClose = 49, kErase = 50, kDefine = 51,
              kPieceSize = 52, kGbpCache = 53, kParallel = 55, kIndexOrganized = 73;

using A = EOptionArgument;

COptionValue Number(int code, long number) {
    COptionValue value;
    value.code = code;
    value.number = number;
    return value;
}

COptionValue Text(int code, std::string text) {
    COptionValue value;
    value.code = code;
    value.isText = true;
    value.text = std::move(text);
    return value;
}

}  // namespace

const COptionKeyword kTableOptions[] = {
    {"PCTFREE", kPctFree, A::Number},
    {"PCTUSED", kPctUsed, A::Number},
    {"INITRANS", kIniTrans, A::Number},
    {"MAXTRANS", kMaxTrans, A::Number},
    {"LOGGING", kLogging, A::On},
    {"NOLOGGING", kLogging, A::Off},
    {"CACHE", kCache, A::On},
    {"NOCACHE", kCache, A::Off},
    {"MONITORING", kMonitoring, A::On},
    {"NOMONITORING", kMonitoring, A::Off},
    {"PARALLEL", kParallel, A::OptionalNumber},
    {"ORGANIZATION INDEX", kIndexOrganized, A::On},
    {"ENABLE ROW MOVEMENT", kRowMovement, A::On},
    {nullptr, 0, A::On},
};

const COptionKeyword kIndexOptions[] = {
    {"PCTFREE", kPctFree, A::Number},
    {"INITRANS", kIniTrans, A::Number},
    {"MAXTRANS", kMaxTrans, A::Number},
    {"REVERSE", kReverse, A::On},
    {"USING STOGROUP", kStorageGroup, A::Name},
    {"USING VCAT", kVcat, A::Name},
    {"PRIQTY", kInitial, A::Number},
    {"SECQTY", kNext, A::Number},
    {"BUFFERPOOL", kBufferPool, A::Name},
    {"NOT CLUSTER", kCluster, A::Off},
    {"CLUSTER", kCluster, A::On},
    {"CLOSE", kClose, A::Word},
    {"DEFINE", kDefine, A::Word},
    {"ERASE", kErase, A::Word},
    {"COPY", kCopy, A::Word},
    {"GBPCACHE", kGbpCache, A::Word},
    {"PIECESIZE", kPieceSize, A::Word},
    {"COMPRESS NO", kCompress, A::Off},
    {"COMPRESS YES", kCompress, A::On},
    {"COMPRESS", kCompress, A::On},  // a prefix length after it is passed over
    {"NOCOMPRESS", kCompress, A::Off},
    {nullptr, 0, A::On},
};

const COptionKeyword kPartitionOptions[] = {
    {"PCTFREE", kPctFree, A::Number},
    {"PCTUSED", kPctUsed, A::Number},
    {"LOGGING", kLogging, A::On},
    {"NOLOGGING", kLogging, A::Off},
    {nullptr, 0, A::On},
};

const COptionKeyword kStorageOptions[] = {
    {"INITIAL", kInitial, A::Bytes},
    {"NEXT", kNext, A::Bytes},
    {"MINEXTENTS", kMinExtents, A::Number},
    {"MAXEXTENTS", kMaxExtents, A::Number},
    {"PCTINCREASE", kPctIncrease, A::Number},
    {"FREELIST GROUPS", kFreeListGroups, A::Number},
    {"FREELISTS", kFreeLists, A::Number},
    {"BUFFER_POOL", kBufferPool, A::UpperWord},
    {nullptr, 0, A::On},
};

bool ReadOption(CSqlCursor& cursor, const COptionKeyword* options, COptionList& read) {
    const std::size_t start = cursor.Position();
    for (const COptionKeyword* option = options; option->words; ++option) {
        cursor.Seek(start);
        std::istringstream words(option->words);
        bool matched = true;
        for (std::string word; matched && words >> word;) matched = cursor.AcceptWord(word.c_str());
        if (!matched) continue;
        long number = 0;
        switch (option->argument) {
            case A::Number:
                if (!cursor.ReadNumber(number)) break;
                read.push_back(Number(option->code, number));
                return true;
            case A::Bytes: {
                const CToken* size = cursor.Peek();
                const bool inBytes = size && size->kind == CTokenKind::Number &&
                                     std::isdigit(static_cast<unsigned char>(size->text.back()));
                if (!cursor.ReadNumber(number)) break;
                // Rounded up: a size of a few bytes is not none.
                if (inBytes) number = number / 1024 + (number % 1024 != 0 ? 1 : 0);
                read.push_back(Number(option->code, number));
                return true;
            }
            case A::OptionalNumber:
                if (!cursor.ReadNumber(number)) number = 0;
                read.push_back(Number(option->code, number));
                return true;
            case A::Name:
                read.push_back(Text(option->code, cursor.ReadName().Name()));
                return true;
            case A::Word:
            case A::UpperWord: {
                const CToken* word = cursor.Next();
                if (!word) break;
                std::string text = option->argument == A::UpperWord ? UpperAscii(word->text) : word->text;
                read.push_back(Text(option->code, std::move(text)));
                return true;
            }
            case A::On:
                read.push_back(Number(option->code, 1));
                return true;
            case A::Off:
                read.push_back(Number(option->code, 0));
                return true;
        }
    }
    cursor.Seek(start);
    return false;
}
