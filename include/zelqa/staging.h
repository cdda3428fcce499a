/* zelqa/staging.h: staging an update of an application for the installer to put in place. */
#ifndef ZELQA_STAGING_H
#define ZELQA_STAGING_H

#include "base.h"

ZQ_EXTERN_C_BEGIN

/* Results of the staging operations. */
enum {
    ZQ_STAGE_OK = 0,
    ZQ_STAGE_NO_SOURCE = 1,      /* the new file is missing, not a file, or empty */
    ZQ_STAGE_TOO_LONG = 2,       /* a path or the version does not fit an install record */
    ZQ_STAGE_CANNOT_COPY = 3,    /* the staged copy could not be written beside the target */
    ZQ_STAGE_BAD_ARGUMENT = 4,   /* a missing argument or index */
    ZQ_STAGE_NOTHING_STAGED = 5, /* no install database */
    ZQ_STAGE_BAD_TARGET = 6,     /* the target is not a file inside the program directory, or a
                                    control character is in the target or the version */
    ZQ_STAGE_SOURCE_CHANGED = 7, /* the new file changed while it was copied */
    ZQ_STAGE_STORAGE_FAILED = 8  /* the install database could not be opened */
};

/* The longest staged path and version an install record carries, in bytes. */
#define ZQ_STAGE_MAX_TEXT 255

/* Stages newFile to replace target, a file inside the running program's directory (a
   relative target is taken from that directory): copies it beside the target under the
   target's name plus "~", checks the copy against newFile, and adds an install record to
   "ZELQAINST.tLog". Staging a target again replaces the earlier staging. On any failure
   nothing new is left behind and an earlier staging stays exactly as it was. */
ZQ_API int zq_stage_file(const char *newFile, const char *target, const char *version) ZQ_NOEXCEPT;
/* The number of staged files (0 when nothing is staged). */
ZQ_API int zq_staged_count(void) ZQ_NOEXCEPT;
/* Copies the staged path and version of entry index (from 0) into the caller's buffers;
   only that entry is read. */
ZQ_API int zq_staged_entry(int index, char *stagedPath, uint32_t pathSize, char *version,
                           uint32_t versionSize) ZQ_NOEXCEPT;
/* Calls visit once per staged file, in order, with its staged path and version (valid
   during the call); the install database is read once. */
typedef void (*zq_staged_visitor)(const char *stagedPath, const char *version, void *context);
ZQ_API int zq_visit_staged(zq_staged_visitor visit, void *context) ZQ_NOEXCEPT;
/* Removes every staged file and the install database. */
ZQ_API int zq_cancel_staged(void) ZQ_NOEXCEPT;
/* A sentence describing a result code. */
ZQ_API const char *zq_stage_result_text(int result) ZQ_NOEXCEPT;

ZQ_EXTERN_C_END

#endif
