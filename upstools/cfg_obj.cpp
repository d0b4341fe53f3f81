#include "upstools/cfg_obj.h"

#include <cstdlib>
#include <cstring>

#include "util/check.h"
#include "util/text.h"

namespace {

constexpr int kSpareBytes = 11;    // after every text, its terminator among them
constexpr int kGrowthBytes = 139;  // allocated after a text that has to grow
constexpr int kSpareElements = 3;
constexpr int kGrowthElements = 13;

void check(bool holds, const char *condition) { require(holds, condition, "upstools/cfg_obj"); }

}  // namespace

void CStr_Init(CStr *Obj) {
  check(Obj != nullptr, "Obj");
  *Obj = {};
}

int CStr_AddN(CStr *Obj, const char *S, int nMax) {
  check(S != nullptr, "S");
  check(Obj != nullptr, "Obj");
  check(nMax >= 0 || nMax == -1, "nMax>=0 || nMax==-1");
  if (nMax == 0) return 1;
  const int slen = lenstr(S);
  check(nMax <= slen, "nMax<=slen");

  const int added = nMax == -1 ? slen : nMax;
  const int present = Obj->Str == nullptr ? 0 : lenstr(Obj->Str);
  const int length = present + added;
  if (Obj->Str == nullptr || length + kSpareBytes > Obj->nSize) {
    void *grown = std::realloc(Obj->Str, static_cast<size_t>(length) + kGrowthBytes);
    if (grown == nullptr) return 0;
    Obj->Str = static_cast<char *>(grown);
    Obj->nSize = length + kGrowthBytes;
  }
  std::memcpy(Obj->Str + present, S, static_cast<size_t>(added));
  Obj->Str[length] = '\0';
  return 1;
}

int CStr_Add(CStr *Obj, const char *S) { return CStr_AddN(Obj, S, -1); }

void CStr_Empty(CStr *Obj) {
  check(Obj != nullptr, "Obj");
  std::free(Obj->Str);
  *Obj = {};
}

void CStrArr_Init(CStrArr *Obj) {
  check(Obj != nullptr, "Obj");
  *Obj = {};
}

int CStrArr_AddN(CStrArr *Obj, const char *S, int nMax) {
  check(Obj != nullptr, "Obj");
  check(S != nullptr, "S");
  CStr added = {};
  // an element always has a text: none of S's characters is the empty one
  const int made = nMax == 0 ? CStr_Add(&added, "") : CStr_AddN(&added, S, nMax);
  if (!made) return 0;
  if (Obj->nCount + kSpareElements > Obj->nMaxCount) {
    const int room = Obj->nCount + kGrowthElements;
    void *grown = std::realloc(Obj->Arr, static_cast<size_t>(room) * sizeof(CStr));
    if (grown == nullptr) {
      CStr_Empty(&added);
      return 0;
    }
    Obj->Arr = static_cast<CStr *>(grown);
    Obj->nMaxCount = room;
  }
  check(Obj->nCount >= 0, "Obj->nCount>=0");
  check(Obj->nCount + 1 <= Obj->nMaxCount, "Obj->nCount+1<=Obj->nMaxCount");
  Obj->Arr[Obj->nCount++] = added;
  return 1;
}

int CStrArr_Add(CStrArr *Obj, const char *S) { return CStrArr_AddN(Obj, S, -1); }

const char *CStrArr_GetStr(const CStrArr *Obj, int nIndex) {
  check(Obj != nullptr, "Obj");
  check(nIndex >= 0, "nIndex>=0");
  check(nIndex < Obj->nCount, "nIndex<Obj->nCount");
  check(Obj->Arr[nIndex].Str != nullptr, "Obj->Arr[nIndex].Str");
  return Obj->Arr[nIndex].Str;
}

void CStrArr_Del(CStrArr *Obj, int nIndex, int nDelCount) {
  check(Obj != nullptr, "Obj");
  if (Obj->nCount == 0) return;
  check(Obj->nCount >= 0 && Obj->nCount <= Obj->nMaxCount, "Obj->nCount>=0 && Obj->nCount<=Obj->nMaxCount");
  check(nIndex >= 0, "nIndex>=0");
  check(nIndex < Obj->nCount, "nIndex<Obj->nCount");
  check(nDelCount > 0 || nDelCount == -1, "nDelCount>0 || nDelCount==-1");
  check(nDelCount == -1 || Obj->nCount - nDelCount - nIndex >= 0, "nDelCount==-1 || Obj->nCount-nDelCount-nIndex>=0");

  const int removed = nDelCount == -1 ? Obj->nCount - nIndex : nDelCount;
  CStr *gap = Obj->Arr + nIndex;
  for (int i = 0; i < removed; ++i) CStr_Empty(gap + i);
  const int rest = Obj->nCount - nIndex - removed;
  check(rest >= 0, "rest>=0");
  std::memmove(gap, gap + removed, static_cast<size_t>(rest) * sizeof(CStr));
  Obj->nCount -= removed;
  check(Obj->nCount >= 0, "Obj->nCount>=0");
}

void CStrArr_Empty(CStrArr *Obj) {
  check(Obj != nullptr, "Obj");
  CStrArr_Del(Obj, 0, -1);
  std::free(Obj->Arr);
  Obj->Arr = nullptr;
  Obj->nCount = Obj->nMaxCount = 0;
}

int CStrArr_Copy(CStrArr *Dest, const CStrArr *Src) {
  check(Dest != nullptr, "Dest");
  check(Src != nullptr, "Src");
  check(Dest != Src, "Dest!=Src");
  CStrArr_Empty(Dest);
  for (int i = 0; i < Src->nCount; ++i) {
    const char *S = CStrArr_GetStr(Src, i);
    check(S != nullptr, "S");
    if (!CStrArr_Add(Dest, S)) return 0;
  }
  check(Src->nCount == Dest->nCount, "Src->nCount==Dest->nCount");
  return 1;
}
