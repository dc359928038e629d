#include "builder/VrnAPI.h"

#include <climits>
#include <cstring>
#include <unordered_set>

#include "builder/Platforms.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/MigrationMap.h"
#include "keys/VrnApiIndex.h"

IMPLEMENT_DYNCREATE(CVrnAPI, CCmdTarget)

namespace {

// The version number written into the version and diagram rows.
constexpr std::uint32_t kModelVersionNo = 210;

CString LoadText(unsigned id) {
    CString text;
    text.LoadString(id);
    return text;
}

template <class Row>
void OutputList(CTypedPtrList<CPtrList, Row*>& list) {
    for (POSITION pos = list.GetHeadPosition(); pos;) list.GetNext(pos)->OutputRow();
}

}  // namespace

CVrnAPI::CVrnAPI() : m_bFlag(1), m_dbType(0), m_modelId(0) {}

CVrnAPI::~CVrnAPI() {
    // The managers and the file go first, then everything that was made.
    m_pNameSpaceMgr.reset();
    m_pGuidMgr.reset();
    m_pPropertyMgr.reset();
    m_pVrnFile.reset();
    m_pMigrationMap.reset();

    DeleteAllFromHead(m_entityList);
    // Foreign keys are owned through the foreign key list; one that never left
    // the pending list is owned by nobody else. A foreign key resolved twice
    // stands in the list twice: each is deleted once.
    std::unordered_set<CVrnApiForeignKey*> foreignKeys;
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) foreignKeys.insert(m_foreignKeyList.GetNext(pos));
    for (POSITION pos = m_pendingForeignKeyList.GetHeadPosition(); pos;)
        foreignKeys.insert(m_pendingForeignKeyList.GetNext(pos));
    for (CVrnApiForeignKey* foreignKey : foreignKeys) delete foreignKey;
    m_foreignKeyList.RemoveAll();
    m_pendingForeignKeyList.RemoveAll();
    DeleteAllFromHead(m_checkConstraintList);
    DeleteAllFromHead(m_defaultList);
    DeleteAllFromHead(m_ruleList);
    DeleteAllFromHead(m_userDatatypeList);
    DeleteAllFromHead(m_triggerList);
    DeleteAllFromHead(m_procedureList);
    DeleteAllFromHead(m_packageList);
    DeleteAllFromHead(m_referencedObjectList);
    DeleteAllFromHead(m_storageObjectList);
}

int CVrnAPI::Initialize(int dbType, const char* path) {
    if (m_pVrnFile)
        m_retiredManagers.push_back(CRetiredManagers{std::move(m_pNameSpaceMgr), std::move(m_pGuidMgr),
                                                     std::move(m_pPropertyMgr), std::move(m_pVrnFile)});
    m_pVrnFile = std::make_unique<CVrnFile>();
    if (path && !m_pVrnFile->Open(path)) return 0;

    // Sizing for a new model; an opened file brings its own contents.
    const bool opened = path != nullptr;
    const unsigned nameSpaceSize = opened ? 0 : 499;
    const unsigned objectTypeSize = opened ? 0 : 199;
    const int openedFlag = opened ? 1 : 0;

    m_pNameSpaceMgr = std::make_unique<CNameSpaceMgr>(m_pVrnFile.get());
    m_pGuidMgr = std::make_unique<CGuidMgr>(m_pVrnFile.get(), 0);
    m_dbType = dbType;
    m_pVrnFile->SetPlatform(dbType);
    m_pNameSpaceMgr->Init(nameSpaceSize, nameSpaceSize, 0, openedFlag, 0);
    m_pGuidMgr->Init(objectTypeSize, 530);
    m_pVrnFile->GetIdentityMgr()->Init();
    // The property manager deliberately gets no object type manager.
    m_pPropertyMgr = std::make_unique<CPropertyMgr>(m_pVrnFile.get(), nullptr);
    m_pPropertyMgr->Init();
    return 1;
}

unsigned long CVrnAPI::AllocKey(EKeyClass keyClass) {
    // Before a successful Initialize there is no key allocator: no key is made.
    if (!m_pVrnFile || !m_pNameSpaceMgr) return 0;
    return m_pVrnFile->GetIdentityMgr()->AllocKeyValue(static_cast<int>(keyClass));
}

