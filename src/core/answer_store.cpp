#include "core/answer_store.h"
