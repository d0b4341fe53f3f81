#include "corbix/xhash.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "util/check.h"

// Entries are many and small, and most go together: one by one the allocator would take half the time of a profile's
// index.
union Cell {
  Cell *next_free;
  alignas(void *) char room[64];
};

struct CellBlock {
  CellBlock *next;
  Cell cells[15];
};

namespace {

constexpr const char *kPath = "corbix/xhash";
constexpr uint32_t kUsualSize = 1000;  // buckets of the profile store's indexes

// The buckets of one table of the usual size, all zero while no table has them: profiles are opened one after the
// other, and getting and clearing 22 kB for each would be more work than reading a small file.
XMEMLIST usual_buckets[kUsualSize];
bool usual_buckets_taken = false;

XMEMLIST *take_buckets(uint32_t size) {
  if (size != kUsualSize || usual_buckets_taken) return new (std::nothrow) XMEMLIST[size]{};
  usual_buckets_taken = true;
  return usual_buckets;
}

// `buckets` are empty.
void give_buckets_back(XMEMLIST *buckets) {
  if (buckets == usual_buckets) {
    usual_buckets_taken = false;
  } else {
    delete[] buckets;
  }
}

// Bytes of the datum that an entry copies.
size_t size_of_copy(int HashMode, uint32_t BlockSize, const void *Data) {
  switch (HashMode) {
    case kHashPointer:
      return 0;
    case kHashText:
      return std::strlen(static_cast<const char *>(Data)) + 1;
    case kHashBlock:
      require(BlockSize > 0, "BlockSize>0", kPath);
      return BlockSize;
    default:
      require(false, "0", kPath);
      return 0;
  }
}

// `Size` is a number, or a constant as a type.
template <typename Size>
uint32_t bucket_of(const char *Key, Size TblSize) {
  const uint32_t shares[] = {TblSize, TblSize / 2, TblSize / 3, TblSize / 4};
  uint32_t n = 0;
  for (uint32_t i = 0; Key[i] != '\0'; ++i) {
    const auto byte = static_cast<unsigned char>(Key[i]);
    const uint32_t c = byte < 0x80 ? byte : byte - 0x100U;  // bytes from 0x80 on are negative
    const uint32_t s = (i + c) & 3U;
    n = (n + ((c * (i + 1)) << s) + shares[s]) % TblSize;
  }
  return n;
}

// Lays out an entry in `room`, which holds the copies: the datum, then the key.
HASHENTRY_t fill_entry(char *room, size_t copied, int HashMode, const char *Key, void *Data) {
  if (copied > 0) std::memcpy(room, Data, copied);
  std::memcpy(room + copied, Key, std::strlen(Key) + 1);
  return {room + copied, HashMode == kHashPointer ? Data : room};
}

// An entry as it lies in its bucket: the list's node and element, then what the entry copies.
struct Entry {
  XMLNode node;
  HASHENTRY_t entry;
};
static_assert(offsetof(Entry, entry) == sizeof(XMLNode));  // where the list looks for its element

int add_cells(HashHandle t) {
  auto *block = new (std::nothrow) CellBlock;
  if (block == nullptr) return 0;
  block->next = std::exchange(t->blocks, block);
  for (Cell &cell : block->cells) cell.next_free = std::exchange(t->free_cells, &cell);
  return 1;
}

// Memory for an entry of `size` bytes: nearly every topic's fits into a cell.
void *take_room(HashHandle t, size_t size) {
  if (size > sizeof(Cell)) return std::malloc(size);
  if (t->free_cells == nullptr && !add_cells(t)) return nullptr;
  return std::exchange(t->free_cells, t->free_cells->next_free);
}

void give_room_back(HashHandle t, void *room, size_t size) {
  if (size > sizeof(Cell)) return std::free(room);
  t->free_cells = new (room) Cell{t->free_cells};
}

void free_entry(HashHandle t, XMLNode *node) {
  const char *start = static_cast<const char *>(static_cast<const void *>(node));
  const char *key = static_cast<const HASHENTRY_t *>(node->data)->Key;  // the entry's last part
  give_room_back(t, node, static_cast<size_t>(key - start) + std::strlen(key) + 1);
}

void remove_entry(HashHandle t, XMEMLIST *m, XMLNode *node) {
  unlink_node(m, node);
  free_entry(t, node);
}

// Appends a new entry to the bucket of its key.
int add_entry(HashHandle t, XMEMLIST *m, const char *Key, void *Data) {
  if (!testXMEMLISTInitialized(m)) {
    XMLInit(m, sizeof(HASHENTRY_t));
    ++t->used;
  }
  const size_t copied = size_of_copy(t->HashMode, t->BlockSize, Data);
  const size_t size = sizeof(Entry) + copied + std::strlen(Key) + 1;
  void *room = take_room(t, size);
  if (room == nullptr) return 0;
  auto *entry = new (room) Entry{};
  if (!link_tail(m, &entry->node)) {
    give_room_back(t, room, size);
    return 0;
  }
  entry->entry = fill_entry(static_cast<char *>(room) + sizeof(Entry), copied, t->HashMode, Key, Data);
  return 1;
}

}  // namespace

int HashCreate(uint32_t size, HashHandle *hHash, int HashMode, uint32_t BlockSize) {
  require(hHash != nullptr, "hHash", kPath);
  require(HashMode == kHashPointer || HashMode == kHashText || HashMode == kHashBlock,
          "HashMode==1 || HashMode==2 || HashMode==3", kPath);
  if (HashMode == kHashBlock) require(BlockSize > 0, "BlockSize>0", kPath);
  *hHash = nullptr;
  if (size == 0) return 0;
  auto *t = new (std::nothrow)
      HashTable{nullptr, size, HashMode, HashMode == kHashBlock ? BlockSize : 0, 0, nullptr, nullptr};
  if (t == nullptr) return 0;
  t->Tbl = take_buckets(size);
  if (t->Tbl == nullptr) {
    delete t;
    return 0;
  }
  *hHash = t;
  return 1;
}

