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

// The elements from head to tail, after a look that they are the same backwards.
std::vector<int> elements(const XMEMLIST &list) {
  std::vector<int> found(static_cast<size_t>(XMLGetCount(&list)));
  EXPECT_EQ(XMLIsEmpty(&list), found.empty());
  XMLPosition at = XMLGetHeadPosition(&list);
  for (int &value : found) at = XMLGetNext(&list, at, &value);
  EXPECT_EQ(at, nullptr);
  int value = 0;
  at = XMLGetTailPosition(&list);
  for (size_t n = found.size(); n > 0; --n) {
    at = XMLGetPrev(&list, at, &value);
    EXPECT_EQ(value, found[n - 1]);
  }
  EXPECT_EQ(at, nullptr);
  return found;
}

TEST_F(IntList, InsertsFindsAndRemovesAtEveryPlace) {
  const int values[] = {7, 1, 2, 3, 4};
  const XMLPosition middle = XMLInsertBefore(&list, nullptr, &values[2]);
  const XMLPosition first = XMLInsertBefore(&list, nullptr, &values[1]);
  XMLInsertAfter(&list, middle, &values[3]);
  const XMLPosition last = XMLInsertAfter(&list, nullptr, &values[4]);
  EXPECT_EQ(elements(list), (std::vector{1, 2, 3, 4}));
  for (const XMLPosition at : {first, last}) XMLSetAt(&list, at, &values[0]);
  XMLRemoveAt(&list, middle);
  EXPECT_TRUE(XMLFindIndex(&list, 2) == last && XMLFindIndex(&list, 3) == nullptr);
  EXPECT_EQ(XMLFind(&list, &values[0], sizeof(int), first->next), last);
  EXPECT_EQ(XMLFind(&list, "longer than an element", 22, nullptr), nullptr);
  int head = 0, tail = 0;
  XMLRemoveTail(&list, &tail);
  XMLRemoveHead(&list, &head);
  EXPECT_TRUE(head == 7 && tail == 7);
  EXPECT_EQ(elements(list), std::vector{3});
}

TEST_F(IntList, IsSavedAndLoadedUpToTheLastElementThatTheCountHolds) {
  for (int i = 0; i < 65535; ++i) ASSERT_NE(XMLAddTail(&list, &i), nullptr);
  EXPECT_EQ(XMLAddTail(&list, "full"), nullptr);
  const Stream file(std::tmpfile()), only_read(std::fopen("/dev/null", "r")), full(std::fopen("/dev/full", "w"));
  EXPECT_EQ(XMLSave(only_read.get(), &list) + XMLSave(full.get(), &list), 0);
  ASSERT_EQ(XMLSave(file.get(), &list), 1);
  XMEMLIST loaded;
  for (const long missing : {0, 1, 1 + 65535 * 4, 6 + 65535 * 4}) {
    ASSERT_EQ(ftruncate(fileno(file.get()), 6 + 65535 * 4 - missing), 0);
    std::rewind(file.get());
    EXPECT_EQ(XMLLoad(file.get(), &loaded), missing == 0);
    EXPECT_EQ(XMLGetDataSize(&loaded), missing > 1 ? 0 : sizeof(int));
    EXPECT_EQ(elements(loaded), missing == 0 ? elements(list) : std::vector<int>{});
    XMLRemoveAll(&loaded);
  }
}

// Reckoned by hand, in 32 bits: bytes from 0x80 on are negative.
TEST(Hash, BucketsOfKeysStayWhatTheyAre) {
  EXPECT_EQ(calcHashIndex("MAIL", 1000), 191U);
  EXPECT_EQ(calcHashIndex("\xA4\xE6\x41", 997), 553U);
  EXPECT_EQ(calcHashIndex("\x80", 997), 869U);
}

// With keys and data of which some need memory of their own.
void compare_with_map(int mode) {
  std::mt19937 random(1);
  std::map<std::string, int> map;
  std::vector<std::string> data;
  for (int i = 0; i < 4000; ++i) data.push_back(std::to_string(100000 + i));
  HashHandle table = nullptr;
  ASSERT_TRUE(HashCreate(0, &table, mode, 7) == 0 && HashCreate(7, &table, mode, 7) == 1);
  for (int i = 0; i < 4000; ++i) {
    const std::string key(random() % 3 * 20, static_cast<char>('a' + random() % 8));
    const bool known = map.count(key) > 0;
    void *removed = nullptr, *found = nullptr;
    bool stored = false;
    switch (random() % 3) {
      case 0:
        EXPECT_EQ(HashRemove(table, key.c_str(), &removed), known);
        EXPECT_EQ(removed, known && mode == kHashPointer ? data[map[key]].data() : nullptr);
        map.erase(key);
        break;
      case 1:
        EXPECT_EQ(hash_insert_new(table, key.c_str(), data[i].data(), &stored), 1);
        EXPECT_EQ(stored, !known);
        map.emplace(key, i);
        break;
      default:
        EXPECT_EQ(HashInsert(table, key.c_str(), data[i].data()), 1);
        map[key] = i;
    }
    ASSERT_EQ(HashGet(table, key.c_str(), &found), static_cast<int>(map.count(key)));
    ASSERT_TRUE(found == nullptr || static_cast<char *>(found) == data[map[key]]);
    ASSERT_TRUE(found == nullptr || (found == data[map[key]].data()) == (mode == kHashPointer)) << "not a copy";
  }
  hash_empty(table);
  void *found = nullptr;
  for (const auto &entry : map) EXPECT_EQ(HashGet(table, entry.first.c_str(), &found), 0);
  EXPECT_EQ(HashInsert(table, "", data[0].data()), 1);
  hash_empty(table);
  EXPECT_EQ(HashGet(table, "", &found), 0);
  for (std::string &left : data) EXPECT_EQ(HashInsert(table, ("key" + left).c_str(), left.data()), 1);
  EXPECT_EQ(HashGet(table, "key100000", &found), 1);
  HashDestroy(table);
}

TEST(Hash, DoesWhatAMapDoes) {
  for (const int mode : {kHashPointer, kHashText, kHashBlock}) compare_with_map(mode);
}

}  // namespace
