#include "assessment/AppleFonts.h"
