// A doubly linked list of data blocks of one size. The list owns a copy of every element: adding copies the caller's
// bytes in, reading copies them out. Positions are the nodes; null means "none".
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

struct XMLNode {
  XMLNode *next;
  XMLNode *prev;
  void *data;  // cbData bytes, aligned as a pointer is
};
using XMLPosition = XMLNode *;

// Packed: the hash table lays its buckets out as an array of these. All zero is a list that is not initialised yet.
struct [[gnu::packed]] XMEMLIST {
  uint16_t count;
  XMLNode *head;
  XMLNode *tail;
  uint32_t cbData;  // bytes of an element; 0 before XMLInit and after XMLExit
};
static_assert(sizeof(XMEMLIST) == sizeof(uint16_t) + 2 * sizeof(void *) + sizeof(uint32_t));

// Empties the record without freeing anything and sets the size of the elements. Returns the list.
XMEMLIST *XMLInit(XMEMLIST *list, uint32_t cbData);
// Frees all elements; XMLExit also sets cbData to 0.
void XMLExit(XMEMLIST *list);
void XMLRemoveAll(XMEMLIST *list);

// Add a copy of `data` (cbData bytes) and return its position. A null position means the head for XMLInsertBefore and
// the tail for XMLInsertAfter. Null, and the list as it was, when memory runs out or the list is full (65,535).
XMLPosition XMLAddTail(XMEMLIST *list, const void *data);
XMLPosition XMLInsertBefore(XMEMLIST *list, XMLPosition position, const void *data);
XMLPosition XMLInsertAfter(XMEMLIST *list, XMLPosition position, const void *data);

// Moves the element at `position` to the tail of another list of such elements, which is not full. It stays where it is
// in memory, and the position is the same.
void move_to_tail(XMEMLIST *to, XMEMLIST *from, XMLPosition position);

// Copy the element into `out` (unless null) and remove it. The list must not be empty.
void XMLRemoveHead(XMEMLIST *list, void *out);
void XMLRemoveTail(XMEMLIST *list, void *out);
void XMLRemoveAt(XMEMLIST *list, XMLPosition position);

XMLPosition XMLGetHeadPosition(const XMEMLIST *list);
XMLPosition XMLGetTailPosition(const XMEMLIST *list);
// Copy the element at `position` into `out` and return the next or previous position.
XMLPosition XMLGetNext(const XMEMLIST *list, XMLPosition position, void *out);
XMLPosition XMLGetPrev(const XMEMLIST *list, XMLPosition position, void *out);

// The list must not be empty.
void XMLGetHead(const XMEMLIST *list, void *out);
void XMLGetTail(const XMEMLIST *list, void *out);
void XMLGetAt(const XMEMLIST *list, XMLPosition position, void *out);
void XMLSetAt(XMEMLIST *list, XMLPosition position, const void *data);

int XMLGetCount(const XMEMLIST *list);
int XMLIsEmpty(const XMEMLIST *list);
uint32_t XMLGetDataSize(const XMEMLIST *list);

// The position of element `index` (from 0), or null.
XMLPosition XMLFindIndex(const XMEMLIST *list, uint32_t index);
// The first position, from `start` (null: the head), whose block begins with the `length` bytes of `data` (no block
// begins with more than cbData bytes); or for which compare(key, block) is 0. Null when there is none.
XMLPosition XMLFind(const XMEMLIST *list, const void *data, uint32_t length, XMLPosition start);
XMLPosition XMLExtFind(const XMEMLIST *list, const void *key, int (*compare)(const void *key, const void *block),
                       XMLPosition start);

// Saved form, in the byte order of the machine: cbData (4 bytes), count (2 bytes), the blocks from head to tail.
// XMLSave: 1 when all was written. XMLLoad initialises `list` itself; 0 when anything is missing: the list is empty
// then.
int XMLSave(FILE *stream, const XMEMLIST *list);
int XMLLoad(FILE *stream, XMEMLIST *list);

// Called at the start of every operation: the place for checks of a list. They check nothing.
inline void XMLAssertValid() {}
inline void XMLDump() {}
