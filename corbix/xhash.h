// A hash table from texts to data, with chained buckets, which it gets when it has more than a few entries. Keys are
// copied and compared byte for byte; callers that want case-blind keys fold them first.
//
// Broken preconditions (null arguments, a key that is its own datum, an unknown mode) stop the program.
#pragma once

#include <cstdint>

#include "corbix/xmemlist.h"

// How a table keeps the datum of an entry.
inline constexpr int kHashPointer = 1;  // the caller's pointer itself, not owned
inline constexpr int kHashText = 2;     // a copy of the caller's text
inline constexpr int kHashBlock = 3;    // a copy of BlockSize bytes

// An entry is not moved in memory: small copies of its key and datum lie in itself.
struct HASHENTRY_t {
  char *Key;
  void *Data;
  char room[32];
};

struct HashTable {
  XMEMLIST *Tbl;  // TblSize buckets of HASHENTRY_t, each initialised by its first entry; or `few`
  uint32_t TblSize;
  int HashMode;
  uint32_t BlockSize;  // 0 unless HashMode is kHashBlock
  XMEMLIST few;        // the only bucket as long as it suffices
};
using HashHandle = HashTable *;

// Stores a new table of `size` buckets in `*hHash`. 0 (and null) when `size` is 0 or memory runs out.
int HashCreate(uint32_t size, HashHandle *hHash, int HashMode, uint32_t BlockSize);
// Frees the table with its keys and copied data. Null is ignored.
void HashDestroy(HashHandle t);

// Stores `Data` under `Key`; an older entry of that key goes. 0 when memory runs out: the key is then absent.
int HashInsert(HashHandle hHash, const char *Key, void *Data);
// The same, but an older entry stays: `*stored` tells whether the new one was stored.
int hash_insert_new(HashHandle hHash, const char *Key, void *Data, bool *stored);
// Removes all entries.
void hash_empty(HashHandle hHash);
// Removes the entry. `Data` (may be null) gets the stored pointer in mode kHashPointer, else null. 0 when absent.
int HashRemove(HashHandle hHash, const char *Key, void **Data);
// `*Data` becomes the stored datum (the table's own copy in the copying modes). 0, and null, when absent.
int HashGet(HashHandle hHash, const char *Key, void **Data);

// The bucket of a key, below TblSize.
uint32_t calcHashIndex(const char *Key, uint32_t TblSize);
// The bucket that a key belongs into and the key's position in it. 0 when absent.
int findHashEntry(const HashTable *t, const char *Key, XMEMLIST **m, XMLPosition *pos);
// An entry outside a table, with memory of its own. 0 when memory runs out: the entry is then empty.
int initHashEntry(HASHENTRY_t *h, int HashMode, uint32_t BlockSize, const char *Key, void *Data);
void emptyHashEntry(HASHENTRY_t *h, int HashMode);
// 0 for a bucket that was never used.
int testXMEMLISTInitialized(const XMEMLIST *m);
