/// A doubly linked list of object pointers.
#ifndef VLAFX_OBLIST_H
#define VLAFX_OBLIST_H

#include <vlafx/object.h>

/// A place in a list: a node, opaque to callers. Null means none.
struct __POSITION;
using POSITION = __POSITION*;

/// Holds pointers to objects that others own. Nodes are taken from blocks of `blockSize` nodes, which go back to the
/// heap when the list is empty. For one thread at a time. Positions stay valid until their node is removed.
class VLAFX_API CObList {
 public:
  /// Empty; takes no memory yet.
  explicit CObList(int blockSize = 10);
  /// Releases the nodes, not the objects.
  ~CObList();
  CObList(const CObList&) = delete;
  CObList& operator=(const CObList&) = delete;

  /// The number of objects, and whether it is 0.
  int GetCount() const { return count_; }
  bool IsEmpty() const { return count_ == 0; }
  /// The first and the last node, null if there is none.
  POSITION GetHeadPosition() const { return head_; }
  POSITION GetTailPosition() const { return tail_; }

  /// Throws CMemoryException* out of memory, with the list unchanged.
  POSITION AddTail(CObject* object);
  /// Unlinks the first node and returns its object. The list must not be empty.
  CObject* RemoveHead();
  void RemoveAll();

  /// Both throw CInvalidArgException* for a null position. GetNext moves the position on, to null after the last.
  CObject* GetAt(POSITION position) const;
  CObject* GetNext(POSITION& position) const;

 private:
  struct Block;
  POSITION takeNode();

  POSITION head_ = nullptr;
  POSITION tail_ = nullptr;
  POSITION free_ = nullptr;
  Block* blocks_ = nullptr;
  int count_ = 0;
  int blockSize_;
};

#endif
