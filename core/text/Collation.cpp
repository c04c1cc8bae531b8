#include "text/Collation.h"