CString CVrnAPI::ShareName(const char* name) {
    constexpr std::size_t kSlots = 4096;  // a power of two
    if (!name) return CString();
    std::uint32_t hash = 2166136261u;  // FNV-1a
    std::size_t length = 0;
    for (; name[length]; ++length) hash = (hash ^ static_cast<unsigned char>(name[length])) * 16777619u;
    if (length > INT_MAX) return CString(name);  // beyond what a shared text's length holds
    if (m_recentNames.empty()) m_recentNames.resize(kSlots);
    CString& slot = m_recentNames[hash & (kSlots - 1)];
    if (static_cast<std::size_t>(slot.GetLength()) != length || std::memcmp(slot.GetString(), name, length) != 0)
        slot = CString(name, static_cast<int>(length));
    return slot;
}

void CVrnAPI::WriteModelRows(const char* path) {
    std::unique_ptr<CNSOutputVersion> version(MakeRow<CNSOutputVersion>());
    version->m_versionNo = kModelVersionNo;
    version->m_product.Set(0, LoadText(kHostTextProductName));
    version->OutputRow();

    std::unique_ptr<CNSOutputDiagram> diagram(MakeRow<CNSOutputDiagram>());
    diagram->m_diagramNo = 1;
    diagram->m_versionNo = kModelVersionNo;
    // Taken separately, creation first: the two may differ by a tick.
    diagram->m_created = CVrnDateTime(COleDateTime::GetCurrentTime());
    diagram->m_modified = CVrnDateTime(COleDateTime::GetCurrentTime());
    diagram->m_name = LoadText(kHostTextDiagramName);
    diagram->m_formatVersion = "1.0";
    diagram->m_product = LoadText(kHostTextProductName);
    diagram->m_filePath = path;
    diagram->m_displayLevel = "NameOnly";
    diagram->OutputRow();

    std::unique_ptr<CNSOutputModel> model(MakeRow<CNSOutputModel>());
    model->m_diagramNo = 1;
    model->m_modelNo = CurrentModelNo();
    model->m_n4 = 1;
    model->m_n5 = 0;
    model->m_name = LoadText(kHostTextModelName);
    model->OutputRow();
}

bool CVrnAPI::IsReadyToSave() const { return m_pVrnFile && m_pNameSpaceMgr && m_pGuidMgr && m_pPropertyMgr; }

int CVrnAPI::SaveToFile(const char* path) {
    // Without a successful Initialize there is no model file or manager to
    // write through: nothing is written.
    if (!IsReadyToSave()) return 0;
    const CString target(path);  // a null path counts as empty, which the file refuses
    UpdateRelationships(0);
    WriteModel(target);
    // The result is deliberately not examined: the file keeps the reason of a
    // failed save for the client to ask.
    m_pVrnFile->Save(target, 0);
    return 1;
}

void CVrnAPI::WriteModel(const char* path) {
    if (!IsReadyToSave()) return;
    WriteModelRows(path);

    for (POSITION pos = m_entityList.GetHeadPosition(); pos;) m_entityList.GetNext(pos)->Save();
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (foreignKey->IsValid()) foreignKey->Save();
    }

    OutputList(m_checkConstraintList);
    OutputList(m_defaultList);
    OutputList(m_ruleList);
    OutputList(m_userDatatypeList);
    OutputList(m_triggerList);
    OutputList(m_procedureList);
    OutputList(m_packageList);
    OutputList(m_referencedObjectList);
    OutputList(m_storageObjectList);

    m_pNameSpaceMgr->Save(m_pVrnFile.get(), 1, 1);
    m_pGuidMgr->Save(m_pVrnFile.get(), nullptr, 0, 0);
    m_pVrnFile->GetIdentityMgr()->Save(m_pVrnFile.get());
    m_pPropertyMgr->Save(m_pVrnFile.get());
}

const char* CVrnAPI::GetORVDatatype(const char* datatypeName) const {
    return TranslateDatatypeName(datatypeName, m_dbType);
}

void CVrnAPI::SetDB2SqlId(const char* sqlId) { m_db2SqlId = sqlId; }

const char* CVrnAPI::GetDB2SqlId() const { return m_db2SqlId.IsEmpty() ? nullptr : m_db2SqlId.GetString(); }
