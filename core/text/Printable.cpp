#include "text/Printable.h"
