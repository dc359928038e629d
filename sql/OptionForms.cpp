#include "OptionForms.h"

#include <cstdlib>

namespace {

enum EFamilies : unsigned { kOracle = 1, kDb2 = 2 };

unsigned FamilyBit(EPlatformFamily family) {
    switch (family) {
        case EPlatformFamily::Oracle: return kOracle;
        case EPlatformFamily::Db2Luw:
        case EPlatformFamily::Db2ZOs:
        case EPlatformFamily::As400: return kDb2;
        default: return 0;
    }
}

// A storage parameter slot: the keyword that sets it, whether it goes in
// Oracle's STORAGE ( ... ) clause, and whether it is a size in kilobytes.
struct CSlotForm {
    EOptionOwner owner;
    int slot;  // 1 to 11
    unsigned families;
    const char* keyword;
    bool inStorage;
    bool kilobytes;
};

const CSlotForm kSlotForms[] = {
    {EOptionOwner::Table, 3, kOracle, "INITIAL", true, true},
    {EOptionOwner::Table, 4, kOracle, "NEXT", true, true},
    {EOptionOwner::Table, 5, kOracle, "PCTFREE", false, false},
    {EOptionOwner::Table, 6, kOracle, "PCTUSED", false, false},
    {EOptionOwner::Table, 7, kOracle, "MINEXTENTS", true, false},
    {EOptionOwner::Table, 8, kOracle, "MAXEXTENTS", true, false},
    {EOptionOwner::Table, 9, kOracle, "PCTINCREASE", true, false},
    {EOptionOwner::Table, 10, kOracle, "FREELISTS", true, false},
    {EOptionOwner::Table, 11, kOracle, "FREELIST GROUPS", true, false},
    {EOptionOwner::Index, 2, kDb2, "PIECESIZE", false, true},
    {EOptionOwner::Index, 3, kOracle, "INITIAL", true, true},
    {EOptionOwner::Index, 3, kDb2, "PRIQTY", false, false},
    {EOptionOwner::Index, 4, kOracle, "NEXT", true, true},
    {EOptionOwner::Index, 4, kDb2, "SECQTY", false, false},
    {EOptionOwner::Index, 5, kOracle | kDb2, "PCTFREE", false, false},
    {EOptionOwner::Index, 7, kOracle, "MINEXTENTS", true, false},
    {EOptionOwner::Index, 8, kOracle, "MAXEXTENTS", true, false},
    {EOptionOwner::Index, 9, kOracle, "PCTINCREASE", true, false},
    {EOptionOwner::Index, 10, kOracle, "FREELISTS", true, false},
    {EOptionOwner::Index, 11, kOracle, "FREELIST GROUPS", true, false},
};

// How a property with its value is written.
enum class EForm {
    ValueName,    // the value's name is the clause: NOLOGGING, ORGANIZATION INDEX, CLOSE YES
    KeywordText,  // the keyword and the property's text: INITRANS 4, USING STOGROUP SG1
    KeywordValue, // the keyword and the value's name: GBPCACHE CHANGED
    Size,         // the keyword and the text, a size in kilobytes: INITIAL 64K
    Skip,         // kept elsewhere by the writer (partition limits and spaces, partition columns)
};

struct CPropertyForm {
    int propertyNo;
    int valueNo;  // 0 for any value
    unsigned families;
    EForm form;
    const char* keyword;
    bool inStorage;
};

const CPropertyForm kPropertyForms[] = {
    {0, 0, kOracle, EForm::ValueName, nullptr, false},                // REVERSE
    {1, 3, kOracle, EForm::ValueName, nullptr, false},                // COMPRESS
    {1, 2, kOracle, EForm::ValueName, nullptr, false},                // NOCOMPRESS
    {1, 3, kDb2, EForm::ValueName, "COMPRESS YES", false},
    {1, 2, kDb2, EForm::ValueName, "COMPRESS NO", false},
    {3, 0, kOracle, EForm::ValueName, nullptr, false},                // LOGGING / NOLOGGING
    {4, 0, kOracle, EForm::ValueName, nullptr, false},                // CACHE / NOCACHE
    {5, 0, kDb2, EForm::KeywordText, "USING STOGROUP", false},
    {6, 0, kDb2, EForm::KeywordText, "USING VCAT", false},
    {7, 0, kOracle | kDb2, EForm::Skip, nullptr, false},              // partition columns
    {8, 0, kOracle | kDb2, EForm::Skip, nullptr, false},              // partition limits
    {9, 0, kOracle | kDb2, EForm::Skip, nullptr, false},              // a partition's storage space
    {10, 0, kOracle, EForm::Size, "INITIAL", true},
    {11, 0, kOracle, EForm::Size, "NEXT", true},
    {12, 0, kOracle, EForm::KeywordText, "MINEXTENTS", true},
    {13, 0, kOracle, EForm::KeywordText, "MAXEXTENTS", true},
    {14, 0, kOracle, EForm::KeywordText, "PCTINCREASE", true},
    {15, 0, kOracle, EForm::KeywordText, "PCTFREE", false},
    {16, 0, kOracle, EForm::KeywordText, "PCTUSED", false},
    {17, 24, kOracle, EForm::ValueName, nullptr, false},              // MONITORING
    {17, 22, kOracle, EForm::ValueName, nullptr, false},              // NOMONITORING
    {18, 0, kOracle, EForm::KeywordText, "PARALLEL", false},
    {20, 0, kOracle, EForm::KeywordText, "FREELISTS", true},
    {21, 0, kOracle, EForm::KeywordText, "FREELIST GROUPS", true},
    {22, 0, kOracle, EForm::KeywordText, "INITRANS", false},
    {23, 0, kOracle, EForm::KeywordText, "MAXTRANS", false},
    {24, 0, kOracle, EForm::KeywordValue, "BUFFER_POOL", true},
    {24, 0, kDb2, EForm::KeywordText, "BUFFERPOOL", false},
    {25, 34, kOracle, EForm::ValueName, nullptr, false},              // ENABLE ROW MOVEMENT
    {29, 0, kOracle, EForm::ValueName, nullptr, false},               // ORGANIZATION INDEX
    {43, 0, kDb2, EForm::KeywordValue, "GBPCACHE", false},
    {44, 0, kDb2, EForm::ValueName, nullptr, false},                  // CLOSE YES
    {45, 0, kDb2, EForm::ValueName, nullptr, false},                  // DEFINE NO
    {46, 0, kDb2, EForm::ValueName, nullptr, false},                  // ERASE YES
    {60, 0, kDb2, EForm::ValueName, nullptr, false},                  // COPY YES
};

std::string Kilobytes(long value) { return std::to_string(value) + "K"; }

std::string SlotValue(const CSlotForm& form, int value) {
    if (std::string(form.keyword) == "MAXEXTENTS" && value == 2147483647) return "UNLIMITED";
    return form.kilobytes ? Kilobytes(value) : std::to_string(value);
}

const CPropertyForm* FindForm(const CModelProperty& property, unsigned family) {
    for (const CPropertyForm& form : kPropertyForms)
        if (form.propertyNo == property.propertyNo && (form.valueNo == 0 || form.valueNo == property.valueNo) &&
            (form.families & family))
            return &form;
    return nullptr;
}

// A property as it reads in a report, for the list of what was left out.
std::string Described(const CModelProperty& property) {
    std::string text = property.value.empty() ? property.name : property.value;
    if (property.hasText) text += " " + property.text;
    return text;
}

}  // namespace

