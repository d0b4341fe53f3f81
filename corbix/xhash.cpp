#include "corbix/xhash.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "util/check.h"

namespace {

constexpr const char *kPath = "corbix/xhash";
constexpr int kFewEntries = 16;  // that need no buckets

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

HASHENTRY_t *entry_at(XMLPosition pos) { return static_cast<HASHENTRY_t *>(pos->data); }

// The bucket that a key belongs into, initialised or not.
XMEMLIST *bucket_of(const HashTable *t, const char *Key) {
  return t->Tbl == &t->few ? t->Tbl : &t->Tbl[calcHashIndex(Key, t->TblSize)];
}

XMEMLIST *initialised(XMEMLIST *m) { return testXMEMLISTInitialized(m) ? m : XMLInit(m, sizeof(HASHENTRY_t)); }

// Gives each of the few entries its bucket. False when memory runs out.
bool spread_entries(HashHandle t) {
  auto *buckets = static_cast<XMEMLIST *>(std::calloc(t->TblSize, sizeof(XMEMLIST)));
  if (buckets == nullptr) return false;
  t->Tbl = buckets;
  while (t->few.head != nullptr) {
    move_to_tail(initialised(bucket_of(t, entry_at(t->few.head)->Key)), &t->few, t->few.head);
  }
  return true;
}

void remove_entry(HashHandle t, XMEMLIST *m, XMLPosition pos) {
  emptyHashEntry(entry_at(pos), t->HashMode);
  XMLRemoveAt(m, pos);
}

// Appends a new entry to the bucket of its key. False when memory runs out.
bool add_entry(HashHandle t, XMEMLIST *m, const char *Key, void *Data) {
  if (m == &t->few && m->count == kFewEntries) {
    if (!spread_entries(t)) return false;
    m = bucket_of(t, Key);
  }
  const HASHENTRY_t none = {};
  XMLNode *pos = XMLAddTail(initialised(m), &none);
  if (pos == nullptr) return false;
  if (initHashEntry(entry_at(pos), t->HashMode, t->BlockSize, Key, Data)) return true;
  XMLRemoveTail(m, nullptr);
  return false;
}

}  // namespace

int HashCreate(uint32_t size, HashHandle *hHash, int HashMode, uint32_t BlockSize) {
  require(hHash != nullptr, "hHash", kPath);
  require(HashMode == kHashPointer || HashMode == kHashText || HashMode == kHashBlock,
          "HashMode==1 || HashMode==2 || HashMode==3", kPath);
  require(HashMode != kHashBlock || BlockSize > 0, "BlockSize>0", kPath);
  *hHash = nullptr;
  if (size == 0) return 0;
  auto *t = new (std::nothrow) HashTable{nullptr, size, HashMode, HashMode == kHashBlock ? BlockSize : 0, {}};
  if (t == nullptr) return 0;
  t->Tbl = &t->few;
  *hHash = t;
  return 1;
}

void HashDestroy(HashHandle t) {
  if (t == nullptr) return;
  hash_empty(t);
  delete t;
}

void hash_empty(HashHandle hHash) {
  require(hHash != nullptr, "hHash", kPath);
  require(hHash->Tbl != nullptr, "t->Tbl", kPath);
  const bool has_buckets = hHash->Tbl != &hHash->few;
  const uint32_t count = has_buckets ? hHash->TblSize : 1;
  for (uint32_t n = 0; n < count; ++n) {
    XMEMLIST *m = &hHash->Tbl[n];
    for (XMLPosition pos = m->head; pos != nullptr; pos = pos->next) emptyHashEntry(entry_at(pos), hHash->HashMode);
    XMLExit(m);
  }
  if (has_buckets) std::free(hHash->Tbl);
  hHash->Tbl = &hHash->few;
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
  if (Data != nullptr && hHash->HashMode == kHashPointer) *Data = entry_at(pos)->Data;
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
  *Data = entry_at(pos)->Data;
  return 1;
}

uint32_t calcHashIndex(const char *Key, uint32_t TblSize) {
  require(Key != nullptr, "Key", kPath);
  require(TblSize > 0, "n<TblSize", kPath);  // kept: of a size of 0 it is the same promise that breaks
  const uint32_t shares[] = {TblSize, TblSize / 2, TblSize / 3, TblSize / 4};
  uint32_t n = 0;
  for (uint32_t i = 0; Key[i] != '\0'; ++i) {
    const auto byte = static_cast<unsigned char>(Key[i]);
    const uint32_t c = byte < 0x80 ? byte : byte - 0x100U;  // bytes from 0x80 on are negative
    const uint32_t s = (i + c) & 3U;
    n = (n + ((c * (i + 1)) << s) + shares[s]) % TblSize;
  }
  require(n < TblSize, "n<TblSize", kPath);
  return n;
}

int findHashEntry(const HashTable *t, const char *Key, XMEMLIST **m, XMLPosition *pos) {
  require(t != nullptr, "t", kPath);
  require(Key != nullptr, "Key", kPath);
  require(m != nullptr, "m", kPath);
  require(pos != nullptr, "pos", kPath);
  require(t->Tbl != nullptr, "t->Tbl", kPath);
  *m = bucket_of(t, Key);
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
  const size_t size = copied + std::strlen(Key) + 1;
  char *room = size <= sizeof h->room ? h->room : static_cast<char *>(std::malloc(size));
  if (room == nullptr) return 0;
  h->Data = HashMode == kHashPointer ? Data : std::memcpy(room, Data, copied);
  h->Key = static_cast<char *>(std::memcpy(room + copied, Key, size - copied));
  return 1;
}

void emptyHashEntry(HASHENTRY_t *h, int HashMode) {
  require(h != nullptr, "h", kPath);
  require(HashMode >= kHashPointer && HashMode <= kHashBlock, "0", kPath);
  void *room = HashMode == kHashPointer ? h->Key : h->Data;
  if (room != h->room) std::free(room);
  *h = {};
}

int testXMEMLISTInitialized(const XMEMLIST *m) {
  require(m != nullptr, "m", kPath);
  // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): the analyzer does not follow require() so deep
  if (m->cbData == 0) return 0;
  require(m->cbData == sizeof(HASHENTRY_t), "m->cbData==sizeof(HASHENTRY_t)", kPath);
  return 1;
}
