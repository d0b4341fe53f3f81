#include "corbix/xmemlist.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "util/check.h"

namespace {

constexpr const char *kPath = "corbix/xmemlist";

// Nodes of small elements lie in blocks, which go with the last of them: there are many, most come and go together, and
// one by one the allocator would take a fifth of the time of a file with many topics.
union NodeCell {
  NodeCell *next_free;
  alignas(void *) char room[72];  // a node with an entry of the hash table
};

struct NodeBlock {
  NodeBlock *next;
  NodeCell cells[14];
};

NodeBlock *blocks = nullptr;
NodeCell *free_cells = nullptr;
size_t used_cells = 0;

bool add_block() {
  auto *block = new (std::nothrow) NodeBlock;
  if (block == nullptr) return false;
  block->next = std::exchange(blocks, block);
  for (NodeCell &cell : block->cells) cell.next_free = std::exchange(free_cells, &cell);
  return true;
}

void *take_room(size_t size) {
  if (size > sizeof(NodeCell)) return std::malloc(size);
  if (free_cells == nullptr && !add_block()) return nullptr;
  ++used_cells;
  return std::exchange(free_cells, free_cells->next_free);
}

void give_room_back(void *room, size_t size) {
  if (size > sizeof(NodeCell)) return std::free(room);
  free_cells = new (room) NodeCell{free_cells};
  if (--used_cells > 0) return;
  while (blocks != nullptr) delete std::exchange(blocks, blocks->next);
  free_cells = nullptr;
}

// A node that is not linked yet, with a copy of `data` after it in one piece of memory; null when there is none left.
XMLNode *newBlock(XMEMLIST *list, const void *data) {
  if (list->count == UINT16_MAX) return nullptr;
  void *memory = take_room(sizeof(XMLNode) + list->cbData);
  if (memory == nullptr) return nullptr;
  auto *node = new (memory) XMLNode{};
  node->data = std::memcpy(node + 1, data, list->cbData);
  return node;
}

// Links a node between two neighbours, each of which may be null.
void link_between(XMEMLIST *list, XMLNode *prev, XMLNode *next, XMLNode *node) {
  ++list->count;
  node->prev = prev;
  node->next = next;
  if (prev != nullptr) {
    prev->next = node;
  } else {
    list->head = node;
  }
  if (next != nullptr) {
    next->prev = node;
  } else {
    list->tail = node;
  }
}

void unlink(XMEMLIST *list, const XMLNode *node) {
  if (node->prev != nullptr) {
    node->prev->next = node->next;
  } else {
    list->head = node->next;
  }
  if (node->next != nullptr) {
    node->next->prev = node->prev;
  } else {
    list->tail = node->prev;
  }
  --list->count;
}

void freeNode(XMEMLIST *list, XMLNode *node) {
  unlink(list, node);
  give_room_back(node, sizeof(XMLNode) + list->cbData);
}

// Links a new node with a copy of `data` between two neighbours.
XMLNode *insert_between(XMEMLIST *list, XMLNode *prev, XMLNode *next, const void *data) {
  XMLNode *node = newBlock(list, data);
  if (node != nullptr) link_between(list, prev, next, node);
  return node;
}

void copy_out(const XMEMLIST *list, const XMLNode *node, void *out) {
  require(node != nullptr, "position", kPath);
  if (out != nullptr) std::memcpy(out, node->data, list->cbData);
}

}  // namespace

XMEMLIST *XMLInit(XMEMLIST *list, uint32_t cbData) {
  XMLAssertValid();
  *list = {};
  list->cbData = cbData;
  return list;
}

void XMLExit(XMEMLIST *list) {
  XMLRemoveAll(list);
  list->cbData = 0;
}

void XMLRemoveAll(XMEMLIST *list) {
  XMLAssertValid();
  for (XMLNode *node = list->head; node != nullptr;) {
    XMLNode *next = node->next;
    give_room_back(node, sizeof(XMLNode) + list->cbData);
    node = next;
  }
  XMLInit(list, list->cbData);
}

XMLPosition XMLAddTail(XMEMLIST *list, const void *data) { return XMLInsertAfter(list, nullptr, data); }

XMLPosition XMLInsertBefore(XMEMLIST *list, XMLPosition position, const void *data) {
  XMLAssertValid();
  if (position == nullptr) position = list->head;
  return insert_between(list, position == nullptr ? nullptr : position->prev, position, data);
}

XMLPosition XMLInsertAfter(XMEMLIST *list, XMLPosition position, const void *data) {
  XMLAssertValid();
  if (position == nullptr) position = list->tail;
  return insert_between(list, position, position == nullptr ? nullptr : position->next, data);
}

