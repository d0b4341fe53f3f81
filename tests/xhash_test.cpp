// The memory list and the hash table.
#include "corbix/xhash.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "util/files.h"

namespace {

struct IntList : testing::Test {
  XMEMLIST list;
  IntList() { XMLInit(&list, sizeof(int)); }
  ~IntList() override { XMLExit(&list); }
};

// The elements from head to tail, after a look that there are as many backwards.
std::vector<int> elements(const XMEMLIST &list) {
  std::vector<int> found(static_cast<size_t>(XMLGetCount(&list)));
  XMLPosition at = XMLGetHeadPosition(&list);
  for (int &value : found) at = XMLGetNext(&list, at, &value);
  EXPECT_EQ(at, nullptr);
  int ignored = 0;
  at = XMLGetTailPosition(&list);
  for (size_t n = found.size(); n > 0; --n) at = XMLGetPrev(&list, at, &ignored);
  EXPECT_EQ(at, nullptr);
  return found;
}

TEST_F(IntList, InsertsFindsAndRemovesAtEveryPlace) {
  const int values[] = {7, 1, 2, 3, 4};
  const XMLPosition middle = XMLInsertBefore(&list, nullptr, &values[2]);
  const XMLPosition first = XMLInsertBefore(&list, middle, &values[1]);
  XMLInsertAfter(&list, middle, &values[3]);
  const XMLPosition last = XMLInsertAfter(&list, nullptr, &values[4]);
  EXPECT_EQ(elements(list), (std::vector{1, 2, 3, 4}));
  for (const XMLPosition at : {first, last}) XMLSetAt(&list, at, &values[0]);
  XMLRemoveAt(&list, middle);
  EXPECT_EQ(XMLFindIndex(&list, 2), last);
  EXPECT_EQ(XMLFind(&list, &values[0], sizeof(int), first->next), last);
  EXPECT_EQ(XMLFind(&list, "longer than an element", 22, nullptr), nullptr);
  int removed = 0;
  XMLRemoveTail(&list, &removed);
  EXPECT_EQ(removed, 7);
  XMLRemoveHead(&list, nullptr);
  EXPECT_EQ(elements(list), std::vector{3});
}

TEST_F(IntList, IsSavedAndLoadedUpToTheLastElementThatTheCountHolds) {
  for (int i = 0; i < 65535; ++i) ASSERT_NE(XMLAddTail(&list, &i), nullptr);
  EXPECT_EQ(XMLAddTail(&list, "full"), nullptr);
  const Stream file(std::tmpfile()), only_read(std::fopen("/dev/null", "r"));
  EXPECT_EQ(XMLSave(only_read.get(), &list), 0);
  ASSERT_EQ(XMLSave(file.get(), &list), 1);
  XMEMLIST loaded;
  for (const long missing : {0, 1}) {
    ASSERT_EQ(ftruncate(fileno(file.get()), 6 + 65535 * 4 - missing), 0);
    std::rewind(file.get());
    EXPECT_EQ(XMLLoad(file.get(), &loaded), missing == 0);
    EXPECT_EQ(elements(loaded), missing == 0 ? elements(list) : std::vector<int>{});
    XMLExit(&loaded);
  }
}

struct Table {
  HashHandle handle = nullptr;
  Table(int mode, uint32_t block_size) { EXPECT_EQ(HashCreate(7, &handle, mode, block_size), 1); }
  ~Table() { HashDestroy(handle); }
};

TEST(Hash, KeepsTheDatumAsItsModeSays) {
  char datum[] = "first";
  for (const int mode : {kHashPointer, kHashText, kHashBlock}) {
    const Table table(mode, sizeof datum);
    void *found = nullptr;
    ASSERT_EQ(HashInsert(table.handle, "k", datum), 1);
    datum[0] ^= 1;
    EXPECT_EQ(HashGet(table.handle, "k", &found), 1);
    EXPECT_EQ(found == datum, mode == kHashPointer);
    EXPECT_EQ(std::string(static_cast<char *>(found)) == datum, mode == kHashPointer);
    EXPECT_EQ(HashRemove(table.handle, "k", &found), 1);
    EXPECT_EQ(found, mode == kHashPointer ? datum : nullptr);
  }
}

// Reckoned by hand, in 32 bits: bytes from 0x80 on are negative.
TEST(Hash, BucketsOfKeysStayWhatTheyAre) {
  EXPECT_EQ(calcHashIndex("", 1000), 0U);
  EXPECT_EQ(calcHashIndex("MAIL", 1000), 191U);
  EXPECT_EQ(calcHashIndex("\xA4\xE6\x41", 1000), 552U);
  EXPECT_EQ(calcHashIndex("\xA4\xE6\x41", 997), 553U);
}

void compare_with_map(int mode) {
  std::mt19937 random(1);
  std::map<std::string, int> map;
  std::vector<int> data(20000);
  const Table table(mode, sizeof(int));
  for (int i = 0; i < 20000; ++i) {
    data[i] = i;
    const std::string key(random() % 3 * 20, static_cast<char>('a' + random() % 8));  // some need memory of their own
    const unsigned operation = random() % 3;
    bool stored = true;
    const bool known = map.count(key) > 0;
    const int done = operation == 0   ? HashRemove(table.handle, key.c_str(), nullptr)
                     : operation == 1 ? hash_insert_new(table.handle, key.c_str(), &data[i], &stored)
                                      : HashInsert(table.handle, key.c_str(), &data[i]);
    EXPECT_TRUE(done == (operation > 0 || known) && stored == (operation != 1 || !known));
    if (operation == 0) map.erase(key);
    if (operation == 2 || (operation == 1 && !known)) map[key] = i;
    void *found = nullptr;
    ASSERT_EQ(HashGet(table.handle, key.c_str(), &found), static_cast<int>(map.count(key)));
    ASSERT_TRUE(found == nullptr || *static_cast<int *>(found) == map[key]);
  }
  hash_empty(table.handle);
  void *found = nullptr;
  for (const auto &entry : map) EXPECT_EQ(HashGet(table.handle, entry.first.c_str(), &found), 0);
}

TEST(Hash, DoesWhatAMapDoes) {
  for (const int mode : {kHashPointer, kHashBlock}) compare_with_map(mode);
}

}  // namespace
