#include "core/code_page.h"
