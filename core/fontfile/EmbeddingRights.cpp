#include "fontfile/EmbeddingRights.h"
