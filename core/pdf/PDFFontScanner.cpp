#include "pdf/PDFFontScanner.h"
