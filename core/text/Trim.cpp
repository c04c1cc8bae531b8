#include "text/Trim.h"
