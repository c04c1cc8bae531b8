#include "fontfile/OS2Info.h"
