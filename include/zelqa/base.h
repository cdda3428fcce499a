/* zelqa/base.h: the value record, its type tags and storage classes, and the export macro. */
#ifndef ZELQA_BASE_H
#define ZELQA_BASE_H

#include <stdint.h>

#if defined(_WIN32) && !defined(ZELQA_STATIC)
#  ifdef ZELQA_BUILDING
#    define ZQ_API __declspec(dllexport)
#  else
#    define ZQ_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__)
#  define ZQ_API __attribute__((visibility("default")))
#else
#  define ZQ_API
#endif

#ifdef __cplusplus
#  define ZQ_EXTERN_C_BEGIN extern "C" {
#  define ZQ_EXTERN_C_END }
#  define ZQ_NOEXCEPT noexcept
#  define ZQ_NORETURN [[noreturn]]
#else
#  define ZQ_EXTERN_C_BEGIN
#  define ZQ_EXTERN_C_END
#  define ZQ_NOEXCEPT
#  define ZQ_NORETURN _Noreturn
#endif

/* Type tags: what the payload holds. */
enum {
    TYPE_LONG = 5,
    TYPE_CHAR = 10,
    TYPE_ARRAY = 11,
    TYPE_DATE = 12,
    TYPE_NUMERIC = 13,
    TYPE_LOGICAL = 15,
    TYPE_NIL = 21,
    TYPE_NUL = 22,     /* ends a variable argument list */
    TYPE_VOIDPTR = 23,
    TYPE_HANDLE = 24
};

/* Storage classes: who owns the record. */
enum {
    CLASS_ARRAY = 0,   /* array object, in the arrays list */
    CLASS_VAR = 1,     /* variable, in the variables list */
    CLASS_ELEMENT = 2, /* array element, in its array's chain */
    CLASS_CONST = 4,   /* the static literal record */
    CLASS_TEMP = 5,    /* a slot of the temporary ring */
    CLASS_NEWCOPY = 6  /* shared constant: assignment makes a new variable */
};

typedef struct ArrayHeader ArrayHeader;
typedef struct Obj Obj, *pObj;
struct Obj {
    pObj      next;          /* owner-list link */
    uint32_t  storageClass;  /* CLASS_* */
    uint32_t  type;          /* TYPE_* */
    int16_t   objLength;     /* text bytes with the NUL for TYPE_CHAR, -1 otherwise */
    union {
        int32_t      l;      /* TYPE_LONG, TYPE_LOGICAL */
        double       d;      /* TYPE_NUMERIC, TYPE_DATE (day number) */
        char        *c;      /* TYPE_CHAR */
        ArrayHeader *a;      /* TYPE_ARRAY (array object) */
        pObj         o;      /* TYPE_ARRAY held in an element: the array object */
        void        *p;      /* TYPE_VOIDPTR, TYPE_HANDLE */
    } payload;               /* 8 bytes */
    int16_t   lockCount;     /* >0 locked, 0 free, <0 permanent */
    int16_t   depth;         /* context depth that made it; -1 permanent */
};
struct ArrayHeader { int32_t count; pObj first; pObj last; };

#endif
