#include "DdlImporter.h"

#include <cctype>

#include <VrnReader.h>

#include "DdlParser.h"
#include "SqlLexer.h"
#include "SqlScript.h"

namespace {

// Property codes of the model builder that the importer sets itself; the
// rest come with the declarations.
namespace code {
constexpr int kStorageSpace = 15, kUnique = 34, kCluster = 40, kPartitionLimit = 54;
constexpr int kDefinition = 2, kDefaultText = 9;  // entity and attribute texts
constexpr int kComputedExpression = 87;           // attribute text
}  // namespace code

// The client's own numbering of procedure kinds, as the model keeps them.
constexpr int kProcedure = 1, kFunction = 2;

// A name's owner for the builder: null when the script gives none.
const char* OwnerOrNull(const std::string& owner) { return owner.empty() ? nullptr : owner.c_str(); }
const char* NameOrNull(const std::string& name) { return name.empty() ? nullptr : name.c_str(); }

// Options onto whatever `number` and `text` set: a table's, an index's or a partition's.
template <class SetNumber, class SetText>
void ApplyOptions(const COptionList& options, SetNumber number, SetText text) {
    for (const COptionValue& option : options) {
        if (option.isText)
            text(option.code, option.text.c_str());
        else
            number(option.code, option.number);
    }
}

bool HasColumnNamed(CVrnApiEntity* entity, const std::string& name) {
    if (!entity) return false;
    auto& columns = entity->GetAttrPtrList();
    for (POSITION pos = columns.GetHeadPosition(); pos;)
        if (name == columns.GetNext(pos)->GetColumnName()) return true;
    return false;
}

}  // namespace

unsigned long CDdlImporter::FindTable(const CQualifiedName& name) {
    if (name.Empty()) return 0;
    const std::string owner = name.Owner();
    return m_builder.FindEntity(name.Name().c_str(), OwnerOrNull(owner), 0);
}

void CDdlImporter::ImportScript(const std::string& sourceName, const std::string& text, const CDialect* dialect) {
    std::vector<std::string> unresolved;
    const std::string prepared = PrepareScriptText(text, m_tags, unresolved);
    for (const std::string& tag : unresolved)
        m_report.warnings.push_back(sourceName + ": template tag &$" + tag + ". replaced by its name " + tag);
    const CDialect chosen = dialect ? *dialect : DialectOfPlatform(m_builder.GetDbType(), false);
    ForEachStatement(prepared, chosen.EndsStatementsAtNextStart(),
                     [&](const CSqlStatement& statement, const std::string& source) {
                         Apply(ParseStatement(statement, source), sourceName);
                     });
}

void CDdlImporter::Apply(CStatementDecl statement, const std::string& source) {
    ++m_report.statements;
    const std::string where = source + ":" + std::to_string(statement.line);
    for (const std::string& warning : statement.warnings) Warn(where, warning);
    statement.warnings.clear();
    const std::string kind = statement.kind;
    std::vector<std::string> warnings;
    const CDeclaredScript::EResult result = m_declared.Add(std::move(statement), source, warnings);
    for (const std::string& warning : warnings) Warn(where, warning);
    if (result == CDeclaredScript::EResult::Applied) ++m_report.applied;
    if (result == CDeclaredScript::EResult::Skipped) m_report.Skip(kind, where);
}

void CDdlImporter::Settle(CStatementDecl statement, const std::string& source, bool applied) {
    const std::string where = source + ":" + std::to_string(statement.line);
    switch (ApplyDeclaration(statement, where)) {
        case EOutcome::Applied: ++m_report.applied; break;
        case EOutcome::Skipped:
            if (applied) ++m_report.applied;
            else m_report.Skip(statement.kind, where);
            break;
        case EOutcome::Deferred: m_deferred.push_back(CDeferred{std::move(statement), source, applied}); break;
    }
}

CDdlImporter::EOutcome CDdlImporter::DeferOrSkip(const std::string& where, const std::string& warning) {
    if (!m_retrying) return EOutcome::Deferred;
    Warn(where, warning);
    return EOutcome::Skipped;
}

