#include "pdf/SubsetPrefix.h"
