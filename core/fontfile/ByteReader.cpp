#include "fontfile/ByteReader.h"