CDdlImporter::EOutcome CDdlImporter::ApplyDeclaration(CStatementDecl& statement, const std::string& where) {
    CDeclaration& declaration = statement.declaration;
    if (auto* table = std::get_if<CTableDecl>(&declaration)) return ApplyTable(*table, where);
    if (auto* index = std::get_if<CIndexDecl>(&declaration)) return ApplyIndex(*index, where);
    if (auto* alter = std::get_if<CAlterDecl>(&declaration)) return ApplyAlter(*alter, where);
    if (auto* view = std::get_if<CViewDecl>(&declaration)) return ApplyView(*view);
    if (auto* code = std::get_if<CCodeDecl>(&declaration)) return ApplyCode(*code, where);
    if (auto* object = std::get_if<CStorageObjectDecl>(&declaration)) return ApplyStorageObject(*object);
    if (auto* object = std::get_if<CDefaultOrRuleDecl>(&declaration)) return ApplyDefaultOrRule(*object);
    if (auto* type = std::get_if<CUserTypeDecl>(&declaration)) return ApplyUserType(*type, where);
    if (auto* type = std::get_if<CObjectTypeDecl>(&declaration)) return ApplyObjectType(*type);
    if (auto* comment = std::get_if<CCommentDecl>(&declaration)) return ApplyComment(*comment, where);
    if (auto* binding = std::get_if<CBindingDecl>(&declaration)) return ApplyBinding(*binding, where);
    if (auto* sqlId = std::get_if<CSqlIdDecl>(&declaration)) {
        m_builder.SetDB2SqlId(sqlId->id.c_str());
        return EOutcome::Applied;
    }
    return EOutcome::Skipped;
}

CDdlImporter::EOutcome CDdlImporter::ApplyTable(const CTableDecl& table, const std::string& where) {
    if (!table.like.Empty()) return ApplyTableLike(table, where);
    const std::string owner = table.name.Owner();
    const unsigned long entity = m_builder.AddEntity(table.name.Name().c_str(), OwnerOrNull(owner), 0, 0);
    if (!entity) {
        Warn(where, "table " + table.name.Name() + " not added: the model already holds it, or cannot take its name");
        return EOutcome::Skipped;
    }
    m_report.Count("tables");
    if (!table.ofType.empty()) {
        const auto type = m_objectTypes.find(UpperAscii(table.ofType));
        if (type == m_objectTypes.end())
            Warn(where, "table " + table.name.Name() + " is of object type " + table.ofType +
                            ", which the script does not create: it has no columns");
        else
            ApplyElements(entity, type->second, where);
    }
    ApplyElements(entity, table.elements, where);
    if (!table.storageSpace.empty())
        m_builder.SetEntityStringProperty(entity, code::kStorageSpace, table.storageSpace.c_str());
    ApplyOptions(
        table.options, [&](int code, long value) { m_builder.SetEntityProperty(entity, code, value); },
        [&](int code, const char* text) { m_builder.SetEntityStringProperty(entity, code, text); });
    for (const std::string& column : table.partitionColumns)
        m_builder.AddTablePartitionColumn(entity, column.c_str(), 0);
    for (const CPartitionDecl& decl : table.partitions) {
        const unsigned long partition = m_builder.AddTablePartition(entity, decl.name.c_str());
        if (!partition) continue;
        m_report.Count("partitions");
        m_tablePartitions[entity].push_back(decl.name);
        ApplyPartition(partition, decl);
    }
    return EOutcome::Applied;
}

