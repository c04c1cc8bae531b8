#include "text/Case.h"
