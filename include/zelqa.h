/* zelqa.h: the public contract of the ZELQA runtime, for compiled applications and tools. */
#ifndef ZELQA_H
#define ZELQA_H

#include "zelqa/base.h"
#include "zelqa/version.h"
#include "zelqa/values.h"
#include "zelqa/operators.h"
#include "zelqa/arrays.h"
#include "zelqa/context.h"
#include "zelqa/errors.h"
#include "zelqa/boxes.h"
#include "zelqa/windows.h"
#include "zelqa/storage.h"
#include "zelqa/tables.h"
#include "zelqa/dates.h"
#include "zelqa/strings.h"
#include "zelqa/numbers.h"
#include "zelqa/math.h"
#include "zelqa/staging.h"
#include "zelqa/program.h"
#include "zelqa/devices.h"

#endif
