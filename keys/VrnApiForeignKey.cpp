#include "keys/VrnApiForeignKey.h"

CVrnApiForeignKey::CVrnApiForeignKey(CVrnAPI* owner) : m_pOwner(owner) {
    // Initial texts by position: 1 type, 2 name, 3-7 flags, 8-11 unused, 12-17 actions.
    static const char* const kInitialTexts[kTextCount] = {"I", "",  "P", "P", "O", "M", "M", "",  "",
                                                          "",  "",  "N", "N", "N", "N", "N", "N"};
    for (int i = 0; i < kTextCount; ++i) m_texts[i] = kInitialTexts[i];
}

CVrnApiForeignKey::~CVrnApiForeignKey() {
    while (!m_columnList.IsEmpty()) delete m_columnList.RemoveHead();
}
