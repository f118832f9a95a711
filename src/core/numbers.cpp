#include "core/numbers.h"
