#include "tabulation/table_counter.h"