void move_to_tail(XMEMLIST *to, XMEMLIST *from, XMLPosition position) {
  XMLAssertValid();
  require(position != nullptr, "position", kPath);
  require(to->cbData == from->cbData, "to->cbData==from->cbData", kPath);
  require(to->count < UINT16_MAX, "to->count<65535", kPath);
  unlink(from, position);
  link_between(to, to->tail, nullptr, position);
}

void XMLRemoveHead(XMEMLIST *list, void *out) {
  XMLGetHead(list, out);
  freeNode(list, list->head);
}

void XMLRemoveTail(XMEMLIST *list, void *out) {
  XMLGetTail(list, out);
  freeNode(list, list->tail);
}

void XMLRemoveAt(XMEMLIST *list, XMLPosition position) {
  XMLAssertValid();
  require(position != nullptr, "position", kPath);
  freeNode(list, position);
}

XMLPosition XMLGetHeadPosition(const XMEMLIST *list) {
  XMLAssertValid();
  return list->head;
}

XMLPosition XMLGetTailPosition(const XMEMLIST *list) {
  XMLAssertValid();
  return list->tail;
}

XMLPosition XMLGetNext(const XMEMLIST *list, XMLPosition position, void *out) {
  XMLGetAt(list, position, out);
  return position->next;
}

XMLPosition XMLGetPrev(const XMEMLIST *list, XMLPosition position, void *out) {
  XMLGetAt(list, position, out);
  return position->prev;
}

void XMLGetHead(const XMEMLIST *list, void *out) { XMLGetAt(list, list->head, out); }

void XMLGetTail(const XMEMLIST *list, void *out) { XMLGetAt(list, list->tail, out); }

void XMLGetAt(const XMEMLIST *list, XMLPosition position, void *out) {
  XMLAssertValid();
  copy_out(list, position, out);
}

void XMLSetAt(XMEMLIST *list, XMLPosition position, const void *data) {
  XMLAssertValid();
  require(position != nullptr, "position", kPath);
  std::memcpy(position->data, data, list->cbData);
}

int XMLGetCount(const XMEMLIST *list) {
  XMLAssertValid();
  return list->count;
}

int XMLIsEmpty(const XMEMLIST *list) {
  XMLAssertValid();
  return list->count == 0;
}

uint32_t XMLGetDataSize(const XMEMLIST *list) {
  XMLAssertValid();
  return list->cbData;
}

XMLPosition XMLFindIndex(const XMEMLIST *list, uint32_t index) {
  XMLAssertValid();
  if (index >= list->count) return nullptr;
  XMLNode *node = list->head;
  for (; index > 0; --index) node = node->next;
  return node;
}

XMLPosition XMLFind(const XMEMLIST *list, const void *data, uint32_t length, XMLPosition start) {
  XMLAssertValid();
  if (length > list->cbData) return nullptr;
  XMLNode *node = start != nullptr ? start : list->head;
  while (node != nullptr && std::memcmp(node->data, data, length) != 0) node = node->next;
  return node;
}

XMLPosition XMLExtFind(const XMEMLIST *list, const void *key, int (*compare)(const void *key, const void *block),
                       XMLPosition start) {
  XMLAssertValid();
  XMLNode *node = start != nullptr ? start : list->head;
  while (node != nullptr && compare(key, node->data) != 0) node = node->next;
  return node;
}

int XMLSave(FILE *stream, const XMEMLIST *list) {
  XMLAssertValid();
  const uint32_t size = list->cbData;
  const uint16_t count = list->count;
  if (std::fwrite(&size, sizeof size, 1, stream) != 1 || std::fwrite(&count, sizeof count, 1, stream) != 1) return 0;
  for (const XMLNode *node = list->head; node != nullptr; node = node->next) {
    if (std::fwrite(node->data, 1, size, stream) != size) return 0;
  }
  return 1;
}

int XMLLoad(FILE *stream, XMEMLIST *list) {
  XMLInit(list, 0);
  uint32_t size = 0;
  uint16_t count = 0;
  if (std::fread(&size, sizeof size, 1, stream) != 1 || std::fread(&count, sizeof count, 1, stream) != 1) return 0;
  XMLInit(list, size);
  const std::unique_ptr<char[]> block(new (std::nothrow) char[size]);
  if (block == nullptr) return 0;
  while (list->count < count) {
    if (std::fread(block.get(), 1, size, stream) != size || XMLAddTail(list, block.get()) == nullptr) {
      XMLRemoveAll(list);
      return 0;
    }
  }
  return 1;
}
