#include "fontfile/CFF.h"
