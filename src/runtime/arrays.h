// Internals of arrays shared by the arrays_*.cpp files: the element chain and its records.
//
// An array object (class CLASS_ARRAY) owns a header with the element count and a singly
// linked chain of CLASS_ELEMENT records. An element holding a nested array has type
// TYPE_ARRAY and points at the array object; the nested object's lock count counts the
// elements that refer to it, so contexts never destroy an array still held by another.
#pragma once

#include "zelqa/base.h"

#include <cstdint>

namespace zq::runtime {

// The most elements one array holds, and the most a multi-dimensional __Array makes in
// all: asking for more raises "LOW MEMORY!" before any is made, where growing one element
// at a time would take the machine's memory first.
inline constexpr int64_t kMaxArrayElements = int64_t(1) << 24;

// The header of an array object; raises "ARGUMENT ERROR!" for null or a non-array object.
ArrayHeader &requireArray(pObj a);
// True for a record of class CLASS_ARRAY with a header.
bool isArrayObject(pObj x);
// The array a value stands for: itself for an array object, the nested array for an
// element holding one, else null.
pObj arrayOf(pObj x);

// The element record at 0-based index i; raises "BOUND ERROR!" outside 0..count-1.
pObj elementAt(ArrayHeader &header, int32_t i);

// Appends a NIL element with the array's depth; returns it.
pObj appendElement(pObj a);
// Makes a NIL element record with the given depth (not yet in any chain).
pObj newElementRecord(int16_t depth);
// Releases an element record taken out of its chain: its text, or its reference to a
// nested array (the nested array itself lives on until its context ends).
void releaseElement(pObj el);

// Makes el refer to the array object x: its old value released, x's lock count raised
// and x's depth lowered (recursively) to depth, the containing array's.
void storeArrayReference(pObj el, pObj x, int16_t depth);
// Drops the reference el holds to a nested array: the nested lock count goes down by 1.
void dropArrayReference(pObj el);
// Lowers the depth of x, its elements and its nested arrays to depth when that is smaller.
void lowerArrayDepth(pObj x, int16_t depth);

// The key of an element for scanning and sorting: the element itself, or for a row (an
// element holding an array) the row's element at 0-based column.
pObj columnKey(pObj el, int32_t column);

// Between these two, destroyed array objects are only marked; the end unlinks and
// releases them in one pass over the arrays list.
struct OwnerList;
void beginArraySweep();
void endArraySweep(OwnerList &arrays);

// Reads a numeric (TYPE_NUMERIC or TYPE_LONG) argument's integer part; false otherwise.
bool integerArgument(pObj x, int32_t &out);

} // namespace zq::runtime
