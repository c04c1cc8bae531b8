#include "fontfile/NameTable.h"
