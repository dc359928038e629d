// Defaults, rules and user datatypes: named catalog objects numbered by their
// place in their own list (1, 2, 3, … per kind), found by name without regard
// to case, the first of a name winning.
#include "builder/VrnAPI.h"
#include "catalog/CatalogText.h"

using vrn::CDatatypeText;
using vrn::ParseDatatypeText;
using vrn::StripCatalogQuotes;

namespace {

// Appends `row` to `list` and gives it its place in the list as identifier.
template <class Row>
std::uint32_t AppendNumbered(CTypedPtrList<CPtrList, Row*>& list, Row* row) {
    list.AddTail(row);
    return static_cast<std::uint32_t>(list.GetCount());
}

}  // namespace

namespace {

// A default or a rule: name and text as given, numbered by its place in its
// list, and found by name through the index (the first of a name wins).
template <class Row, class Base>
unsigned long AppendNamedText(Row* row, std::uint32_t Base::*id, const char* name, const char* text,
                              CTypedPtrList<CPtrList, Row*>& list, CFirstMatchNameIndex<Row>& index) {
    row->m_name = name;
    row->m_text = text;
    row->*id = AppendNumbered(list, row);
    index.AddIfAbsent(row->m_name, row);
    return row->*id;
}

}  // namespace

unsigned long CVrnAPI::AddDefault(const char* name, const char* text, const char* /*reserved*/) {
    return AppendNamedText(MakeRow<CNSOutputDefaults>(), &CDefaultsBase::m_defaultId,
                           name, text, m_defaultList, m_defaultIndex);
}

unsigned long CVrnAPI::FindDefault(const char* name) {
    const CNSOutputDefaults* row = m_defaultIndex.Find(name);
    return row ? row->m_defaultId : 0;
}

unsigned long CVrnAPI::AddRule(const char* name, const char* text, const char* /*reserved*/) {
    return AppendNamedText(MakeRow<CNSOutputRules>(), &CRulesBase::m_ruleId, name, text,
                           m_ruleList, m_ruleIndex);
}

unsigned long CVrnAPI::FindRule(const char* name) {
    const CNSOutputRules* row = m_ruleIndex.Find(name);
    return row ? row->m_ruleId : 0;
}

unsigned long CVrnAPI::AddUserType(const char* name, const char* datatype) {
    const CString typeName = StripCatalogQuotes(name);
    const CDatatypeText parsed = ParseDatatypeText(StripCatalogQuotes(datatype));
    const char* mapped = GetORVDatatype(parsed.baseType);
    if (!mapped) return 0;  // a base type the model has no code for: nothing is added

    auto* row = MakeRow<CNSOutputUserDatatype>();
    row->m_name = typeName;
    row->m_datatype = mapped;
    row->m_length = parsed.length;
    row->m_scale = parsed.scale;
    row->m_userDatatypeId = AppendNumbered(m_userDatatypeList, row);
    m_userDatatypeById.push_back(row);
    m_userDatatypeIndex.AddIfAbsent(row->m_name, row);
    return row->m_userDatatypeId;
}

unsigned long CVrnAPI::FindUserType(const char* name) {
    const CNSOutputUserDatatype* row = m_userDatatypeIndex.Find(name);
    return row ? row->m_userDatatypeId : 0;
}

CNSOutputUserDatatype* CVrnAPI::FindUserType(unsigned long userDatatypeId) {
    if (userDatatypeId == 0 || userDatatypeId > m_userDatatypeById.size()) return nullptr;
    return m_userDatatypeById[userDatatypeId - 1];
}
