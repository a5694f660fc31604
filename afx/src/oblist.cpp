#include <vlafx/oblist.h>

#include <new>

#include <vlafx/exceptions.h>

struct __POSITION {
  POSITION next;
  POSITION previous;
  CObject* object;
};

/// Its nodes stand directly behind it.
struct CObList::Block {
  Block* next;

  POSITION nodes() { return reinterpret_cast<POSITION>(this + 1); }
};

CObList::CObList(int blockSize) : blockSize_(blockSize > 0 ? blockSize : 10) {}

CObList::~CObList() {
  RemoveAll();
}

POSITION CObList::AddTail(CObject* object) {
  const POSITION node = takeNode();
  *node = {nullptr, tail_, object};
  (tail_ != nullptr ? tail_->next : head_) = node;
  tail_ = node;
  ++count_;
  return node;
}

CObject* CObList::RemoveHead() {
  const POSITION node = head_;
  CObject* const object = node->object;
  head_ = node->next;
  if (--count_ == 0) {
    RemoveAll();
  } else {
    head_->previous = nullptr;
    node->next = free_;
    free_ = node;
  }
  return object;
}

void CObList::RemoveAll() {
  while (blocks_ != nullptr) {
    Block* const block = blocks_;
    blocks_ = block->next;
    ::operator delete(block);
  }
  head_ = tail_ = free_ = nullptr;
  count_ = 0;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): called as a member
CObject* CObList::GetAt(POSITION position) const {
  if (position == nullptr) {
    AfxThrowInvalidArgException();
  }
  return position->object;
}

CObject* CObList::GetNext(POSITION& position) const {
  CObject* const object = GetAt(position);
  position = position->next;
  return object;
}

POSITION CObList::takeNode() {
  if (free_ == nullptr) {
    const auto nodes = static_cast<std::size_t>(blockSize_);
    void* const memory = ::operator new(sizeof(Block) + nodes * sizeof(__POSITION), std::nothrow);
    if (memory == nullptr) {
      AfxThrowMemoryException();
    }
    blocks_ = new (memory) Block{blocks_};
    for (std::size_t i = nodes; i-- > 0;) {
      free_ = new (blocks_->nodes() + i) __POSITION{free_, nullptr, nullptr};
    }
  }
  const POSITION node = free_;
  free_ = node->next;  // NOLINT(clang-analyzer-core.NullDereference): a block has at least one node
  return node;
}