// CREATE TABLE name LIKE other (DB2): the columns of `other` when the model
// has it; without it (a catalog table, say) the table is made without
// columns, and that is said.
CDdlImporter::EOutcome CDdlImporter::ApplyTableLike(const CTableDecl& table, const std::string& where) {
    const std::string owner = table.name.Owner();
    const unsigned long entity = m_builder.AddEntity(table.name.Name().c_str(), OwnerOrNull(owner), 0, 0);
    if (!entity) return EOutcome::Skipped;
    m_report.Count("tables");
    const unsigned long source = FindTable(table.like);
    CVrnApiEntity* model = source ? m_builder.GetEntityPtr(source) : nullptr;
    if (!model) {
        Warn(where, "table " + table.name.Name() + " is like " + table.like.Name() +
                        ", which the model does not hold: it has no columns");
        return EOutcome::Applied;
    }
    // Each column by the name the model's own spelling of its type reads
    // back to the same datatype code, with its width, scale and nullability.
    auto& columns = model->GetAttrPtrList();
    for (POSITION pos = columns.GetHeadPosition(); pos;) {
        CVrnApiAttribute* column = columns.GetNext(pos);
        const CTypeNameRow* type = FindTypeName(column->GetDatatype());
        const std::string typeName =
            type ? type->spellings[static_cast<int>(ETypeDialect::Generic)].name : column->GetDatatype();
        m_builder.AddAttribute(entity, column->GetColumnName(), typeName.c_str(), column->m_width, column->m_scale,
                               column->m_nullOption, 0);
        m_report.Count("columns");
    }
    return EOutcome::Applied;
}

void CDdlImporter::ApplyElements(unsigned long entity, const std::vector<CTableElement>& elements,
                                 const std::string& where) {
    for (const CTableElement& element : elements) {
        if (const auto* column = std::get_if<CColumnDecl>(&element))
            ApplyColumn(entity, *column, where);
        else
            ApplyConstraint(entity, std::get<CConstraintDecl>(element));
    }
}

bool CDdlImporter::ApplyColumn(unsigned long entity, const CColumnDecl& column, const std::string& where) {
    // The builder takes a second column of a name; a script's server would
    // refuse it. Names are compared exactly: quoted names that differ in
    // case only ("TEST", "test") are different columns. Tables have at most
    // about a thousand columns, so the scan stays small.
    if (HasColumnNamed(m_builder.GetEntityPtr(entity), column.name)) {
        Warn(where, "column " + column.name + " appears twice in its table: the second is skipped");
        return false;
    }
    const int nullOption = column.nullOption >= 0 ? column.nullOption : m_builder.GetNullableDefault();
    const unsigned long attribute = m_builder.AddAttribute(entity, column.name.c_str(), NameOrNull(column.datatype),
                                                           column.width, column.scale, nullOption, 0);
    if (!attribute) {
        Warn(where, "column " + column.name + " not added");
        return false;
    }
    m_report.Count("columns");
    if (!column.datatype.empty()) {
        // The builder takes a type it has no code for as CHAR(10), owner qualifier dropped.
        const std::size_t dot = column.datatype.rfind('.');
        const std::string type = dot == std::string::npos || dot == 0 ? column.datatype : column.datatype.substr(dot + 1);
        if (!m_builder.GetORVDatatype(type.c_str()) && !m_builder.FindUserType(type.c_str()))
            Warn(where, "column " + column.name + ": type " + column.datatype +
                            " has no datatype code on this platform; the model keeps it as CHAR(10)");
    }
    if (!column.defaultText.empty())
        m_builder.SetAttributeStringProperty(attribute, code::kDefaultText, column.defaultText.c_str());
    for (const auto& [propertyCode, value] : column.properties) m_builder.SetAttributeProperty(attribute, propertyCode, value);
    if (!column.generatedExpression.empty()) {
        m_builder.SetAttributeStringProperty(attribute, code::kComputedExpression, column.generatedExpression.c_str());
        Warn(where, "generated column " + column.name + ": kept with its expression " + column.generatedExpression +
                        " as its computed expression");
    }
    for (const CConstraintDecl& constraint : column.constraints) ApplyConstraint(entity, constraint);
    return true;
}

bool CDdlImporter::ApplyConstraint(unsigned long entity, const CConstraintDecl& constraint) {
    switch (constraint.kind) {
        case EConstraintKind::PrimaryKey:
        case EConstraintKind::Unique:
            return AddKeyIndex(entity, constraint) != 0;
        case EConstraintKind::ForeignKey:
            m_foreignKeys.push_back(CPendingForeignKey{entity, constraint.reference});
            return true;
        case EConstraintKind::Check:
            m_builder.AddCheckConstraint(NameOrNull(constraint.name), constraint.checkText.c_str(), entity,
                                         NameOrNull(constraint.column), 0);
            m_report.Count("check constraints");
            return true;
    }
    return false;
}

