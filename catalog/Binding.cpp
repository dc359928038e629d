// Binding of defaults and rules to columns and user datatypes, given names as
// catalogs and scripts spell them: 'quoted', N'national', [bracketed],
// owner.table.column.
#include <cstring>

#include "builder/VrnAPI.h"
#include "catalog/CatalogText.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"

using vrn::StripBrackets;
using vrn::StripNPrefixRun;
using vrn::StripQuotesAndNPrefix;

namespace {

// The text after the last ".", or the whole text; null when there is no dot.
const char* AfterLastDot(const CString& text) {
    const char* dot = std::strrchr(text, '.');
    return dot ? dot + 1 : nullptr;
}

}  // namespace

unsigned long CVrnAPI::BindRule(const char* ruleName, const char* target) { return BindObject(ruleName, target, 1); }

unsigned long CVrnAPI::BindDefault(const char* defaultName, const char* target) {
    return BindObject(defaultName, target, 0);
}

unsigned long CVrnAPI::BindObject(const char* objectName, const char* target, int isRule) {
    // The object's own name keeps its double quotes, and its brackets when it
    // is not qualified: it is looked up as the catalog spelled it.
    CString name = StripQuotesAndNPrefix(objectName);
    if (const char* last = AfterLastDot(name)) name = StripBrackets(CString(last));
    const unsigned long objectId = isRule ? FindRule(name) : FindDefault(name);
    if (objectId == 0) return 0;

    CString table(target);
    table.TrimRight('\'');
    table.TrimLeft('\'');
    table.TrimRight('"');
    table.TrimLeft('"');
    table = StripNPrefixRun(table);
    CString column;
    if (const char* last = AfterLastDot(table)) {
        column = StripBrackets(CString(last));
        table = StripBrackets(table.Left(static_cast<int>(last - table.GetString()) - 1));
        if (const char* inner = AfterLastDot(table)) table = StripBrackets(CString(inner));
    } else {
        table = StripBrackets(table);
    }

    // A user datatype: by the target's name alone, or by the part after an
    // owner when no entity has the owner's name.
    auto bindUserType = [&](const char* typeName) -> unsigned long {
        const unsigned long typeId = FindUserType(typeName);
        CNSOutputUserDatatype* row = typeId ? FindUserType(typeId) : nullptr;
        if (!row) return 0;
        (isRule ? row->m_ruleId : row->m_defaultId) = static_cast<std::uint32_t>(objectId);
        return typeId;
    };
    if (column.IsEmpty()) return bindUserType(table);

    const unsigned long entityId = FindEntity(table, nullptr, 0);
    if (entityId == 0) return bindUserType(column);
    const unsigned long attributeId = FindAttribute(entityId, column);
    CVrnApiAttribute* attribute = attributeId ? m_attributeMap.Find(static_cast<std::uint32_t>(attributeId)) : nullptr;
    if (!attribute) return 0;
    (isRule ? attribute->m_ruleId : attribute->m_defaultId) = static_cast<std::uint32_t>(objectId);
    return entityId;
}
