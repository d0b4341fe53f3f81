#include "corbix/xmemlist.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "util/check.h"

namespace {

constexpr const char *kPath = "corbix/xmemlist";

// A node that is not linked yet, with its block behind it in one piece of memory; null when there is none left.
XMLNode *newBlock(XMEMLIST *list) {
  if (list->count == UINT16_MAX) return nullptr;
  void *memory = std::calloc(1, sizeof(XMLNode) + list->cbData);
  if (memory == nullptr) return nullptr;
  auto *node = new (memory) XMLNode{};
  node->data = node + 1;
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

void freeNode(XMEMLIST *list, XMLNode *node) {
  unlink_node(list, node);
  std::free(node);
}

// Links a new node with a copy of `data` between two neighbours.
XMLNode *insert_between(XMEMLIST *list, XMLNode *prev, XMLNode *next, const void *data) {
  XMLNode *node = newBlock(list);
  if (node == nullptr) return nullptr;
  std::memcpy(node->data, data, list->cbData);
  link_between(list, prev, next, node);
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
    std::free(node);
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

int link_tail(XMEMLIST *list, XMLNode *node) {
  XMLAssertValid();
  if (list->count == UINT16_MAX) return 0;
  node->data = node + 1;
  link_between(list, list->tail, nullptr, node);
  return 1;
}

void unlink_node(XMEMLIST *list, XMLNode *node) {
  XMLAssertValid();
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