// A primary key, or a unique constraint as a unique index.
unsigned long CDdlImporter::AddKeyIndex(unsigned long entity, const CConstraintDecl& key) {
    unsigned long index = 0;
    if (key.kind == EConstraintKind::PrimaryKey) {
        if (m_builder.GetPrimaryKeyIndexId(entity) != 0) return 0;  // a second primary key is not one
        m_builder.AddPrimaryKey(entity, NameOrNull(key.name));
        for (const std::string& column : key.columns) m_builder.AddPrimaryKeyColumn(entity, column.c_str(), 0);
        index = m_builder.GetPrimaryKeyIndexId(entity);
        m_report.Count("primary keys");
    } else {
        index = m_builder.AddIndex(entity, NameOrNull(key.name));
        for (const std::string& column : key.columns) m_builder.AddIndexColumn(index, column.c_str(), 0, 0);
        m_builder.SetIndexProperty(index, code::kUnique, 1);
        m_report.Count("indexes");
    }
    if (key.clustered) m_builder.SetIndexProperty(index, code::kCluster, 1);
    return index;
}

void CDdlImporter::ApplyPartition(unsigned long partition, const CPartitionDecl& decl) {
    if (!decl.limit.empty()) m_builder.SetPartitionStringProperty(partition, code::kPartitionLimit, decl.limit.c_str());
    if (!decl.storageSpace.empty())
        m_builder.SetPartitionStringProperty(partition, code::kStorageSpace, decl.storageSpace.c_str());
    ApplyOptions(
        decl.options, [&](int code, long value) { m_builder.SetPartitionProperty(partition, code, value); },
        [&](int code, const char* text) { m_builder.SetPartitionStringProperty(partition, code, text); });
}

