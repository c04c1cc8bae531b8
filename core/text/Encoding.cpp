#include "text/Encoding.h"
