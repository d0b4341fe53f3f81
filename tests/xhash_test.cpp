// The memory list and the hash table.
#include "corbix/xhash.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "util/files.h"

namespace {

struct IntList : testing::Test {
  XMEMLIST list;
  IntList() { XMLInit(&list, sizeof(int)); }
  ~IntList() override { XMLExit(&list); }

  XMLPosition add(int value) { return XMLAddTail(&list, &value); }
  // The elements from head to tail, after a look that there are as many backwards.
  std::vector<int> elements() const {
    std::vector<int> found;
    int value = 0;
    int backwards = 0;
    for (XMLPosition at = XMLGetHeadPosition(&list); at != nullptr; found.push_back(value)) {
      at = XMLGetNext(&list, at, &value);
    }
    for (XMLPosition at = XMLGetTailPosition(&list); at != nullptr; ++backwards) at = XMLGetPrev(&list, at, &value);
    EXPECT_EQ(backwards, XMLGetCount(&list));
    return found;
  }
};

TEST_F(IntList, InsertsAndRemovesAtEveryPlace) {
  const int values[] = {0, 1, 2, 3, 4};
  const XMLPosition middle = XMLInsertBefore(&list, nullptr, &values[2]);
  XMLInsertBefore(&list, middle, &values[1]);
  XMLInsertAfter(&list, middle, &values[3]);
  const XMLPosition last = XMLInsertAfter(&list, nullptr, &values[4]);
  EXPECT_EQ(elements(), (std::vector{1, 2, 3, 4}));
  XMLSetAt(&list, last, &values[0]);
  XMLRemoveAt(&list, middle);
  EXPECT_EQ(elements(), (std::vector{1, 3, 0}));
  int removed = -1;
  XMLRemoveTail(&list, &removed);
  EXPECT_EQ(removed, 0);
  XMLRemoveHead(&list, nullptr);
  XMLRemoveHead(&list, &removed);
  EXPECT_EQ(removed, 3);
  EXPECT_EQ(elements(), std::vector<int>{});
}

TEST_F(IntList, FindsByIndexContentAndComparison) {
  for (const int value : {7, 8, 7}) add(value);
  EXPECT_EQ(XMLFindIndex(&list, 2), list.tail);
  EXPECT_EQ(XMLFindIndex(&list, 3), nullptr);
  const int seven = 7;
  EXPECT_EQ(XMLFind(&list, &seven, sizeof seven, nullptr), list.head);
  EXPECT_EQ(XMLFind(&list, &seven, sizeof seven, list.head->next), list.tail);
  EXPECT_EQ(XMLFind(&list, "longer than an element", 22, nullptr), nullptr);
  const auto differs = [](const void *key, const void *block) { return std::memcmp(key, block, sizeof(int)); };
  EXPECT_EQ(XMLExtFind(&list, &seven, differs, list.head->next), list.tail);
}

TEST_F(IntList, RefusesTheElementThatTheCountCantHold) {
  for (int i = 0; i < 65535; ++i) ASSERT_NE(add(i), nullptr);
  EXPECT_EQ(add(0), nullptr);
  EXPECT_EQ(XMLGetCount(&list), 65535);
}

TEST_F(IntList, SavesAndLoads) {
  for (const int count : {0, 3}) {
    for (int i = 0; i < count; ++i) add(i);
    std::string saved(100, '\0');
    const Stream out(fmemopen(saved.data(), saved.size(), "wb"));
    ASSERT_EQ(XMLSave(out.get(), &list), 1);
    const size_t size = 6 + static_cast<size_t>(count) * sizeof(int);
    ASSERT_EQ(static_cast<size_t>(std::ftell(out.get())), size);
    std::fflush(out.get());
    XMEMLIST loaded;
    const Stream whole(fmemopen(saved.data(), size, "rb"));
    EXPECT_EQ(XMLLoad(whole.get(), &loaded), 1);
    EXPECT_EQ(XMLGetCount(&loaded), count);
    EXPECT_EQ(XMLGetDataSize(&loaded), sizeof(int));
    XMLExit(&loaded);
    const Stream cut(fmemopen(saved.data(), size - 1, "rb"));
    EXPECT_EQ(XMLLoad(cut.get(), &loaded), 0);
    EXPECT_TRUE(XMLIsEmpty(&loaded));
  }
}

struct Destroy {
  void operator()(HashTable *t) const { HashDestroy(t); }
};

std::unique_ptr<HashTable, Destroy> make_table(uint32_t size, int mode, uint32_t block_size) {
  HashHandle handle = nullptr;
  EXPECT_EQ(HashCreate(size, &handle, mode, block_size), 1);
  return std::unique_ptr<HashTable, Destroy>(handle);
}

TEST(Hash, BucketsStayWhereTheyAre) {
  EXPECT_EQ(calcHashIndex("", 1000), 0U);
  // "A": s = 65 & 3 = 1, (65 << 1) + 1000/2; then "B": s = (1 + 66) & 3 = 3, ((66 * 2) << 3) + 1000/4.
  EXPECT_EQ(calcHashIndex("A", 1000), 630U);
  EXPECT_EQ(calcHashIndex("AB", 1000), (630U + 1056 + 250) % 1000);
  // 0xA4 is -92: s = 0, 4294967204 + 1000 wraps to 908.
  EXPECT_EQ(calcHashIndex("\xA4", 1000), 908U);
}

TEST(Hash, KeepsTheDatumAsItsModeSays) {
  char datum[] = "first";
  for (const int mode : {kHashPointer, kHashText, kHashBlock}) {
    const auto table = make_table(3, mode, sizeof datum);
    void *found = nullptr;
    ASSERT_EQ(HashInsert(table.get(), "k", datum), 1);
    datum[0] ^= 1;
    EXPECT_EQ(HashGet(table.get(), "k", &found), 1);
    EXPECT_EQ(found == datum, mode == kHashPointer);
    EXPECT_EQ(std::string(static_cast<char *>(found)) == datum, mode == kHashPointer);
    EXPECT_EQ(HashRemove(table.get(), "k", &found), 1);
    EXPECT_EQ(found, mode == kHashPointer ? datum : nullptr);
    EXPECT_EQ(HashRemove(table.get(), "k", &found), 0);
    EXPECT_EQ(found, nullptr);
  }
}

TEST(Hash, DoesWhatAMapDoes) {
  std::mt19937 random(1);
  std::map<std::string, int> map;
  const auto table = make_table(7, kHashBlock, sizeof(int));
  for (int i = 0; i < 20000; ++i) {
    const std::string key(random() % 3, static_cast<char>('a' + random() % 8));
    const unsigned operation = random() % 3;
    bool stored = true;
    if (operation == 0) {
      EXPECT_EQ(HashRemove(table.get(), key.c_str(), nullptr), static_cast<int>(map.erase(key)));
    } else if (operation == 1) {
      EXPECT_EQ(hash_insert_new(table.get(), key.c_str(), &i, &stored), 1);
      EXPECT_EQ(stored, map.emplace(key, i).second);
    } else {
      EXPECT_EQ(HashInsert(table.get(), key.c_str(), &i), 1);
      map[key] = i;
    }
    void *found = nullptr;
    ASSERT_EQ(HashGet(table.get(), key.c_str(), &found), static_cast<int>(map.count(key)));
    ASSERT_TRUE(found == nullptr || *static_cast<int *>(found) == map[key]);
  }
  hash_empty(table.get());
  void *found = nullptr;
  for (const auto &entry : map) EXPECT_EQ(HashGet(table.get(), entry.first.c_str(), &found), 0);
}

TEST(HashDeathTest, BrokenPreconditionsStopTheProgram) {
  char key[] = "key";
  HashHandle handle = nullptr;
  EXPECT_DEATH(HashInsert(nullptr, key, key), "Assertion failed: hHash, corbix/xhash");
  EXPECT_DEATH(HashCreate(1, &handle, kHashBlock, 0), "Assertion failed: BlockSize>0, corbix/xhash");
}

}  // namespace
