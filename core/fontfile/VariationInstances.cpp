#include "fontfile/VariationInstances.h"