void HashDestroy(HashHandle t) {
  if (t == nullptr) return;
  hash_empty(t);
  give_buckets_back(t->Tbl);
  while (t->blocks != nullptr) delete std::exchange(t->blocks, t->blocks->next);
  delete t;
}

void hash_empty(HashHandle hHash) {
  require(hHash != nullptr, "hHash", kPath);
  require(hHash->Tbl != nullptr, "t->Tbl", kPath);
  for (XMEMLIST *m = hHash->Tbl; hHash->used > 0; ++m) {
    if (m->cbData == 0) continue;
    for (XMLNode *node = m->head; node != nullptr;) free_entry(hHash, std::exchange(node, node->next));
    XMLInit(m, 0);
    --hHash->used;
  }
}

int HashInsert(HashHandle hHash, const char *Key, void *Data) {
  require(hHash != nullptr, "hHash", kPath);
  require(Key != nullptr, "Key", kPath);
  require(Data != nullptr, "Data", kPath);
  require(Key != Data, "Key!=Data", kPath);
  XMEMLIST *m = nullptr;
  XMLPosition pos = nullptr;
  if (findHashEntry(hHash, Key, &m, &pos)) remove_entry(hHash, m, pos);
  return add_entry(hHash, m, Key, Data);
}

int hash_insert_new(HashHandle hHash, const char *Key, void *Data, bool *stored) {
  XMEMLIST *m = nullptr;
  XMLPosition pos = nullptr;
  *stored = !findHashEntry(hHash, Key, &m, &pos) && add_entry(hHash, m, Key, Data);
  return *stored || pos != nullptr;
}

int HashRemove(HashHandle hHash, const char *Key, void **Data) {
  require(hHash != nullptr, "hHash", kPath);
  require(Key != nullptr, "Key", kPath);
  if (Data != nullptr) *Data = nullptr;
  XMEMLIST *m = nullptr;
  XMLPosition pos = nullptr;
  if (!findHashEntry(hHash, Key, &m, &pos)) return 0;
  if (Data != nullptr && hHash->HashMode == kHashPointer) *Data = static_cast<HASHENTRY_t *>(pos->data)->Data;
  remove_entry(hHash, m, pos);
  return 1;
}

int HashGet(HashHandle hHash, const char *Key, void **Data) {
  require(hHash != nullptr, "hHash", kPath);
  require(Key != nullptr, "Key", kPath);
  require(Data != nullptr, "Data", kPath);
  *Data = nullptr;
  XMEMLIST *m = nullptr;
  XMLPosition pos = nullptr;
  if (!findHashEntry(hHash, Key, &m, &pos)) return 0;
  *Data = static_cast<HASHENTRY_t *>(pos->data)->Data;
  return 1;
}

uint32_t calcHashIndex(const char *Key, uint32_t TblSize) {
  require(Key != nullptr, "Key", kPath);
  require(TblSize > 0, "n<TblSize", kPath);
  // A division by a constant is a multiplication: half the time of a key for nearly every table.
  const uint32_t n =
      TblSize == kUsualSize ? bucket_of(Key, std::integral_constant<uint32_t, kUsualSize>()) : bucket_of(Key, TblSize);
  require(n < TblSize, "n<TblSize", kPath);
  return n;
}

int findHashEntry(const HashTable *t, const char *Key, XMEMLIST **m, XMLPosition *pos) {
  require(t != nullptr, "t", kPath);
  require(Key != nullptr, "Key", kPath);
  require(m != nullptr, "m", kPath);
  require(pos != nullptr, "pos", kPath);
  require(t->Tbl != nullptr, "t->Tbl", kPath);
  *m = &t->Tbl[calcHashIndex(Key, t->TblSize)];
  *pos = nullptr;
  if (!testXMEMLISTInitialized(*m)) return 0;
  const auto differs = [](const void *key, const void *block) {
    return std::strcmp(static_cast<const char *>(key), static_cast<const HASHENTRY_t *>(block)->Key);
  };
  *pos = XMLExtFind(*m, Key, differs, nullptr);
  return *pos != nullptr;
}

int initHashEntry(HASHENTRY_t *h, int HashMode, uint32_t BlockSize, const char *Key, void *Data) {
  require(h != nullptr, "h", kPath);
  require(Key != nullptr, "Key", kPath);
  require(Data != nullptr, "Data", kPath);
  require(Key != Data, "Key!=Data", kPath);
  *h = {};
  const size_t copied = size_of_copy(HashMode, BlockSize, Data);
  auto *room = static_cast<char *>(std::malloc(copied + std::strlen(Key) + 1));
  if (room == nullptr) return 0;
  *h = fill_entry(room, copied, HashMode, Key, Data);
  return 1;
}

void emptyHashEntry(HASHENTRY_t *h, int HashMode) {
  require(h != nullptr, "h", kPath);
  require(HashMode >= kHashPointer && HashMode <= kHashBlock, "0", kPath);
  std::free(HashMode == kHashPointer ? h->Key : h->Data);
  *h = {};
}

int testXMEMLISTInitialized(const XMEMLIST *m) {
  require(m != nullptr, "m", kPath);
  if (m->cbData == 0) return 0;
  require(m->cbData == sizeof(HASHENTRY_t), "m->cbData==sizeof(HASHENTRY_t)", kPath);
  return 1;
}
