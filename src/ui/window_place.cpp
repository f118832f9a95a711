#include "ui/window_place.h"
