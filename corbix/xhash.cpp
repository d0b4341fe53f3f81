#include "corbix/xhash.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "util/check.h"
#include "util/text.h"

namespace {

constexpr const char *kPath = "corbix/xhash";

// A copy of the datum in the way of the mode; null when memory runs out.
void *copy_datum(int HashMode, uint32_t BlockSize, void *Data) {
  switch (HashMode) {
    case kHashPointer:
      return Data;
    case kHashText:
      return xstrdup(static_cast<const char *>(Data));
    case kHashBlock: {
      require(BlockSize > 0, "BlockSize>0", kPath);
      void *block = std::malloc(BlockSize);
      if (block != nullptr) std::memcpy(block, Data, BlockSize);
      return block;
    }
    default:
      require(false, "0", kPath);
      return nullptr;
  }
}

void remove_entry(const HashTable *t, XMEMLIST *m, XMLPosition pos) {
  HASHENTRY_t entry;
  XMLGetAt(m, pos, &entry);
  emptyHashEntry(&entry, t->HashMode);
  XMLRemoveAt(m, pos);
}

// Appends a new entry to the bucket of its key.
int add_entry(HashHandle t, XMEMLIST *m, const char *Key, void *Data) {
  if (!testXMEMLISTInitialized(m)) {
    XMLInit(m, sizeof(HASHENTRY_t));
    ++t->used;
  }
  HASHENTRY_t entry;
  if (!initHashEntry(&entry, t->HashMode, t->BlockSize, Key, Data)) return 0;
  if (XMLAddTail(m, &entry) != nullptr) return 1;
  emptyHashEntry(&entry, t->HashMode);
  return 0;
}

}  // namespace

int HashCreate(uint32_t size, HashHandle *hHash, int HashMode, uint32_t BlockSize) {
  require(hHash != nullptr, "hHash", kPath);
  require(HashMode == kHashPointer || HashMode == kHashText || HashMode == kHashBlock,
          "HashMode==1 || HashMode==2 || HashMode==3", kPath);
  if (HashMode == kHashBlock) require(BlockSize > 0, "BlockSize>0", kPath);
  *hHash = nullptr;
  if (size == 0) return 0;
  auto *t = new (std::nothrow) HashTable{nullptr, size, HashMode, HashMode == kHashBlock ? BlockSize : 0, 0};
  if (t == nullptr) return 0;
  t->Tbl = static_cast<XMEMLIST *>(std::calloc(size, sizeof(XMEMLIST)));
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
  std::free(t->Tbl);
  delete t;
}

void hash_empty(HashHandle hHash) {
  require(hHash != nullptr, "hHash", kPath);
  require(hHash->Tbl != nullptr, "t->Tbl", kPath);
  for (XMEMLIST *m = hHash->Tbl; hHash->used > 0; ++m) {
    if (m->cbData == 0) continue;
    while (!XMLIsEmpty(m)) remove_entry(hHash, m, XMLGetHeadPosition(m));
    XMLExit(m);
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
  void *datum = copy_datum(HashMode, BlockSize, Data);
  if (datum == nullptr) return 0;
  *h = {xstrdup(Key), datum};
  if (h->Key != nullptr) return 1;
  emptyHashEntry(h, HashMode);
  return 0;
}

void emptyHashEntry(HASHENTRY_t *h, int HashMode) {
  require(h != nullptr, "h", kPath);
  require(HashMode >= kHashPointer && HashMode <= kHashBlock, "0", kPath);
  std::free(h->Key);
  if (HashMode != kHashPointer) std::free(h->Data);
  *h = {};
}

int testXMEMLISTInitialized(const XMEMLIST *m) {
  require(m != nullptr, "m", kPath);
  if (m->cbData == 0) return 0;
  require(m->cbData == sizeof(HASHENTRY_t), "m->cbData==sizeof(HASHENTRY_t)", kPath);
  return 1;
}
