#include "tabulation/total_json.h"
