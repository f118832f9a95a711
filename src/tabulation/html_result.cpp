#include "tabulation/html_result.h"
