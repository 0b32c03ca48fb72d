#pragma once

// All value types.

#include "host/types/ByteRuns.h"
#include "host/types/Collections.h"
#include "host/types/IdentifierTypes.h"
#include "host/types/Integers.h"
#include "host/types/Jpeg2000.h"
#include "host/types/RGBALayout.h"
#include "host/types/Rational.h"
#include "host/types/References.h"
#include "host/types/Strings.h"
#include "host/types/Timestamp.h"
#include "host/types/Versions.h"