CWrittenOptions WriteOptions(EOptionOwner owner, const std::array<int, 11>* slots,
                             const std::vector<CModelProperty>& properties, EPlatformFamily family) {
    const unsigned bit = FamilyBit(family);
    CWrittenOptions written;
    std::string storage;
    auto add = [&](const std::string& clause, bool inStorage) {
        (inStorage ? storage : written.clauses) += " " + clause;
    };
    if (slots) {
        for (int slot = 1; slot <= 11; ++slot) {
            const int value = (*slots)[static_cast<std::size_t>(slot - 1)];
            if (value < 0) continue;
            const CSlotForm* found = nullptr;
            for (const CSlotForm& form : kSlotForms)
                if (form.owner == owner && form.slot == slot && (form.families & bit)) found = &form;
            if (found)
                add(std::string(found->keyword) + " " + SlotValue(*found, value), found->inStorage);
            else
                written.leftOut.push_back("storage parameter " + std::to_string(slot) + " = " + std::to_string(value));
        }
    }
    for (const CModelProperty& property : properties) {
        const CPropertyForm* form = FindForm(property, bit);
        if (!form) {
            written.leftOut.push_back(Described(property));
            continue;
        }
        switch (form->form) {
            case EForm::ValueName: add(form->keyword ? form->keyword : property.value, form->inStorage); break;
            case EForm::KeywordText: add(std::string(form->keyword) + " " + property.text, form->inStorage); break;
            case EForm::KeywordValue: add(std::string(form->keyword) + " " + property.value, form->inStorage); break;
            case EForm::Size:
                add(std::string(form->keyword) + " " + Kilobytes(std::strtol(property.text.c_str(), nullptr, 10)),
                    form->inStorage);
                break;
            case EForm::Skip: break;
        }
    }
    if (!storage.empty()) written.clauses += " STORAGE (" + storage.substr(1) + ")";
    return written;
}
