#include "ui/qt_user_interface.h"
