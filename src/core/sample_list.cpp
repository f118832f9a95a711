#include "core/sample_list.h"