CDdlImporter::EOutcome CDdlImporter::ApplyIndex(const CIndexDecl& decl, const std::string& where) {
    const unsigned long entity = FindTable(decl.table);
    if (!entity) return DeferOrSkip(where, "index " + decl.name + " on unknown table " + decl.table.Name() + " skipped");
    // The model keeps indexes on columns: one on expressions is not written
    // with a column list it does not have.
    if (!decl.expression.empty()) {
        Warn(where, "index " + decl.name + " on " + decl.table.Name() + " skipped: it indexes the expression " +
                        decl.expression + ", and a model keeps indexes on columns only");
        return EOutcome::Skipped;
    }
    const unsigned long index = m_builder.AddIndex(entity, decl.name.c_str());
    if (!index) {
        Warn(where, "index " + decl.name + " on " + decl.table.Name() + " not added");
        return EOutcome::Skipped;
    }
    if (!decl.condition.empty())
        Warn(where, "index " + decl.name + ": its condition (" + decl.condition +
                        ") is not kept: a model has no partial indexes");
    for (std::size_t i = 0; i < decl.columns.size(); ++i) {
        if (!m_builder.AddIndexColumn(index, decl.columns[i].c_str(), 0, decl.descending[i] ? 1 : 0))
            Warn(where, "index " + decl.name + ": column " + decl.columns[i] + " not found");
    }
    m_builder.SetIndexProperty(index, code::kUnique, decl.unique ? 1 : 0);
    if (decl.clustered >= 0) m_builder.SetIndexProperty(index, code::kCluster, decl.clustered);
    m_report.Count("indexes");
    if (!decl.storageSpace.empty())
        m_builder.SetIndexStringProperty(index, code::kStorageSpace, decl.storageSpace.c_str());
    ApplyOptions(
        decl.options, [&](int code, long value) { m_builder.SetIndexProperty(index, code, value); },
        [&](int code, const char* text) { m_builder.SetIndexStringProperty(index, code, text); });
    if (decl.local && decl.partitions.empty()) {
        // A local index without a list of its own follows its table's partitions.
        for (const std::string& partition : m_tablePartitions[entity])
            if (m_builder.AddIndexPartition(index, partition.c_str())) m_report.Count("partitions");
    }
    for (const CPartitionDecl& partitionDecl : decl.partitions) {
        const unsigned long partition = m_builder.AddIndexPartition(index, partitionDecl.name.c_str());
        if (!partition) continue;
        m_report.Count("partitions");
        ApplyPartition(partition, partitionDecl);
    }
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyAlter(const CAlterDecl& alter, const std::string& where) {
    const unsigned long entity = FindTable(alter.table);
    if (!entity) return DeferOrSkip(where, "ALTER TABLE of unknown table " + alter.table.Name() + " skipped");
    bool applied = false;
    for (const CAlterItem& item : alter.items) {
        if (const auto* column = std::get_if<CColumnDecl>(&item)) {
            applied = ApplyColumn(entity, *column, where) || applied;
        } else if (const auto* constraint = std::get_if<CConstraintDecl>(&item)) {
            applied = ApplyConstraint(entity, *constraint) || applied;
        } else if (const auto* value = std::get_if<CColumnDefaultDecl>(&item)) {
            const CColumnDefaultDecl& columnDefault = *value;
            const unsigned long attribute = m_builder.FindAttribute(entity, columnDefault.column.c_str());
            if (attribute && m_builder.SetAttributeStringProperty(attribute, code::kDefaultText, columnDefault.text.c_str()))
                applied = true;
            else
                Warn(where, "default for column " + columnDefault.column + ", which " + alter.table.Name() +
                                " does not have, skipped");
        }
    }
    return applied ? EOutcome::Applied : EOutcome::Skipped;
}

CDdlImporter::EOutcome CDdlImporter::ApplyView(const CViewDecl& view) {
    const std::string owner = view.name.Owner();
    const unsigned long entity = m_builder.AddEntity(view.name.Name().c_str(), OwnerOrNull(owner), 0, 1);
    if (!entity) return EOutcome::Skipped;
    m_builder.GetEntityPtr(entity)->SetViewSQL(CString(view.text));
    m_report.Count("views");
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyCode(const CCodeDecl& code, const std::string& where) {
    const std::string name = code.name.Name(), owner = code.name.Owner();
    unsigned long added = 0;
    const char* kind = "procedures";
    switch (code.kind) {
        case ECodeKind::Package:
        case ECodeKind::PackageBody: {
            const bool body = code.kind == ECodeKind::PackageBody;
            added = m_builder.AddPackage(name.c_str(), owner.c_str(), code.text.c_str(), body);
            kind = body ? "package bodies" : "packages";
            break;
        }
        case ECodeKind::Trigger: {
            const unsigned long table = FindTable(code.table);
            if (!table && !m_retrying) return EOutcome::Deferred;  // its table may come in a later source
            if (!table) Warn(where, "trigger " + name + ": its table is unknown");
            added = m_builder.AddTrigger(name.c_str(), owner.c_str(), code.text.c_str(),
                                         static_cast<int>(code.triggerKind), table);
            kind = "triggers";
            break;
        }
        case ECodeKind::Procedure:
        case ECodeKind::Function: {
            const bool function = code.kind == ECodeKind::Function;
            added = m_builder.AddProcedure(name.c_str(), owner.c_str(), code.text.c_str(), function ? kFunction : kProcedure);
            kind = function ? "functions" : "procedures";
            break;
        }
    }
    if (!added) return EOutcome::Skipped;
    m_report.Count(kind);
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyStorageObject(const CStorageObjectDecl& object) {
    // The builder hands out no identifier for a storage object: there is nothing to check.
    m_builder.AddStorageObject(object.name.c_str(), OwnerOrNull(object.database), object.text.c_str(),
                               static_cast<int>(object.kind));
    m_report.Count("storage objects");
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyDefaultOrRule(const CDefaultOrRuleDecl& object) {
    const unsigned long added = object.rule ? m_builder.AddRule(object.name.c_str(), object.text.c_str(), nullptr)
                                            : m_builder.AddDefault(object.name.c_str(), object.text.c_str(), nullptr);
    if (!added) return EOutcome::Skipped;
    m_report.Count(object.rule ? "rules" : "defaults");
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyUserType(const CUserTypeDecl& type, const std::string& where) {
    if (!m_builder.AddUserType(type.name.c_str(), type.base.c_str())) {
        Warn(where, "user datatype " + type.name + ": base type " + type.base + " has no datatype code");
        return EOutcome::Skipped;
    }
    m_report.Count("user datatypes");
    return EOutcome::Applied;
}

// An Oracle object type is no datatype of a column, but the columns of the
// tables made OF it: its attributes are kept for them.
CDdlImporter::EOutcome CDdlImporter::ApplyObjectType(CObjectTypeDecl& type) {
    m_objectTypes[UpperAscii(type.name)] = std::move(type.attributes);
    m_report.Count("object types");
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyComment(const CCommentDecl& comment, const std::string& where) {
    const unsigned long entity = FindTable(comment.table);
    if (comment.column.empty()) {
        if (!entity) return DeferOrSkip(where, "comment on unknown table " + comment.table.Name() + " skipped");
        const bool set = m_builder.SetEntityStringProperty(entity, code::kDefinition, comment.text.c_str());
        return set ? EOutcome::Applied : EOutcome::Skipped;
    }
    if (!entity) return DeferOrSkip(where, "comment on a column of unknown table " + comment.table.Name() + " skipped");
    const unsigned long attribute = m_builder.FindAttribute(entity, comment.column.c_str());
    if (!attribute || !m_builder.SetAttributeStringProperty(attribute, code::kDefinition, comment.text.c_str())) {
        Warn(where, "comment on column " + comment.column + ", which " + comment.table.Name() + " does not have, skipped");
        return EOutcome::Skipped;
    }
    return EOutcome::Applied;
}

CDdlImporter::EOutcome CDdlImporter::ApplyBinding(const CBindingDecl& binding, const std::string& where) {
    const unsigned long bound = binding.rule ? m_builder.BindRule(binding.object.c_str(), binding.target.c_str())
                                             : m_builder.BindDefault(binding.object.c_str(), binding.target.c_str());
    if (!bound) {
        Warn(where, std::string(binding.rule ? "rule " : "default ") + binding.object + " could not be bound to " +
                        binding.target);
        return EOutcome::Skipped;
    }
    m_report.Count("bindings");
    return EOutcome::Applied;
}

void CDdlImporter::Finish() {
    // Each statement is let go once applied, so that the declarations and
    // the model they become are not both held whole.
    std::deque<CDeclaredScript::CEntry> declared = m_declared.Take();
    for (CDeclaredScript::CEntry& entry : declared) {
        if (entry.dropped)
            ++m_report.applied;  // taken back by a later statement, which is what the script says
        else
            Settle(std::move(entry.statement), *entry.source, entry.applied);
        entry = CDeclaredScript::CEntry();
    }
    declared.clear();
    m_retrying = true;
    std::vector<CDeferred> deferred;
    deferred.swap(m_deferred);
    for (CDeferred& entry : deferred) Settle(std::move(entry.statement), entry.source, entry.applied);
    m_retrying = false;

    bool anyPending = false;
    for (const CPendingForeignKey& pending : m_foreignKeys) {
        const CForeignKeyDecl& decl = pending.decl;
        const unsigned long parent = FindTable(decl.parent);
        const std::string parentName = decl.parent.Name();
        const std::string parentOwner = decl.parent.Owner();
        const unsigned long key = m_builder.AddForeignKey(parent, pending.child, NameOrNull(decl.name),
                                                          parentName.c_str(), OwnerOrNull(parentOwner));
        if (!key) continue;
        anyPending = anyPending || parent == 0;
        for (std::size_t i = 0; i < decl.childColumns.size(); ++i) {
            const bool named = i < decl.parentColumns.size();
            // Without parent columns the parent's primary key columns are taken in order.
            const char* parentColumn = named ? decl.parentColumns[i].c_str() : (parent ? nullptr : "");
            m_builder.AddForeignKeyColumnPair(key, parentColumn, decl.childColumns[i].c_str(), 0);
        }
        if (decl.onDelete) m_builder.SetForeignKeyProperty(key, decl.onDelete, 1);
        if (decl.onUpdate) m_builder.SetForeignKeyProperty(key, decl.onUpdate, 1);
        m_report.Count("foreign keys");
    }
    m_foreignKeys.clear();
    if (!anyPending) return;
    CStringList messages;
    m_builder.ResolveForeignKeyConstraints(messages);
    for (POSITION pos = messages.GetHeadPosition(); pos;) m_report.messages.push_back(messages.GetNext(pos).str());
}
