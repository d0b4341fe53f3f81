// Growable strings and arrays of them.
//
// Plain records: CStr_Init or CStrArr_Init makes one usable, CStr_Empty or CStrArr_Empty releases what it holds and
// leaves it as after Init. Texts handed out belong to their record and live until its next change. A broken
// precondition stops the program.
#pragma once

struct CStr {
  int nSize;  // bytes allocated for Str, 0 when none
  char *Str;  // owned; null when nothing was ever added
};

// 0 <= nCount <= nMaxCount; every element below nCount has a text.
struct CStrArr {
  int nCount;
  int nMaxCount;  // elements allocated; never shrinks but by CStrArr_Empty
  CStr *Arr;      // owned
};

void CStr_Init(CStr *Obj);
// Appends the first nMax characters of S, all of them for -1; S is not a part of Obj's own text and at least nMax long.
// 1; or 0 when memory runs out: the string is then unchanged.
[[nodiscard]] int CStr_AddN(CStr *Obj, const char *S, int nMax);
[[nodiscard]] int CStr_Add(CStr *Obj, const char *S);
void CStr_Empty(CStr *Obj);

void CStrArr_Init(CStrArr *Obj);
// Appends an element that holds the first nMax characters of S, all of them for -1; S is at least nMax long.
// 1; or 0 when memory runs out: the array is then unchanged.
[[nodiscard]] int CStrArr_AddN(CStrArr *Obj, const char *S, int nMax);
[[nodiscard]] int CStrArr_Add(CStrArr *Obj, const char *S);
// The text of element nIndex, which exists.
const char *CStrArr_GetStr(const CStrArr *Obj, int nIndex);
// Removes nDelCount existing elements from nIndex on; -1: all to the end. Does nothing to an empty array.
void CStrArr_Del(CStrArr *Obj, int nIndex, int nDelCount);
void CStrArr_Empty(CStrArr *Obj);
// Makes Dest, another array, hold copies of all strings of Src. 1; or 0 when memory runs out: Dest then holds the first
// ones.
[[nodiscard]] int CStrArr_Copy(CStrArr *Dest, const CStrArr *Src);
