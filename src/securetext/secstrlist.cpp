// CSecStrList.
#include <vlhostkit/securelist.h>

#include <memory>

#include <vlafx/exceptions.h>

namespace {
constexpr int kBlockSize = 10;
}

// An entry: releasing it wipes its text.
class CSecStrList::CElem : public CObject {
 public:
  explicit CElem(const CSecStr& text) { m_strValue = text; }

  static CElem& of(CObject* object) { return *static_cast<CElem*>(object); }

  CSecStr m_strValue;
};

CSecStrList::CSecStrList() : m_list(kBlockSize) {}

CSecStrList::~CSecStrList() {
  RemoveAll();
}

int CSecStrList::IsEmpty() const {
  return m_list.IsEmpty() ? 1 : 0;
}

int CSecStrList::GetCount() const {
  return m_list.GetCount();
}

__POSITION* CSecStrList::GetHeadPosition() const {
  return m_list.GetHeadPosition();
}

const CSecStr& CSecStrList::GetHead() const {
  return CElem::of(m_list.GetAt(GetHeadPosition())).m_strValue;
}

const CSecStr& CSecStrList::GetNext(__POSITION*& position) const {
  return CElem::of(m_list.GetNext(position)).m_strValue;
}

CSecStr& CSecStrList::GetAt(__POSITION* position) {
  return CElem::of(m_list.GetAt(position)).m_strValue;
}

__POSITION* CSecStrList::Find(const wchar_t* text, __POSITION* after) const {
  __POSITION* next = after;
  if (next != nullptr) {
    m_list.GetNext(next);
  } else {
    next = GetHeadPosition();
  }
  while (next != nullptr) {
    __POSITION* const here = next;
    if (GetNext(next).Compare(text) == 0) {
      return here;
    }
  }
  return nullptr;
}

__POSITION* CSecStrList::AddTail(const CSecStr& text) {
  auto element = std::make_unique<CElem>(text);
  __POSITION* const position = m_list.AddTail(element.get());
  static_cast<void>(element.release());  // the list owns it now
  return position;
}

__POSITION* CSecStrList::AddTail(const wchar_t* text) {
  return AddTail(CSecStr(text));
}

CSecStr CSecStrList::RemoveHead() {
  CSecStr text(GetHead());
  const std::unique_ptr<CObject> element(m_list.RemoveHead());
  return text;
}

void CSecStrList::RemoveAll() {
  while (m_list.GetCount() != 0) {
    const std::unique_ptr<CObject> element(m_list.RemoveHead());
  }
}
